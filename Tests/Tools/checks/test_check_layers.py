#!/usr/bin/env python3
"""check_layers.py against small trees: one include each, and what is to be said about it."""

import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parents[3] / "Tools" / "checks"))
import check_layers  # noqa: E402

SOURCE = "VexoNames/Private/Source/"
# including file, include as written, file that it means, part of the rule expected (None: allowed)
ROWS = [
    ("Framework/Base/A.h", '"TName.h"', "VexoNames/Public/TName.h", "does not include VexoNames/Public/"),
    ("Framework/Base/A.h", '"C.h"', "Framework/Middleware/C.h", "does not include Framework/Middleware/"),
    ("Framework/Middleware/C.h", '"A.h"', "Framework/Base/A.h", None),
    ("Framework/CFS/Server/p.h", '"Ticket/t.h"', "Framework/Ticket/t.h", "does not include Framework/Ticket/"),
    ("VexoNames/Public/TName.h", "<text/Scan.h>", SOURCE + "templatenames/text/Scan.h", "does not include"),
    (SOURCE + "templatenames/text/Scan.h", '"../Entry.h"', SOURCE + "templatenames/Entry.h", "does not include"),
    (SOURCE + "templatenames/TName.cpp", '"text/Scan.h"', SOURCE + "templatenames/text/Scan.h", None),
    (SOURCE + "templatenames/TName.cpp", '"SimpleXMLValueLookup.h"', SOURCE + "SimpleXMLValueLookup.h", "above"),
    (SOURCE + "systemnames/U.cpp", '"SimpleXMLValueLookup.h"', SOURCE + "SimpleXMLValueLookup.h", None),
    ("Tools/vexonames/main.cpp", '"TName.h"', "VexoNames/Public/TName.h", None),
    ("Tools/vexonames/main.cpp", '"Context.h"', "Tools/vexonames/Context.h", None),
    ("Tools/vexonames/main.cpp", '"text/Scan.h"', SOURCE + "templatenames/text/Scan.h", "exported headers only"),
    ("Examples/a.cpp", '"../Tests/Fake.h"', "Tests/Fake.h", "exported headers only"),
    ("Tests/VexoNames/s.cpp", '"text/Scan.h"', SOURCE + "templatenames/text/Scan.h", None),
    ("VexoNames/Public/TName.h", "<vector>", None, None),
    ("VexoNames/Extra/x.h", '"TName.h"', "VexoNames/Public/TName.h", "lies in no layer"),
]


class CheckLayers(unittest.TestCase):
    def test_rows(self):
        for source, include, target, rule in ROWS:
            with self.subTest(source=source, include=include), tempfile.TemporaryDirectory() as folder:
                root = pathlib.Path(folder)
                for path, text in ((target, ""), (source, f"#pragma once\n#include {include}\n")):
                    if path:
                        (root / path).parent.mkdir(parents=True, exist_ok=True)
                        (root / path).write_text(text, encoding="utf-8")
                faults = list(check_layers.faults_in(root))
                if rule is None:
                    self.assertEqual(faults, [])
                else:
                    self.assertEqual(len(faults), 1)
                    self.assertTrue(faults[0].startswith(f"{source}:2: {include[1:-1]}: "), faults[0])
                    self.assertIn(rule, faults[0])


if __name__ == "__main__":
    unittest.main()
