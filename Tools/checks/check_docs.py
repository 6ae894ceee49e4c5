#!/usr/bin/env python3
"""Fails when the documentation shows C++ that is not compiled, or links to a file that is not there.

usage: check_docs.py [PROJECT_FOLDER]

Each ```cpp block of README.md, CONTRIBUTING.md and Docs/**.md must stand, line for line, in a file of Examples/ or
Tests/; indentation and blank lines do not count, and a line "// ..." in the block stands for anything.
Prints one line per fault, "file:line: fault", and ends with 1 when there is any.
"""

import pathlib
import re
import sys

LINK = re.compile(r"\[[^\]]*\]\(([^)#\s]+)(?:#[^)]*)?\)")


def pages_of(root):
    named = [root / name for name in ("README.md", "CONTRIBUTING.md", "CHANGELOG.md")]
    return [page for page in named if page.is_file()] + sorted((root / "Docs").rglob("*.md"))


def bare_lines(text):
    return [line.strip() for line in text.splitlines() if line.strip()]


def stands_in(block, code):
    """Whether the pieces of a block, which "// ..." parts, follow each other in the code."""
    start, piece = 0, []
    for line in [*block, "// ..."]:
        if line != "// ...":
            piece.append(line)
            continue
        places = range(start, len(code) - len(piece) + 1)
        place = next((i for i in places if code[i : i + len(piece)] == piece), None)
        if place is None:
            return False
        start, piece = place + len(piece), []
    return True


def faults_in(root):
    compiled = [
        bare_lines(path.read_text(encoding="utf-8"))
        for folder in ("Examples", "Tests")
        for suffix in ("*.cpp", "*.h")
        for path in sorted((root / folder).rglob(suffix))
    ]
    for page in pages_of(root):
        name = page.relative_to(root).as_posix()
        fence, block, begin = None, [], 0
        for number, line in enumerate(page.read_text(encoding="utf-8").splitlines(), 1):
            if line.lstrip().startswith("```"):
                if fence == "cpp" and not any(stands_in(bare_lines("\n".join(block)), code) for code in compiled):
                    yield f"{name}:{begin}: this C++ stands in no file of Examples/ or Tests/"
                fence = None if fence is not None else line.strip()[3:].strip()
                block, begin = [], number
            elif fence is not None:
                block.append(line)
            else:
                for link in LINK.findall(line):
                    if "://" not in link and not link.startswith("mailto:") and not (page.parent / link).exists():
                        yield f"{name}:{number}: {link} is not there"
        if fence is not None:
            yield f"{name}:{begin}: the block does not end"


def main():
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).parents[2]
    faults = list(faults_in(root.resolve()))
    print("\n".join(faults) if faults else f"{len(pages_of(root))} pages: their C++ is compiled, their links lead somewhere")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
