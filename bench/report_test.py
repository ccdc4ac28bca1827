#!/usr/bin/env python3
"""Tests of bench/report: its arithmetic and its judgement on made-up samples, and a short run of the program from end to
end.

usage: bench/report_test.py [--program FILE --out DIR] [CLASS...]
Without a program the run is skipped.
"""
import argparse
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

sys.dont_write_bytecode = True
from reporting import page, picture, ratios, tables  # noqa: E402

HERE = pathlib.Path(__file__).resolve().parent
CONTEXT = {"compiler": "g++", "glibc": "2", "icu": "72", "samples": 1, "sampleSeconds": 0.01}
OPTIONS = argparse.Namespace(program=None, out=None)


def group(kind, form, **times):
    candidates = [{"name": name, "ns": ns} for name, ns in times.items()]
    return {"kind": kind, "op": "a to b", "text": "de", "form": form, "bytes": 100, "calls": 10, "candidates": candidates}


class Arithmetic(unittest.TestCase):
    def test_the_best_peer_is_the_one_with_the_lowest_median(self):
        samples = group("page", "random", veldnls=[10, 10, 10], slow=[1, 50, 50], quick=[30, 30, 90])
        (found,) = ratios.ratios_of(samples, has_vbmi=True)
        self.assertEqual((found.peer, found.ratio, found.floor, found.below), ("quick", 3.0, 1.0, False))

    def test_a_ratio_is_the_median_of_the_rounds_not_of_the_times(self):
        samples = group("unicode", "looped", veldnls=[10, 100, 20], peer=[5, 50, 60])
        (found,) = ratios.ratios_of(samples, has_vbmi=True)
        self.assertEqual((found.ratio, found.below), (0.5, True))

    def test_a_copy_is_judged_beside_the_best_peer_and_only_on_long_text_with_vbmi(self):
        samples = group("bytes", "looped", veldnls=[10], iconv=[20], memcpy=[4])
        self.assertEqual([(r.peer, r.floor, r.below) for r in ratios.ratios_of(samples, has_vbmi=True)],
                         [("iconv", 1.0, False), ("memcpy", 0.5, True)])
        self.assertIsNone(list(ratios.ratios_of(samples, has_vbmi=False))[1].floor)
        field = group("bytes", "field-16", veldnls=[10], iconv=[20], memcpy=[4])
        self.assertIsNone(list(ratios.ratios_of(field, has_vbmi=True))[1].floor)

    def test_floors_of_multi_byte_encodings_go_by_the_length_of_the_text(self):
        def floors(kind):
            return [ratios.floor_of(kind, "a to b", form, "iconv", has_vbmi=False) for form in tables.FORMS]

        self.assertEqual(floors("multi"), [1.0, 1.0, 1.5, 1.5, 1.0])
        self.assertEqual(floors("multi-multi"), [2.0, 2.0, 1.5, 1.5, 1.5])
        found = [ratios.Ratio("multi", "a to utf-8", "ja", form, "iconv", 1.2, floor)
                 for form, floor in zip(tables.FORMS, floors("multi"))]
        self.assertIn("| 1.00 or 1.50 | 5 | 2 |", tables.markdown_summary(found))

    def test_floors_of_numbers_go_by_the_call(self):
        def floor(op):
            return ratios.floor_of("numbers", op, "en_US", "std::to_chars", has_vbmi=False)

        self.assertEqual([floor(op) for op in ("formatDouble fixed", "formatDouble field BEST 12", "formatInt64 grouped")],
                         [1.0, 0.5, 0.8])
        with self.assertRaises(ValueError):
            floor("formatPercent")

    def test_without_a_peer_there_is_no_ratio_but_a_speed(self):
        samples = group("utf-e", "looped", veldnls=[50])
        self.assertEqual(list(ratios.ratios_of(samples, has_vbmi=True)), [])
        speed = ratios.speed_of(samples)
        self.assertEqual((speed.gigabytes, speed.call), (2.0, 5.0))

    def test_cells_below_their_floor_stand_out(self):
        slow = ratios.Ratio("page", "a to utf-8", "de", "random", "iconv", 0.5, 1.0)
        fast = ratios.Ratio("page", "a to utf-8", "en", "random", "iconv", 12.34, 1.0)
        table = tables.markdown_ratios([slow, fast])
        self.assertIn("**0.50**", table)
        self.assertNotIn("12.3", table)  # the slower text speaks for the conversion

    def test_every_ratio_of_a_conversion_is_a_dot(self):
        dots = [ratios.Ratio("page", "a to utf-8", "de", "random", "iconv", value, 1.0) for value in (0.001, 1.0, 1e6)]
        dots += [ratios.Ratio("multi", op, "ja", "random", "iconv", 1.0, 1.0) for op in ("a to utf-8", "utf-8 to a")]
        dots.append(ratios.Ratio("multi-multi", "a to b", "ja", "random", "iconv", 1.0, 2.0))
        dots.append(ratios.Ratio("numbers", "parseInt64", "18 digits", "en_US", "std::from_chars", 1.0, 0.8))
        names = [ratios.Ratio("names", "name look-up", "names", "all", "ICU", 2.0, None)]
        root = ElementTree.fromstring(picture.draw(dots + names, "a & b"))
        circles = [element for element in root.iter() if element.tag.endswith("circle")]
        self.assertEqual(len(circles), len(tables.FORMS) + len(dots))
        for circle in circles:
            self.assertTrue(0 <= float(circle.get("cx")) <= picture.WIDTH)

    def test_the_page_needs_every_place_once(self):
        filled = page.fill("x\n<!-- a: begin -->\nold\n<!-- a: end -->\ny", {"a": "new"})
        self.assertEqual(filled, "x\n<!-- a: begin -->\nnew\n<!-- a: end -->\ny")
        with self.assertRaises(ValueError):
            page.fill("nothing here", {"a": "new"})

    def test_the_page_in_docs_has_a_place_for_every_part(self):
        parts = page.parts({"model": "x", "count": 1, "flags": []}, CONTEXT, [], [])
        page.fill((HERE.parent / "docs" / "performance.md").read_text(), parts)


