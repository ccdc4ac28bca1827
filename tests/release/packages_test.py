#!/usr/bin/env python3
"""The Debian packages: what stands in each, with which owners and rights, what it depends on, and that the module and the
tool work from where the packages put them."""
import pathlib
import re
import tempfile
import unittest

from release import BUILD, SOURCE, cached, library_folder, run

VERSION = cached("CMAKE_PROJECT_VERSION")
MAJOR = VERSION.partition(".")[0]
LIBRARIES = f"usr/{library_folder()}"
RUNTIME, DEVELOPMENT, TOOL = f"libveldnls{MAJOR}", "libveldnls-dev", "veldnls-tool"


def public_headers():
    roots = [SOURCE / "include", BUILD / "generated"]
    return {f"usr/include/{path.relative_to(root)}" for root in roots for path in (root / "veldnls").rglob("*.h")}


EXPECTED = {
    RUNTIME: {f"{LIBRARIES}/veldnls.so.{MAJOR} -> veldnls.so.{VERSION}", f"{LIBRARIES}/veldnls.so.{VERSION}"},
    DEVELOPMENT: {
        f"{LIBRARIES}/veldnls.so -> veldnls.so.{MAJOR}",
        f"{LIBRARIES}/libveldnls_hostlib.a",
        f"{LIBRARIES}/cmake/veldnls/veldnlsConfig.cmake",
        f"{LIBRARIES}/cmake/veldnls/veldnlsConfigVersion.cmake",
        f"{LIBRARIES}/pkgconfig/veldnls.pc",
        f"{LIBRARIES}/pkgconfig/veldnls-host.pc",
        *public_headers(),
    },
    TOOL: {"usr/bin/veld", "usr/share/bash-completion/completions/veld", "usr/share/man/man1/veld.1"},
}
for package, files in EXPECTED.items():
    files.add(f"usr/share/doc/{package}/copyright")
PROGRAMS = {"usr/bin/veld"}
LINE = re.compile(r"(\S)(\S{9}) (\S+) +\d+ \S+ \S+ \./(.*)")


class Packages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.work = pathlib.Path(cls.folder.name)
        run("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", cls.work / "out")
        cls.files = {path.name.partition("_")[0]: path for path in (cls.work / "out").glob("*.deb")}
        cls.root = cls.work / "root"
        for path in cls.files.values():
            run("dpkg-deb", "-x", path, cls.root)

    def control(self, package, field):
        return run("dpkg-deb", "-f", self.files[package], field).strip()

    def test_three_packages(self):
        self.assertEqual(set(self.files), set(EXPECTED))
        for path in self.files.values():
            self.assertRegex(path.name, rf"^[-a-z0-9]+_{re.escape(VERSION)}_\w+\.deb$")

    def test_contents(self):
        for package, expected in EXPECTED.items():
            with self.subTest(package):
                found = set()
                for line in run("dpkg-deb", "-c", self.files[package]).splitlines():
                    kind, rights, owner, name = LINE.fullmatch(line).groups()
                    self.assertEqual(owner, "root/root", line)
                    if kind == "d":
                        self.assertEqual(rights, "rwxr-xr-x", line)
                        continue
                    found.add(name)
                    if kind == "-":
                        self.assertEqual(rights, "rwxr-xr-x" if name in PROGRAMS else "rw-r--r--", line)
                self.assertEqual(found, expected)

    def test_nothing_names_the_folders_of_the_build(self):
        for path in self.root.rglob("*"):
            if path.is_file():
                content = path.read_bytes()
                for folder in (SOURCE, BUILD):
                    self.assertNotIn(bytes(folder), content, path)

    def test_no_search_path_in_programs(self):
        for path in (self.root / "usr/bin/veld", self.root / LIBRARIES / f"veldnls.so.{VERSION}"):
            self.assertNotRegex(run("readelf", "-d", path), r"R(UN)?PATH")

    def test_dependencies(self):
        self.assertRegex(self.control(RUNTIME, "Depends"), r"^libc6 \(>= [\d.]+\), libstdc\+\+6 \(>= [\d.]+\)$")
        self.assertEqual(self.control(DEVELOPMENT, "Depends"), f"{RUNTIME} (= {VERSION})")
        self.assertTrue(self.control(TOOL, "Depends").startswith(f"{RUNTIME} (>= {VERSION}), libc6 "))

    # What a program that links the module has to depend on.
    def test_dependencies_of_others(self):
        shlibs = run("dpkg-deb", "-I", self.files[RUNTIME], "shlibs")
        self.assertEqual(shlibs.split()[:3], ["veldnls", MAJOR, RUNTIME])

    def test_descriptions(self):
        for package in EXPECTED:
            lines = self.control(package, "Description").splitlines()
            self.assertGreater(len(lines), 1, package)
            for line in lines[1:]:
                self.assertRegex(line, r"^ \S", package)

    # The text of a licence stands there indented, a point in place of an empty line.
    def test_copyright(self):
        notice = (SOURCE / "data/locale/LICENSE-unicode.txt").read_text().split()
        folders = {f"data/{path.name}" for path in (SOURCE / "data").iterdir()}
        self.assertGreaterEqual(len(folders), 6)
        for package in EXPECTED:
            text = (self.root / f"usr/share/doc/{package}/copyright").read_text()
            words = " ".join(word for word in text.split() if word != ".")
            self.assertIn(" ".join(notice), words, package)
            self.assertIn("UNICODE LICENSE V3 COPYRIGHT AND PERMISSION NOTICE", words, package)
            for folder in folders:
                self.assertIn(f" {folder}/*", text, package)
            named = set(re.findall(r"[-\w.]+", " ".join(re.findall(r"^License: (.*)$", text, re.MULTILINE)))) - {"and"}
            for licence in named:
                self.assertRegex(text, rf"(?m)^License: {re.escape(licence)}\n ", package)

    def test_the_unpacked_tool_converts(self):
        veld = self.root / "usr/bin/veld"
        self.assertEqual(run(veld, "convert", "-f", "utf-8", "-t", "us-ascii", input="plain\n"), "plain\n")
        self.assertIn(f"{self.root}/{LIBRARIES}/veldnls.so.{MAJOR}\n", run(veld, "info"))


if __name__ == "__main__":
    unittest.main()
