"""Packs a build of the package kvr as a wheel: make_wheel.py BUILD FOLDER. Prints the path of the wheel.

The package is what "cmake --install" puts into its folder. The libraries that it finds from its own place stand in the
wheel's data, which an installer puts under the same prefix.
"""

import pathlib
import re
import shutil
import subprocess
import sys
import sysconfig
import tempfile

METADATA = """Metadata-Version: 2.1
Name: kvr
Version: {version}
Summary: CAD scenes from Python: read, walk, measure, compare, write, convert, check and certify them
Requires-Python: >=3.9
Requires-Dist: numpy
"""
WHEEL = """Wheel-Version: 1.0
Generator: make_wheel
Root-Is-Purelib: false
Tag: {tag}
"""


def run(*command):
    subprocess.run([str(word) for word in command], check=True, stdout=subprocess.DEVNULL)


def version_of(build):
    return re.search(r"^CMAKE_PROJECT_VERSION:STATIC=(\S+)", (build / "CMakeCache.txt").read_text(), re.M).group(1)


def main(build, folder):
    version = version_of(build)
    python = f"cp{sys.version_info.major}{sys.version_info.minor}"
    platform = re.sub(r"[-.]", "_", sysconfig.get_platform())
    with tempfile.TemporaryDirectory() as scratch:
        prefix, root = pathlib.Path(scratch, "prefix"), pathlib.Path(scratch, "wheel")
        run("cmake", "--install", build, "--prefix", prefix, "--strip")
        package, = prefix.glob("lib/python3*/dist-packages/kvr")
        shutil.copytree(package, root / "kvr", ignore=shutil.ignore_patterns("__pycache__"))
        libraries = root / f"kvr-{version}.data/data/lib"
        libraries.mkdir(parents=True)
        # A wheel has no links: each library goes by the name that others call it by.
        for library in prefix.glob("lib/**/libkvr_*.so.?"):
            shutil.copy(library, libraries / library.name)
        info = root / f"kvr-{version}.dist-info"
        info.mkdir()
        (info / "METADATA").write_text(METADATA.format(version=version))
        (info / "WHEEL").write_text(WHEEL.format(tag=f"{python}-{python}-{platform}"))
        folder.mkdir(parents=True, exist_ok=True)
        run(sys.executable, "-m", "wheel", "pack", root, "--dest-dir", folder)
    print(folder / f"kvr-{version}-{python}-{python}-{platform}.whl")


if __name__ == "__main__":
    main(*(pathlib.Path(argument) for argument in sys.argv[1:]))
