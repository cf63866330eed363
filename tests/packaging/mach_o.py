"""Files that pass for a Mac's programs: what `otool` prints of each stands in it, and programs play a Mac's own."""

import plistlib
from pathlib import Path

MAGIC = b"\xcf\xfa\xed\xfe"

# As otool writes it, with what stands in every file left out.
HEAD = """Load command 0
      cmd LC_SEGMENT_64
  cmdsize 72
  segname __PAGEZERO
"""
LIBRARY = """Load command {number}
          cmd {kind}
      cmdsize 96
         name {name} (offset 24)
   time stamp 2 Thu Jan  1 01:00:02 1970
      current version 6.9.1
compatibility version 6.0.0
"""
SEARCH_PATH = """Load command {number}
          cmd LC_RPATH
      cmdsize 48
         path {name} (offset 12)
"""
OLDEST = """Load command {number}
      cmd LC_BUILD_VERSION
  cmdsize 32
 platform 1
    minos {oldest}
      sdk 15.5
   ntools 1
     tool 3
  version 1167.5
"""
SYSTEM = "/usr/lib/libSystem.B.dylib"

OTOOL = """LC_ALL=C awk -v wanted="=$1" '/^=-[Ll]$/ { isOn = $0 == wanted; next } isOn' "${!#}" """
# Does to the recorded texts what the real one does to the file.
INSTALL_NAME_TOOL = r"""python3 - "$@" <<'PROGRAM'
import re, sys
from pathlib import Path
*changes, file = sys.argv[1:]
magic, libraries, commands = re.split(rb"\n=-[Ll]\n", Path(file).read_bytes())
read = {"-L": libraries.decode(), "-l": commands.decode()}
while changes:
    what = changes.pop(0)
    if what == "-change":
        old, new = changes.pop(0), changes.pop(0)
        assert f"name {old} (" in read["-l"], old
        read = {option: text.replace(f"{old} (", f"{new} (") for option, text in read.items()}
    elif what == "-delete_rpath":
        old = re.escape(changes.pop(0))
        read["-l"] = re.sub(rf"Load command \d+\n +cmd LC_RPATH\n.*\n +path {old} .*\n", "", read["-l"])
    elif what == "-id":
        new = changes.pop(0)
        old = re.search(r"LC_ID_DYLIB\n.*\n +name (.+) \(offset", read["-l"])[1]
        read = {option: text.replace(f"{old} (", f"{new} (") for option, text in read.items()}
    else:
        sys.exit(f"install_name_tool: {what}?")
Path(file).write_bytes(b"".join([magic, b"\n=-L\n", read["-L"].encode(), b"\n=-l\n", read["-l"].encode()]))
PROGRAM"""


def write_code(path, *references, identity=None, search_paths=(), oldest="13.0", processors=("",)):
    """A file for one processor, or for several, named as otool does: "arm64"."""
    path = Path(path)
    path.parent.mkdir(parents=True, exist_ok=True)
    references = [*references, SYSTEM]
    libraries = commands = ""
    for processor in processors:
        head = f"{path} (architecture {processor}):\n" if processor else f"{path}:\n"
        libraries += head
        for name in [*([identity] if identity else []), *references]:
            libraries += f"\t{name} (compatibility version 6.0.0, current version 6.9.1)\n"
        commands += head + HEAD
        entries = [LIBRARY.format(number="{number}", kind="LC_ID_DYLIB", name=identity)] if identity else []
        entries += [LIBRARY.format(number="{number}", kind="LC_LOAD_DYLIB", name=name) for name in references]
        entries += [SEARCH_PATH.format(number="{number}", name=name) for name in search_paths]
        entries.append(OLDEST.format(number="{number}", oldest=oldest))
        commands += "".join(entry.format(number=number) for number, entry in enumerate(entries, 1))
    path.write_bytes(MAGIC + f"\n=-L\n{libraries}\n=-l\n{commands}".encode())
    return path


def write_information(bundle, program, oldest="13.0", place="Contents"):
    file = Path(bundle, place, "Info.plist")
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_bytes(plistlib.dumps({"CFBundleExecutable": program, "LSMinimumSystemVersion": oldest}))


def write_framework(folder, name, *references, **more):
    """With the links that hold a framework together."""
    framework = Path(folder, f"{name}.framework")
    program = write_code(framework / "Versions/A" / name, *references, **more)
    (framework / "Versions/Current").symlink_to("A")
    (framework / name).symlink_to(f"Versions/Current/{name}")
    write_information(framework, name, place="Versions/A/Resources")
    (framework / "Resources").symlink_to("Versions/Current/Resources")
    return program


def write_application(app, *references, **more):
    """An application with its command-line tool, and with nothing amiss."""
    write_information(app, "Cirrovane")
    write_code(Path(app, "Contents/MacOS/cirrovanectl"))
    return write_code(Path(app, "Contents/MacOS/Cirrovane"), *references, **more)
