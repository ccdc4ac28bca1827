#!/usr/bin/env python3
"""bash completion of the tool: what it offers at a place on the command line."""
import shlex
import tempfile
import unittest

from release import BUILD, SOURCE, VELD, help_of, run

SCRIPT = SOURCE / "apps/veld/veld.bash-completion"


def offers(*words, folder=BUILD):
    """What is offered for the last word."""
    line = " ".join(shlex.quote(word) for word in [str(VELD), *words])
    return run(
        "bash", "--norc", "-u", "-c",
        f"source {shlex.quote(str(SCRIPT))}; COMP_WORDS=({line}); COMP_CWORD={len(words)}; _veld \"${{COMP_WORDS[0]}}\"; "
        'printf "%s\\n" "${COMPREPLY[@]}"', cwd=folder).split("\n")[:-1]  # fmt: skip


class Completion(unittest.TestCase):
    def test_the_script_is_sound_and_belongs_to_the_tool(self):
        self.assertEqual(run("bash", "-n", SCRIPT), "")
        self.assertEqual(run("bash", "--norc", "-c", f"source {shlex.quote(str(SCRIPT))}; complete -p veld"),
                         "complete -F _veld veld\n")  # fmt: skip

    def test_commands(self):
        self.assertEqual(sorted(offers("")), sorted(help_of()[1]))
        self.assertEqual(offers("--session-encoding", "convert", "en"), ["encodings"])
        self.assertEqual(offers("--session-encoding", "=", "convert", "en"), ["encodings"])

    def test_options(self):
        general, commands = help_of()
        self.assertEqual(sorted(offers("-")), sorted(general))
        for command in commands:
            wanted = {*general, *help_of(command)[0]}
            self.assertEqual(sorted(offers(command, "-")), sorted(wanted), command)

    def test_encodings(self):
        for before in (["-f"], ["--from"], ["-t"], ["--to"], ["--from", "="], ["--session-encoding"]):
            self.assertEqual(sorted(offers("convert", *before, "wlatin")), ["wlatin1", "wlatin2"], before)
        self.assertEqual(offers("encodings", "utf-16"), ["utf-16", "utf-16be", "utf-16le"])
        self.assertEqual(offers("convert", "-f", "sess"), ["session"])
        every = offers("convert", "--to", "=")
        self.assertGreater(len(every), 200)
        self.assertEqual(len(every), len(set(every)))
        self.assertFalse({"CEI", "encoding", "name"} & set(every))

    def test_locales(self):
        for words in (["format", "-l"], ["parse", "--locale"], ["parse", "--locale", "="], ["locales"]):
            self.assertEqual(sorted(offers(*words, "DE_")), ["de_AT", "de_CH", "de_DE", "de_LI", "de_LU"], words)
        self.assertEqual(len(offers("locales", "")), 132)

    def test_kinds_of_values(self):
        kinds = ["date", "datetime", "hex", "integer", "money", "number", "percent", "time"]
        self.assertEqual(sorted(offers("parse", "")), kinds)
        self.assertEqual(sorted(offers("format", "")), sorted([*kinds, "octal"]))
        self.assertEqual(offers("format", "number", ""), [""])  # nothing
        self.assertEqual(offers("format", "time", "--form", ""), ["12", "24"])
        self.assertEqual(offers("format", "date", "--form", "f"), ["full"])
        self.assertEqual(offers("format", "number", "--as", "b"), ["best"])

    def test_values(self):
        self.assertEqual(offers("convert", "--on-loss", ""), ["substitute", "fail"])
        self.assertEqual(offers("--session-language", "K"), ["KOREAN"])

    def test_files(self):
        with tempfile.TemporaryDirectory() as folder:
            run("touch", "a letter.txt", "another.txt", "b.txt", cwd=folder)
            for words in (["a"], ["-o", "a"], ["--output", "=", "a"], ["-f", "utf-8", "-t", "wlatin1", "a"]):
                self.assertEqual(sorted(offers("convert", *words, folder=folder)), ["a letter.txt", "another.txt"])
            self.assertEqual(offers("--module", "b", folder=folder), ["b.txt"])


if __name__ == "__main__":
    unittest.main()