class Judgement(unittest.TestCase):
    """bench/report on the samples of an earlier run."""

    @staticmethod
    def report(groups, *options):
        with tempfile.TemporaryDirectory() as folder:
            samples = pathlib.Path(folder) / "samples.json"
            samples.write_text(json.dumps({"context": CONTEXT, "groups": groups}))
            command = [sys.executable, str(HERE / "report"), "--samples", str(samples), "--out", folder, "--keep-docs"]
            return subprocess.run(command + list(options), capture_output=True, text=True, check=False)

    def expect(self, groups, status, words):
        judged = self.report(groups, "--judge")
        self.assertEqual((judged.returncode, judged.stderr), (status, ""))
        self.assertIn(words, judged.stdout)
        told = self.report(groups)
        self.assertEqual((told.returncode, told.stdout), (0, judged.stdout))

    def test_all_ratios_reach_their_floors(self):
        self.expect([group("page", "random", veldnls=[10], iconv=[10])], 0, "0 of 1 ratios are below their floors")

    def test_one_ratio_below_its_floor_is_printed_and_fails(self):
        groups = [group("page", "random", veldnls=[10], iconv=[30]), group("multi", "field-16", veldnls=[10], iconv=[14])]
        self.expect(groups, 1, "1 of 2 ratios are below their floors\n  1.400  floor 1.50  a to b")

    def test_a_ratio_without_a_floor_is_not_judged_and_nothing_judged_fails(self):
        floorless = group("validate", "random", veldnls=[20], ICU=[10])
        self.expect([floorless], 1, "0 of 0 ratios are below their floors")
        self.expect([floorless, group("unicode", "random", veldnls=[10], ICU=[20])], 0, "0 of 1 ratios")


class Inputs(unittest.TestCase):
    """What can't be read ends bench/report with a sentence, ahead of any build."""

    def refuses(self, status, sentence, *options):
        done = subprocess.run([sys.executable, str(HERE / "report"), *options], capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout), (status, ""))
        self.assertTrue(done.stderr.endswith("\n") and sentence in done.stderr.splitlines()[-1], done.stderr)

    def test_files_that_are_not_there(self):
        for option in ("--samples", "--program", "--module"):
            self.refuses(2, "there is no file /nowhere/file", option, "/nowhere/file")

    def test_samples_that_are_none(self):
        self.refuses(1, f"{HERE / 'report'} has no samples", "--samples", str(HERE / "report"))


class EndToEnd(unittest.TestCase):
    def setUp(self):
        if OPTIONS.program is None:
            self.skipTest("no program given")

    def test_a_quick_run_leaves_well_formed_files_and_the_docs_alone(self):
        out = pathlib.Path(OPTIONS.out)
        out.mkdir(parents=True, exist_ok=True)
        docs = {path: path.read_bytes() for path in (HERE.parent / "docs").glob("performance.*")}
        command = [str(HERE / "report"), "--program", OPTIONS.program, "--quick", "--out", str(out),
                   "--json", str(out / "ratios.json")]
        done = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True)

        rows = json.loads((out / "ratios.json").read_text())
        for row in rows:
            self.assertEqual(list(row), ["op", "text", "form", "peer", "ratio"])
            self.assertGreater(row["ratio"], 0)
        seen = {(row["op"], row["form"]) for row in rows}
        for op in ("wlatin1 to utf-8", "utf-16be to wlatin1", "utf-8 to utf-32be", "wlatin1 to ebcdic1047",
                   "shift-jis to utf-8", "utf-16le to ibm-939", "ibm-939 to shift-jis"):
            for form in tables.FORMS:
                self.assertIn((op, form), seen)
        self.assertIn("memcpy", {row["peer"] for row in rows})
        self.assertIn("malloc", {row["peer"] for row in rows})
        self.assertLessEqual({"name look-up", "formatDouble fixed", "parseInt64"}, {row["op"] for row in rows})
        self.assertIn("below their floors", done.stdout)
        ElementTree.parse(out / "performance.svg")
        for path, content in docs.items():
            self.assertEqual(path.read_bytes(), content)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--program")
    parser.add_argument("--out")
    OPTIONS, rest = parser.parse_known_args()
    unittest.main(argv=sys.argv[:1] + rest)
