#!/usr/bin/env python3
"""tools/check_tree: the tree as it stands is clean, and each rule is seen to fail on a tree that breaks it."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

TOOL = pathlib.Path(__file__).resolve().parents[2] / "tools/check_tree"


def check(files):
    """Exit code and output of the tool on a tree of these files."""
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        (root / "tools/gen").mkdir(parents=True)
        (root / "data").mkdir()
        (root / "docs").mkdir()
        (root / "docs/quirks.md").touch()
        for name, text in files.items():
            path = root / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text)
        done = subprocess.run([sys.executable, TOOL, folder], capture_output=True, text=True, check=False)
        return done.returncode, done.stdout


class CheckTree(unittest.TestCase):
    def breach(self, files, expected):
        code, output = check(files)
        self.assertEqual(code, 1, output)
        self.assertIn(expected, output)

    def clean(self, files):
        code, output = check(files)
        self.assertEqual((code, output), (0, ""))

    def test_this_tree(self):
        done = subprocess.run([sys.executable, TOOL], capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout), (0, ""))

    def test_what_is_no_tree(self):
        for path in ("data", "tools/gen", "docs/quirks.md"):
            with self.subTest(path), tempfile.TemporaryDirectory() as folder:
                for other in {"data", "tools/gen", "docs/quirks.md"} - {path}:
                    (pathlib.Path(folder) / other).mkdir(parents=True)
                self.refuses([folder], f"{folder} has no {path};")
        self.refuses(["/nonexistent"], "/nonexistent has no tools/gen, data, docs/quirks.md;")
        self.refuses([".", "."], "usage: tools/check_tree [ROOT]")

    def refuses(self, arguments, sentence):
        done = subprocess.run([sys.executable, TOOL, *arguments], capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertIn(sentence, done.stderr)

    def test_allowed_includes(self):
        self.clean(
            {
                "locale/a.cpp": '#include <cstring>\n#include "core/b.h"\n#include "locale/c.h"\n#include "veldnls/nls.h"\n',
                "core/hsnlsmain/m.cpp": '#include "locale/c.h"\n#include "modules/x/y.h"\n',
                "transcode/a.cpp": '#include "core/kernels/kernels.h"\n',
                "hs/src/platform/p.cpp": "#include <pthread.h>\n",
                "apps/veld/main.cpp": '#include <CLI/CLI.hpp>\n#include "veldnls/host.h"\n',
                "core/kernels/avx2/k.cpp": "#include <cstdint>\n#include <immintrin.h>\n__m256i x;\n",
            }
        )

    def test_sideways_include(self):
        self.breach({"locale/a.cpp": '#include "transcode/pipeline.h"\n'}, "locale/a.cpp:1: locale may include")

    def test_core_reaches_up(self):
        self.breach({"core/a.cpp": '\n#include "modules/qznlssb/tables.h"\n'}, "core/a.cpp:2: core may include")

    def test_host_layer_past_the_stub(self):
        self.breach({"strings/a.cpp": '#include "veldnls/hostlib/xm.h"\n'}, "reached through core/qznlsstub.h")

    def test_tool_reaches_inside(self):
        self.breach({"apps/veld/a.cpp": '#include "core/registry.h"\n'}, "apps may include")

    def test_generator_reaches_the_library(self):
        self.breach({"tools/gen/a.cpp": '#include "veldnls/types.h"\n'}, "tools/gen may include")

    def test_system_header(self):
        self.breach({"hs/src/a.cpp": "#include <sys/mman.h>\n"}, "system calls belong into hs/src/platform")

    def test_foreign_library(self):
        self.breach({"core/a.cpp": "#include <unicode/utypes.h>\n"}, "no standard header")

    def test_vector_code(self):
        self.breach({"transcode/a.cpp": "auto x = _mm256_setzero_si256();\n"}, "vector code belongs into core/kernels")

    def test_vector_header(self):
        self.breach({"transcode/a.cpp": "#include <immintrin.h>\n"}, "<immintrin.h> is no standard header")

    def test_kernels_reach_the_library(self):
        self.breach({"core/kernels/a.cpp": '#include "core/scratch.h"\n'}, "core/kernels may include")

    def test_generated_file_kept(self):
        self.breach({"core/table.inc": "1,\n"}, "generated files stay in the build tree")

    def test_generated_file_used_twice(self):
        use = '#include "rows.inc"\n'
        script = {"tools/gen/rows.cmake": "veldnls_generate(NAME rows GENERATOR gen OUTPUTS\n  rows.inc\n  INPUTS data/a.tsv)\n"}
        self.clean({**script, "core/a.cpp": use})
        self.breach({**script, "core/a.cpp": use, "core/b.cpp": use}, "rows.inc: 2 units include")
        self.breach(script, "rows.inc: 0 units include")

    def test_data_without_readme(self):
        self.clean({"data/x/README.md": "x\n", "data/x/a.tsv": "1\n", "data/x/y/b.tsv": "1\n"})
        self.breach({"data/x/a.tsv": "1\n"}, "data/x: no README.md")

    def test_quirk_without_its_test(self):
        tests = {
            "tests/core/a_test.cpp": "TEST(Plain, One) {}\nTEST_F(Fixture, Two) {}\nTEST_P(\n    Values, Three) {}\n",
            "tests/core/a.h": "TEST(Plain, InAHeader) {}\n",
        }
        quirks = "Tests as `Suite.Name`\n\n| holds | `Plain.One`, `Fixture.Two`, `Values.Three` |\n| more | %s |\n"
        self.clean({**tests, "docs/quirks.md": quirks % "`a.txt` Other.Text"})
        for missing in ("Plain.Two", "Fixture.One", "Plain.InAHeader"):
            expected = f"docs/quirks.md:4: tests/ has no {missing}; name"
            self.breach({**tests, "docs/quirks.md": quirks % f"`{missing}`, `Plain.One`"}, expected)


if __name__ == "__main__":
    unittest.main()
