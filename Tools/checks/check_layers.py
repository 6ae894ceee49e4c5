#!/usr/bin/env python3
"""Fails when an include points up a layer.

usage: check_layers.py [PROJECT_FOLDER]

Prints one line per fault, "file:line: include: rule", and ends with 1 when there is any.
"""

import pathlib
import re
import sys

# From the bottom up. A file belongs to the longest entry that its path begins with, and includes files of its own
# entry and of the entries above it in this list.
LAYERS = [
    "Framework/Base/",
    "Framework/Middleware/",
    "Framework/MiddlewareGrpc/",
    "Framework/CFS/",
    "Framework/Services/",
    "Framework/Ticket/",
    "VexoNames/Public/",
    "VexoNames/Private/Source/exceptions/",
    "VexoNames/Private/Source/templatenames/text/",
    "VexoNames/Private/Source/templatenames/regex/",
    "VexoNames/Private/Source/templatenames/formatting/",
    "VexoNames/Private/Source/templatenames/engine/",
    "VexoNames/Private/Source/templatenames/definitions/",
    "VexoNames/Private/Source/templatenames/facade/",
    "VexoNames/Private/Source/xml/",
    "VexoNames/Private/Source/SimpleXMLValueLookup",
    "VexoNames/Private/Source/systemnames/",
    "Tools/",
    "Examples/",
    "Tests/",
    "Benchmarks/",
    "Fuzz/",
]

# Folders that see of the libraries what an installed package shows, and of the rest only themselves.
EXPORTED_ONLY = ["Tools/vexonames/", "Examples/", "Tests/consumer/"]
EXPORTED = ("Framework/", "VexoNames/Public/")

# Where the compiler looks for an include that does not lie beside the including file.
INCLUDE_FOLDERS = [
    "Framework",
    "Framework/Base",
    "Framework/Middleware",
    "Framework/MiddlewareGrpc",
    "VexoNames/Public",
    "VexoNames/Private/Source",
    "VexoNames/Private/Source/templatenames",
    "Tools/vexonames",
    "Tests",
    "Tests/Framework",
    "Tests/VexoNames",
    "Tests/Tools",
    "",
]

INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]')


def layer_of(path):
    """The place of a path in LAYERS, or None."""
    fits = [(len(prefix), place) for place, prefix in enumerate(LAYERS) if path.startswith(prefix)]
    return max(fits)[1] if fits else None


def target_of(root, source, name):
    """The project's file that an include means, as a path below root; None for a foreign header."""
    for folder in [pathlib.PurePosixPath(source).parent, *INCLUDE_FOLDERS]:
        candidate = root / folder / name
        if candidate.is_file():
            try:
                return candidate.resolve().relative_to(root).as_posix()
            except ValueError:
                return None
    return None


def broken_rule(source, target):
    """The rule that an include of target in source breaks, or None."""
    for folder in EXPORTED_ONLY:
        if source.startswith(folder) and not target.startswith((folder, *EXPORTED)):
            return f"{folder} includes exported headers only"
    above, below = layer_of(source), layer_of(target)
    if above is None or below is None:
        missing = source if above is None else target
        return f"{missing} lies in no layer: add its folder to LAYERS"
    if below > above:
        return f"{LAYERS[above]} does not include {LAYERS[below]}, which lies above it"
    return None


def faults_in(root):
    root = root.resolve()
    for folder in sorted({layer.split("/")[0] for layer in LAYERS}):
        for path in sorted((root / folder).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            source = path.relative_to(root).as_posix()
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                found = INCLUDE.match(line)
                target = found and target_of(root, source, found[1])
                rule = target and broken_rule(source, target)
                if rule:
                    yield f"{source}:{number}: {found[1]}: {rule}"


def main():
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).parents[2]
    faults = list(faults_in(root))
    print("\n".join(faults) if faults else "no include points up a layer")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
