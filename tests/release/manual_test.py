#!/usr/bin/env python3
"""The tool's manual page: it formats without a warning, and tells of just the commands, options and environment variables
that the tool's help shows."""
import re
import unittest

from release import SOURCE, VELD, help_of, run

PAGE = SOURCE / "apps/veld/veld.1"


def formatted():
    return run("groff", "-man", "-ww", "-Tascii", "-P-cbou", "-rHY=0", PAGE)


def tagged_options(text):
    """Options at which a paragraph begins."""
    lines = re.findall(r"^ +(-.*)$", text, re.MULTILINE)
    return {name for line in lines for name in re.findall(r"(?<!\S)(--?[a-z][-a-z]*)", line)}


class Manual(unittest.TestCase):
    def test_formats_without_a_warning(self):
        output = formatted()
        self.assertTrue(output.startswith("VELD(1)"), output[:200])
        self.assertNotIn(str(PAGE), output)

    def test_options(self):
        options, commands = help_of()
        for command in commands:
            options += help_of(command)[0]
        self.assertGreaterEqual(len(set(options)), 10)
        self.assertEqual(tagged_options(formatted()), set(options))

    def test_commands(self):
        chapter = re.search(r"^COMMANDS$(.*?)^OPTIONS$", formatted(), re.MULTILINE | re.DOTALL).group(1)
        self.assertEqual(re.findall(r"^ {3}(\w+)$", chapter, re.MULTILINE), help_of()[1])

    def test_environment(self):
        chapter = formatted().partition("\nENVIRONMENT\n")[2]
        names = re.findall(r"\(Env:(\w+)\)", run(VELD, "--help"))
        self.assertEqual(len(names), 2)
        for name in names:
            self.assertIn(name, chapter)


if __name__ == "__main__":
    unittest.main()
