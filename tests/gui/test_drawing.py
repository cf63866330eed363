"""What draws the window: every item of ours looks alike whoever does, and no OpenGL is loaded without a graphics card."""

from pathlib import Path

import pytest
from conftest import BUILD, PROGRAMS

# Channels of 0 to 255: what a colour's rounding on its way amounts to.
TOLERANCE = 3
# Of the pixels; the rounded edges of Qt's own rectangles are smoothed in another way by each.
EDGES = 0.005
OPENGL = {"QSG_RHI_BACKEND": "opengl", "QT_QUICK_BACKEND": ""}
PAINTER = {"QSG_RHI_BACKEND": "", "QT_QUICK_BACKEND": "software"}
# What a scene covers of its picture at least.
LEAST_COVERED = {
    "backdrop-liquid": 0.99, "backdrop-classic": 0.99, "card-liquid": 0.75, "card-classic": 0.75, "card-small": 0.003,
    "card-between-pixels": 0.6, "ring-danger": 0.05, "ring-safe": 0.10, "chart": 0.30, "symbol": 0.008, "gauge": 0.10,
}  # fmt: skip
GROUNDS = ("black", "white")


def run(desktop, *arguments, environment):
    log = desktop.folder / "item_pictures.log"
    process = desktop.spawn([PROGRAMS / "item_pictures", *arguments], environment, log=log)
    assert process.wait(120) == 0, log.read_text()
    return log.read_text()


@pytest.fixture(scope="module")
def compared(desktop):
    """Of each picture by its name: greatest difference, share of unlike pixels, shares covered."""
    folders = {"opengl": OPENGL, "painter": PAINTER}
    places = {name: BUILD / "test-files/item-pictures" / name for name in folders}
    for name, environment in folders.items():
        run(desktop, "paint", places[name], environment=environment)
    text = run(desktop, "compare", places["opengl"], places["painter"], environment=PAINTER)
    rows = [line.split() for line in text.splitlines() if ".png " in line]
    return {name.removesuffix(".png"): tuple(map(float, values)) for name, *values in rows}


def test_items_areAllPainted(compared):
    assert set(compared) == {f"{scene}-on-{ground}" for scene in LEAST_COVERED for ground in GROUNDS}


@pytest.mark.parametrize("ground", GROUNDS)
@pytest.mark.parametrize("scene", LEAST_COVERED)
def test_item_byEither_looksAlike(compared, scene, ground):
    greatest, unlike, by_opengl, by_painter = compared[f"{scene}-on-{ground}"]
    assert min(by_opengl, by_painter) >= LEAST_COVERED[scene]
    if scene == "gauge":
        assert unlike <= EDGES
    else:
        assert greatest <= TOLERANCE


def mapped(application):
    return Path(f"/proc/{application.process.pid}/maps").read_text()


@pytest.mark.skipif(Path("/dev/dri").exists(), reason="the machine may have a graphics card")
def test_window_withoutGraphicsCard_loadsNoDriver(launch):
    application = launch(QT_QUICK_BACKEND="", QSG_RHI_BACKEND="").ready()
    application.wait_scanned()
    assert "_dri.so" not in mapped(application)


def test_window_choiceOfTheUser_stands(launch):
    application = launch(QT_QUICK_BACKEND="", QSG_RHI_BACKEND="opengl").ready()
    application.wait_scanned()
    assert "_dri.so" in mapped(application)


def test_rendererOfTheMachine_isToldByAProcessOfItsOwn(desktop):
    log = desktop.folder / "renderer.log"
    process = desktop.spawn([PROGRAMS / "cirrovane", "--tell-renderer"], log=log)
    assert process.wait(60) == 0, log.read_text()
    assert "cirrovane draws with: " in log.read_text()
