#!/usr/bin/env python3
"""Installs the build into a temporary prefix and uses it as another project would.

The example host is built with find_package and again with pkg-config, and each time it must print the tree of the
example assembly. The prefix is moved before it is used: nothing installed may remember where it was put.
"""

import argparse
import os
import pathlib
import re
import subprocess
import sys
import tempfile

# The scene as1-oc-214: each occurrence at its depth, in document order. Brackets and bolted pairs are placed many
# times and stand in the document once.
BRACKET = ([(2, "assembly l-bracket-assembly")]
           + 3 * [(3, "assembly nut-bolt-assembly"), (4, "part bolt"), (4, "part nut")]
           + [(3, "part l-bracket")])
TREE = ([(0, "file as1-oc-214"), (1, "assembly as1"),
         (2, "assembly rod-assembly"), (3, "part nut"), (3, "part nut"), (3, "part rod")]
        + BRACKET + [(2, "part plate")] + BRACKET)

# What the libraries export.
PRODUCER = re.compile(r"(vtable for |typeinfo for |typeinfo name for )?KVR::XMLProducer(Options)?(::|$)")
EXCHANGE = re.compile(r"KVR::(ImportModel|ExportScene|CertifyModel|CertifyAgainst|ConvertModel|IsExportFormat|IsScenePath"
                      r"|ExportFormats|CanCompress|CanView|DrawPicture)[(\[]")


