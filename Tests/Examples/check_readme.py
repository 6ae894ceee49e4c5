#!/usr/bin/env python3
"""Fails when the first C++ of README.md is not what Examples/FirstSteps.cpp has between its marks.

usage: check_readme.py PROJECT_FOLDER
"""

import pathlib
import re
import sys


def main():
    root = pathlib.Path(sys.argv[1])
    example = (root / "Examples" / "FirstSteps.cpp").read_text(encoding="utf-8")
    marked = re.search(r"^// \[readme\]\n(.*?)^// \[/readme\]$", example, re.MULTILINE | re.DOTALL)
    block = re.search(r"^```cpp\n(.*?)^```$", (root / "README.md").read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL)
    if not marked or not block:
        print("no // [readme] marks in the example" if not marked else "README.md shows no C++")
        return 1
    if block[1] != marked[1]:
        print(f"README.md shows\n{block[1]}\nExamples/FirstSteps.cpp has\n{marked[1]}")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
