#!/usr/bin/env python3
"""Fails when the library does not export what programs need of its exception classes.

usage: check_exports.py LIBRARY

Prints one line per class and function that is missing, and ends with 1 when there is any.
"""

import re
import subprocess
import sys

CLASSES = [
    "NQ_ETEException",
    "NQ_EIncompatibleType",
    "NQ_ENoSuchKey",
    "NQ_ENoSuchUnit",
    "NQ_ENoSuchUnitCategory",
    "NQ_ENotAnInt32",
    "NQ_EUnknownType",
]

# By the class whose function it is: the exception itself, or one of the templates that it derives from.
FUNCTIONS = {
    "": ["NQ_Throw"],
    "NQ_TExceptionOf": ["NQ_Pack", "NQ_Unpack"],
    "NQ_TClassOf": [
        "NQ_ClassObject",
        "NQ_ClassName",
        "NQ_ParentClass",
        "NQ_Factory",
        "NQ_Create",
        "NQ_IsInterface",
        "NQ_HasInterface",
        "NQ_HasSuperclass",
        "NQ_MostDerivedObject",
        "NQ_DynamicInfo",
        "NQ_Clone",
        "NQ_Move",
    ],
}

OF_CLASS = re.compile(r"^[0-9a-f]+ [TWV] (?:(NQ_T\w+)<)?(NQ_E\w+)(?:, .*>)?::(NQ_\w+)\(")
TABLE = re.compile(r"^[0-9a-f]+ [DRV] (?:vtable|typeinfo) for (NQ_E\w+)$")


def exported(library):
    """(class, function) of all that the library exports of exception classes; "" stands for tables."""
    names = subprocess.run(["nm", "-DC", "--defined-only", library], check=True, capture_output=True, text=True)
    for line in names.stdout.splitlines():
        if found := OF_CLASS.match(line):
            yield found[2], found[1] or "", found[3]
        elif found := TABLE.match(line):
            yield found[1], "", "table"


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    have = set(exported(sys.argv[1]))
    wanted = [(c, t, f) for c in CLASSES for t, names in FUNCTIONS.items() for f in names]
    missing = [w for w in wanted + [(c, "", "table") for c in CLASSES] if w not in have]
    print("\n".join(f"{c}: {f} is not exported" for c, _, f in missing) if missing else "all is exported")
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