def run(*command, **options):
    """The command's standard output; ends the test with all its output when it fails."""
    command = [str(word) for word in command]
    done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          text=True, check=False, **options)
    if done.returncode != 0:
        sys.exit(f"{' '.join(command)}\nended with {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def check_tree(how, printed):
    expected = "".join(f"{'  ' * depth}{line}\n" for depth, line in TREE)
    if printed != expected:
        sys.exit(f"the host built with {how} printed\n{printed}\ninstead of\n{expected}")


def build_with_cmake(options, prefix, folder):
    run(options.cmake, "-G", "Ninja", "-S", options.source / "examples/host", "-B", folder,
        "-D", f"CMAKE_PREFIX_PATH={prefix}", "-D", f"CMAKE_CXX_COMPILER={options.compiler}",
        "-D", "CMAKE_FIND_USE_PACKAGE_REGISTRY=OFF")
    run(options.cmake, "--build", folder)
    return folder / "host"


def pkg_config_flags(options, prefix):
    found = list(prefix.rglob("kvr_xml_producer.pc"))
    if len(found) != 1:
        sys.exit(f"one pkg-config file expected: {found}")
    environment = dict(os.environ, PKG_CONFIG_PATH=str(found[0].parent))
    return run(options.pkg_config, "--cflags", "--libs", "kvr_xml_producer", env=environment).split()


def build_with_pkg_config(options, prefix, folder):
    flags = pkg_config_flags(options, prefix)
    library_folder = next(flag[2:] for flag in flags if flag.startswith("-L"))
    folder.mkdir()
    run(options.compiler, "-std=c++20", options.source / "examples/host/host.cpp", "-o", folder / "host", *flags,
        f"-Wl,-rpath,{library_folder}")
    return folder / "host"


def check_headers(options, prefix, folder):
    """Every installed header compiles from the prefix alone, without a warning."""
    include = prefix / "include"
    headers = sorted(include.rglob("*.h"))
    if not any(header.name == "kvr_api.h" for header in headers):
        sys.exit(f"kvr_api.h is not among the installed headers: {headers}")
    source = folder / "headers.cpp"
    folder.mkdir()
    source.write_text("".join(f"#include <{header.relative_to(include)}>\n" for header in headers), encoding="utf-8")
    run(options.compiler, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Wpedantic", "-Werror",
        *(flag for flag in pkg_config_flags(options, prefix) if flag.startswith("-I")), source)


def check_exchange(options, prefix, folder):
    """A program of another project imports a model and exports the scene."""
    run(options.cmake, "-G", "Ninja", "-S", options.source / "tests/install/exchange", "-B", folder,
        "-D", f"CMAKE_PREFIX_PATH={prefix}", "-D", f"CMAKE_CXX_COMPILER={options.compiler}",
        "-D", "CMAKE_FIND_USE_PACKAGE_REGISTRY=OFF")
    run(options.cmake, "--build", folder)
    target = folder / "out.step"
    printed = run(folder / "exchange", options.source / "examples/models/as1-oc-214.stp", folder / "scene.xml", target)
    if printed != "5 parts, 13 instances; writing\n":
        sys.exit(f"the program that imports and exports printed {printed}")
    if not target.read_bytes().startswith(b"ISO-10303-21;"):
        sys.exit("the program that imports and exports wrote no STEP file")


def check_scene_host(options, prefix, folder, scene):
    """The host on the resolved scene prints each visible part where it stands, in its colour."""
    run(options.cmake, "-G", "Ninja", "-S", options.source / "examples/scene_host", "-B", folder,
        "-D", f"CMAKE_PREFIX_PATH={prefix}", "-D", f"CMAKE_CXX_COMPILER={options.compiler}",
        "-D", "CMAKE_FIND_USE_PACKAGE_REGISTRY=OFF")
    run(options.cmake, "--build", folder)
    lines = run(folder / "scene_host", scene).splitlines()
    number = r"-?[0-9.]+(?:e[-+][0-9]+)?"
    line = re.compile(rf"(/\w+)+  {number} {number} {number}  from {number} {number} {number} to {number} {number} {number}")
    parts = sum(what.startswith("part") for _, what in TREE)
    if len(lines) != parts or not all(line.fullmatch(text) for text in lines):
        sys.exit("the host on the resolved scene should print %d parts:\n%s" % (parts, "\n".join(lines)))


def check_python(options, prefix, folder, scene):
    """The package for Python reads and exports with the installed libraries alone."""
    packages = [found.parent for found in prefix.rglob("kvr/_core*.so")]
    if len(packages) != 1 or not (packages[0] / "py.typed").exists():
        sys.exit(f"one package for Python expected: {packages}")
    program = f"import kvr; print(kvr.Scene({str(scene)!r}).tree(levels=2)); kvr.convert({str(scene)!r}, 'out.glb')"
    folder.mkdir()
    environment = dict(os.environ, PYTHONPATH=str(packages[0].parent), PYTHONDONTWRITEBYTECODE="1")
    printed = run(options.python, "-c", program, cwd=folder, env=environment).splitlines()
    if printed[:3] != ["as1-oc-214", "  as1", "    rod-assembly_1"]:
        sys.exit(f"the package for Python printed {printed}")
    if not (folder / "out.glb").read_bytes().startswith(b"glTF"):
        sys.exit("the package for Python wrote no GLB file")


def check_exports(library, own, expected):
    """The library exports what is expected of it and nothing else of the project."""
    lines = [line.split(maxsplit=2) for line in
             run("nm", "--dynamic", "--defined-only", "--demangle", library).splitlines()]
    # Weak symbols (V, W) are inline code of other libraries' classes and of templates.
    names = [name for _, kind, name in lines if kind in "BDRT" and "KVR::" in name]
    alien = [name for name in names if not own.match(name)]
    if alien or not any(name.startswith(expected) for name in names):
        sys.exit("\n".join([f"{library} should export {own.pattern} alone:", *names]))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--cmake", required=True)
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--pkg-config", required=True)
    parser.add_argument("--source", required=True, type=pathlib.Path)
    parser.add_argument("--build", required=True, type=pathlib.Path)
    parser.add_argument("--python")
    options = parser.parse_args()

    scene = options.source / "examples/as1-oc-214/as1-oc-214.xml"
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        run(options.cmake, "--install", options.build, "--prefix", folder / "first place")
        prefix = folder / "prefix"
        (folder / "first place").rename(prefix)

        check_tree("find_package", run(build_with_cmake(options, prefix, folder / "with_cmake"), scene))
        check_tree("pkg-config", run(build_with_pkg_config(options, prefix, folder / "with_pkg_config"), scene))
        check_headers(options, prefix, folder / "headers")
        check_exchange(options, prefix, folder / "exchange")
        check_scene_host(options, prefix, folder / "scene_host", scene)
        if options.python:
            check_python(options, prefix, folder / "python", scene)
            wheels = folder / "wheels"
            wheel = run(options.python, "-B", options.source / "python/make_wheel.py", options.build, wheels).strip()
            run(options.python, "-m", "pip", "install", "--no-index", "--no-deps", "--no-cache-dir", "--no-compile",
                "--prefix", folder / "from wheel", wheel)
            check_python(options, folder / "from wheel", folder / "python of wheel", scene)
        for library in prefix.rglob("libkvr_xml_producer.so"):
            check_exports(library, PRODUCER, "KVR::XMLProducer::BeginProcess(")
        for library in prefix.rglob("libkvr_exchange.so"):
            check_exports(library, EXCHANGE, "KVR::ImportModel(")
        program = prefix / "bin/kvr"
        if "l-bracket-assembly" not in run(program, "tree", scene):
            sys.exit("the installed program does not print the tree")
        # It finds the program that stands beside it.
        checked = run(prefix / "bin/kvr-batch", "check", scene, "--workers", "1", "--results", folder / "results")
        if not checked.startswith("1 file: 1 passed"):
            sys.exit("the installed kvr-batch does not check a scene")
    print("installed, moved, built against and run")


if __name__ == "__main__":
    main()
