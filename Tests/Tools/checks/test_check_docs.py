#!/usr/bin/env python3
"""check_docs.py against one page each, and what is to be said about it."""

import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parents[3] / "Tools" / "checks"))
import check_docs  # noqa: E402

EXAMPLE = "int main() {\n  Open();\n\n  Write();\n  Close();\n}\n"
# what the row is about, the page, the fault expected (None: no fault)
ROWS = [
    ("same lines, other indentation", "# Title\n```cpp\nOpen();\nWrite();\n```\n", None),
    ("an elision", "```cpp\nOpen();\n// ...\nClose();\n```\n", None),
    ("a line that is nowhere", "```cpp\nOpen();\nErase();\n```\n", "Page.md:1: this C++ stands in no file"),
    ("pieces in the wrong order", "```cpp\nClose();\n// ...\nOpen();\n```\n", "Page.md:1: this C++ stands in no file"),
    ("another language", "```sh\nErase\n```\n", None),
    ("a block without end", "text\n```cpp\nOpen();\n", "Page.md:2: the block does not end"),
    ("a link that leads somewhere", "see [the code](../Examples/a.cpp#top) and [web](https://example.org)\n", None),
    ("a dead link", "\nsee [the code](../Examples/b.cpp)\n", "Page.md:2: ../Examples/b.cpp is not there"),
]


class CheckDocs(unittest.TestCase):
    def test_rows(self):
        for about, page, fault in ROWS:
            with self.subTest(about), tempfile.TemporaryDirectory() as folder:
                root = pathlib.Path(folder)
                for path, text in (("Examples/a.cpp", EXAMPLE), ("Docs/Page.md", page)):
                    (root / path).parent.mkdir()
                    (root / path).write_text(text, encoding="utf-8")
                faults = list(check_docs.faults_in(root))
                self.assertEqual(len(faults), 0 if fault is None else 1, faults)
                if fault is not None:
                    self.assertIn(fault, faults[0])


if __name__ == "__main__":
    unittest.main()
