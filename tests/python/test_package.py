"""The package as a whole: type hints, what it prints, what it shows to others."""

import ast
import os
import re
import subprocess
import sys
from pathlib import Path

import pytest
from conftest import source_folder

import lumofe
from lumofe import _core

PACKAGE = Path(lumofe.__file__).parent


@pytest.fixture(scope="module")
def check_types(tmp_path_factory):
    """A function that has mypy check something and gives what it says."""
    cache = tmp_path_factory.mktemp("mypy")

    def check(*what: object) -> str:
        environment = {**os.environ, "MYPYPATH": str(PACKAGE.parent)}
        command = [sys.executable, "-m", "mypy", "--strict", "--cache-dir", cache, *what]
        done = subprocess.run(command, env=environment, capture_output=True, text=True, timeout=300)
        return done.stdout + done.stderr

    return check


def test_hints_are_complete_and_right(check_types):
    said = check_types("-p", "lumofe")
    assert said.startswith("Success: no issues found in 6 source files"), said


def test_users_get_the_hints(check_types, tmp_path):
    user = tmp_path / "user.py"
    user.write_text(
        "import numpy as np\n"
        "import lumofe\n"
        "camera = lumofe.Camera((640, 640))\n"
        "camera.aim([(0, 70), (90, 70, 10), camera.views[0]])\n"
        "camera.circle = 300, 330, 290\n"
        "camera.dewarp(np.zeros((960, 640), np.uint8)).shape\n"
        "camera.aim(pan='left')\n"
    )
    said = check_types(user)
    assert 'user.py:7: error: Argument "pan" to "aim" of "Camera" has incompatible' in said
    assert "Found 1 error " in said, said


def described_in_stub() -> dict:
    """What the stub has: the parameters of functions, None for the rest."""

    def entries(body: list) -> dict:
        found = {}
        for node in body:
            if isinstance(node, ast.FunctionDef) and not node.decorator_list:
                found[node.name] = [argument.arg for argument in node.args.args]
            elif isinstance(node, ast.FunctionDef):
                found[node.name] = None
            elif isinstance(node, ast.AnnAssign):
                found[node.target.id] = None
            elif isinstance(node, ast.ClassDef):
                found[node.name] = None
                members = entries(node.body)
                found.update({f"{node.name}.{name}": value for name, value in members.items()})
        return found

    return entries(ast.parse((PACKAGE / "_core.pyi").read_text()).body)


def found_in_module() -> dict:
    """The same of what was compiled, whose functions are documented with their signatures."""

    def parameters(name: str, function: object) -> list:
        signature = function.__doc__.split("\n")[0]
        assert signature.startswith(name + "("), signature
        return re.findall(r"(?:\(|, )(\w+): ", signature)

    found = {}
    for name, value in vars(_core).items():
        if name.startswith("__"):
            continue
        function = callable(value) and not isinstance(value, type)
        found[name] = parameters(name, value) if function else None
    for name, value in vars(_core.Camera).items():
        if name == "__init__" or not name.startswith("_"):
            function = not isinstance(value, property)
            found["Camera." + name] = parameters(name, value) if function else None
    for name in ("View", "Mount", "PixelFormat"):
        assert isinstance(getattr(_core, name).__members__, dict)
        found[name + ".__members__"] = None
    return found


def test_the_stub_describes_the_compiled_part():
    assert found_in_module() == described_in_stub()


def test_what_is_exported_is_documented():
    assert set(lumofe.__all__) == {"Camera", "View", "from_rgb", "to_rgb", "__version__"}
    for thing in (lumofe, lumofe.Camera, lumofe.View, lumofe.from_rgb, lumofe.to_rgb):
        assert len(thing.__doc__) > 100
    for name, value in vars(lumofe.Camera).items():
        if not name.startswith("_"):
            assert getattr(value, "__doc__", None), name


def test_the_version_is_that_of_the_library():
    header = (source_folder() / "include" / "LumoFESDK.h").read_text()
    for part, number in zip(("MAJOR", "MINOR", "PATCH"), lumofe.__version__.split(".")):
        assert f"#define LUMOFESDK_VERSION_{part} {number}\n" in header


def test_nothing_is_printed(capfd, frame, cameras):
    for layout in ("single", "quad", "360", "180"):
        cameras(layout=layout).dewarp(frame)
    assert capfd.readouterr() == ("", "")


def test_the_library_inside_is_not_seen_by_others():
    command = ["nm", "-D", "--defined-only", _core.__file__]
    listed = subprocess.run(command, capture_output=True, text=True, check=True).stdout
    names = [line.split()[-1] for line in listed.splitlines()]
    assert "PyInit__core" in names
    assert not [name for name in names if "FEDSP" in name or name in ("Initialize", "VideoInput")]
