# Builds Cirrovane from source with Homebrew. docs/packaging.md says how to use it.
class Cirrovane < Formula
  desc "See whether all work has reached iCloud Drive before you close the Mac"
  homepage "https://cirrovane.example.com/downloads"
  license "Apache-2.0"
  # A clone of your own will do: HOMEBREW_CIRROVANE_SOURCE=/path/to/clone
  head ENV.fetch("HOMEBREW_CIRROVANE_SOURCE", "https://cirrovane.example.com/cirrovane.git"),
       using: :git, branch: "main"

  depends_on "cli11" => :build
  depends_on "cmake" => :build
  depends_on "ninja" => :build
  depends_on "fmt" => :build
  depends_on "nlohmann-json" => :build
  depends_on macos: :ventura
  depends_on "qt"

  def install
    # With Homebrew's own Qt: a copy of it in here would be a second one, which nobody keeps up to date.
    system "cmake", "-S", ".", "-B", "build", "-G", "Ninja", "-DCIRROVANE_DEPLOY=OFF", *std_cmake_args
    system "cmake", "--build", "build"
    system "cmake", "--install", "build"
    # The command-line tool is inside the bundle, which knows its own version.
    bin.install_symlink prefix/"Cirrovane.app/Contents/MacOS/cirrovanectl"
  end

  def caveats
    <<~TEXT
      To see Cirrovane among your applications:
        ln -s #{opt_prefix}/Cirrovane.app /Applications/
    TEXT
  end

  test do
    # A folder of a build machine is in no iCloud Drive, and so not safe to close: status 1.
    assert_match "safeToClose", shell_output("#{bin}/cirrovanectl check --json #{testpath}", 1)
  end
end
