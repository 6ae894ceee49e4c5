#!/usr/bin/env python3
"""The checks of Tools/checks against small trees, and what is to be said about them."""

import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parents[3] / "Tools" / "checks"))
import check_docs  # noqa: E402
import check_layers  # noqa: E402

SOURCE = "VexoNames/Private/Source/"
# including file, include as written, file that it means, part of the rule expected (None: allowed)
LAYERS = [
    ("Framework/Base/A.h", '"TName.h"', "VexoNames/Public/TName.h", "does not include VexoNames/Public/"),
    ("Framework/Base/A.h", '"C.h"', "Framework/Middleware/C.h", "does not include Framework/Middleware/"),
    ("Framework/Middleware/C.h", '"A.h"', "Framework/Base/A.h", None),
    ("Framework/CFS/Server/p.h", '"Ticket/t.h"', "Framework/Ticket/t.h", "does not include Framework/Ticket/"),
    ("VexoNames/Public/TName.h", "<text/Scan.h>", SOURCE + "templatenames/text/Scan.h", "does not include"),
    (SOURCE + "templatenames/text/Scan.h", '"engine/Entry.h"', SOURCE + "templatenames/engine/Entry.h", "does not include"),
    (SOURCE + "templatenames/facade/TName.cpp", '"text/Scan.h"', SOURCE + "templatenames/text/Scan.h", None),
    (SOURCE + "templatenames/facade/TName.cpp", '"SimpleXMLValueLookup.h"', SOURCE + "SimpleXMLValueLookup.h", "above"),
    (SOURCE + "xml/Memory.h", '"SimpleXMLValueLookup.h"', SOURCE + "SimpleXMLValueLookup.h", "above"),
    (SOURCE + "systemnames/U.cpp", '"SimpleXMLValueLookup.h"', SOURCE + "SimpleXMLValueLookup.h", None),
    ("Tools/vexonames/main.cpp", '"TName.h"', "VexoNames/Public/TName.h", None),
    ("Tools/vexonames/main.cpp", '"Context.h"', "Tools/vexonames/Context.h", None),
    ("Tools/vexonames/main.cpp", '"text/Scan.h"', SOURCE + "templatenames/text/Scan.h", "exported headers only"),
    ("Examples/a.cpp", '"../Tests/Fake.h"', "Tests/Fake.h", "exported headers only"),
    ("Tests/VexoNames/s.cpp", '"text/Scan.h"', SOURCE + "templatenames/text/Scan.h", None),
    ("VexoNames/Public/TName.h", "<vector>", None, None),
    ("VexoNames/Extra/x.h", '"TName.h"', "VexoNames/Public/TName.h", "lies in no layer"),
]

EXAMPLE = "int main() {\n  Open();\n\n  Write();\n  Close();\n}\n"
# what the row is about, the page, the fault expected (None: no fault)
DOCS = [
    ("same lines, other indentation", "# Title\n```cpp\nOpen();\nWrite();\n```\n", None),
    ("an elision", "```cpp\nOpen();\n// ...\nClose();\n```\n", None),
    ("a line that is nowhere", "```cpp\nOpen();\nErase();\n```\n", "Page.md:1: this C++ stands in no file"),
    ("pieces in the wrong order", "```cpp\nClose();\n// ...\nOpen();\n```\n", "Page.md:1: this C++ stands in no file"),
    ("another language", "```sh\nErase\n```\n", None),
    ("a block without end", "text\n```cpp\nOpen();\n", "Page.md:2: the block does not end"),
    ("a link that leads somewhere", "see [the code](../Examples/a.cpp#top) and [web](https://example.org)\n", None),
    ("a dead link", "\nsee [the code](../Examples/b.cpp)\n", "Page.md:2: ../Examples/b.cpp is not there"),
]


class Checks(unittest.TestCase):
    def check(self, check, files, parts):
        """One fault that holds these parts; none when they are none."""
        with self.subTest(files=files), tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for path, text in files.items():
                (root / path).parent.mkdir(parents=True, exist_ok=True)
                (root / path).write_text(text, encoding="utf-8")
            faults = list(check.faults_in(root))
            self.assertEqual(len(faults), 1 if parts else 0, faults)
            for part in parts:
                self.assertIn(part, faults[0])

    def test_layers(self):
        for source, include, target, rule in LAYERS:
            files = ({target: ""} if target else {}) | {source: f"#pragma once\n#include {include}\n"}
            self.check(check_layers, files, [f"{source}:2: {include[1:-1]}: ", rule] if rule else [])

    def test_docs(self):
        for _, page, fault in DOCS:
            self.check(check_docs, {"Examples/a.cpp": EXAMPLE, "Docs/Page.md": page}, [fault] if fault else [])


if __name__ == "__main__":
    unittest.main()
