#!/usr/bin/env python3
"""The product built once more, from a copy of the source tree in another place, is the same to the byte, and so is every
table made for it.

The table generators are those of the first build; that they write the same wherever they run is held by their tests."""
import hashlib
import pathlib
import shutil
import tempfile
import unittest

from release import BUILD, SOURCE, cached, run

TARGETS = ["veldnls", "veld", "veldnls_hostlib"]
FILES = ["veldnls.so", "veld", "libveldnls_hostlib.a"]
PUBLIC_TABLE = pathlib.Path("generated/veldnls/cei.h")
SETTINGS = ["CMAKE_BUILD_TYPE", "CMAKE_C_COMPILER", "CMAKE_CXX_COMPILER", "CMAKE_C_FLAGS", "CMAKE_CXX_FLAGS",
            "CMAKE_INSTALL_PREFIX", "CMAKE_INSTALL_LIBDIR", "VELDNLS_SCALAR_ONLY"]  # fmt: skip


def digest(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


class Repeatable(unittest.TestCase):
    def test_same_files_from_another_folder(self):
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder) / "source elsewhere"
            build = pathlib.Path(folder) / "out"
            shutil.copytree(SOURCE, source, ignore=lambda place, names: {"build", ".git"} if place == str(SOURCE) else set())
            run("cmake", "-G", "Ninja", "-S", source, "-B", build, "-DVELDNLS_TESTS=OFF",
                f"-DVELDNLS_GENERATORS_FROM={BUILD}", *[f"-D{name}={cached(name)}" for name in SETTINGS])  # fmt: skip
            run("cmake", "--build", build, "--target", *TARGETS)
            tables = sorted(path.relative_to(build) for path in (build / "generated").rglob("*") if path.is_file())
            self.assertIn(PUBLIC_TABLE, tables)
            for name in [*FILES, *tables]:
                self.assertEqual(digest(build / name), digest(BUILD / name), f"{name} differs; is {BUILD} up to date?")


if __name__ == "__main__":
    unittest.main()
