"""The guides quote code from compiled and tested files: every quotation stands in its file.

A fenced block that follows a line <!-- path --> is such a quotation.
"""

import pathlib
import re
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
QUOTE = re.compile(r"^<!-- (\S+) -->\n```\w*\n(.*?)^```$", re.MULTILINE | re.DOTALL)


class QuotedCode(unittest.TestCase):
    def test_quotations_stand_in_their_files(self):
        for guide, least in (("embedding.md", 7), ("scripting.md", 1),
                             ("viewing.md", 8), ("modelling.md", 12)):
            quotes = QUOTE.findall((ROOT / "docs" / guide).read_text())
            self.assertGreaterEqual(len(quotes), least, guide)
            for path, code in quotes:
                with self.subTest(guide=guide, path=path):
                    self.assertIn(code, (ROOT / path).read_text())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
