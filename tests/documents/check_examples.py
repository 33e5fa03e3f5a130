#!/usr/bin/env python3
"""Runs the programs that were made of a document's examples.

    check_examples.py --scene SCENE --programs FOLDER DOCUMENT

Each runs in a folder of its own that holds the scene, with its side files, under the name "gate.xml", which is its
argument as well. It must end with 0 and print what the document says; without such a block it must print something.
"""

import argparse
import ctypes
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

import extract_examples

NAME = "gate"


def copy_scene(scene, folder):
    for file in scene.parent.iterdir():
        if file.is_file():
            shutil.copy(file, folder / file.name)
    # The property file bears the name of its scene.
    for extension in (".xml", ".kvrproperty"):
        file = scene.with_suffix(extension)
        if file.exists():
            shutil.copy(file, folder / (NAME + extension))


def may_leave_the_network():
    """Whether a program without privileges may make namespaces, which is for the system to say."""
    child = os.fork()
    if child == 0:
        new_user_and_network = 0x10000000 | 0x40000000
        os._exit(0 if ctypes.CDLL(None).unshare(new_user_and_network) == 0 else 1)
    return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]) == 0


def problem_of(example, program, scene):
    with tempfile.TemporaryDirectory() as folder:
        copy_scene(scene, pathlib.Path(folder))
        done = subprocess.run([program, NAME + ".xml"], cwd=folder, stdin=subprocess.DEVNULL, capture_output=True,
                              text=True, timeout=120, check=False)
    if "unshare(" in example.code and not may_leave_the_network():
        return None if done.returncode == 3 else f"ended with {done.returncode} instead of 3: {done.stderr}"
    if done.returncode != 0:
        return f"ended with {done.returncode}: {done.stderr}"
    if example.output is None:
        return None if done.stdout else "printed nothing"
    return None if done.stdout == example.output else f"printed\n{done.stdout}instead of\n{example.output}"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--scene", required=True, type=pathlib.Path)
    parser.add_argument("--programs", required=True, type=pathlib.Path)
    parser.add_argument("document", type=pathlib.Path)
    options = parser.parse_args()
    found = extract_examples.examples(options.document.read_text(encoding="utf-8"))
    problems = 0
    for name, example in zip(extract_examples.program_names(options.document, found), found):
        problem = problem_of(example, (options.programs / name).resolve(), options.scene)
        if problem:
            problems += 1
            print(f"{options.document.name}:{example.line}: {name} {problem}")
    print(f"{len(found)} examples, {len(found) - problems} as the document says")
    return 1 if problems or not found else 0


if __name__ == "__main__":
    sys.exit(main())
