#!/usr/bin/env python3
"""The product built once more, from a copy of the source tree in another place, is the same to the byte, and so is every
table made for it."""
import hashlib
import pathlib
import shutil
import tempfile
import unittest

from release import BUILD, SOURCE, cached, run

LIBRARY = {"veldnls": "veldnls.so", "veldnls_hostlib": "libveldnls_hostlib.a"}
TOOL = {"veld": "veld"}
PUBLIC_TABLE = pathlib.Path("generated/veldnls/cei.h")
SETTINGS = ["CMAKE_BUILD_TYPE", "CMAKE_C_COMPILER", "CMAKE_CXX_COMPILER", "CMAKE_C_FLAGS", "CMAKE_CXX_FLAGS",
            "CMAKE_INSTALL_PREFIX", "CMAKE_INSTALL_LIBDIR", "VELDNLS_SCALAR_ONLY"]  # fmt: skip


def digest(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


class Repeatable(unittest.TestCase):
    def expect_same(self, targets, *settings):
        with tempfile.TemporaryDirectory() as folder:
            source = pathlib.Path(folder) / "source elsewhere"
            build = pathlib.Path(folder) / "out"
            shutil.copytree(SOURCE, source, ignore=lambda place, names: {"build", ".git"} if place == str(SOURCE) else set())
            run("cmake", "-G", "Ninja", "-S", source, "-B", build, "-DVELDNLS_TESTS=OFF", *settings,
                *[f"-D{name}={cached(name)}" for name in SETTINGS])  # fmt: skip
            run("cmake", "--build", build, "--target", *targets)
            tables = sorted(path.relative_to(build) for path in (build / "generated").rglob("*") if path.is_file())
            self.assertIn(PUBLIC_TABLE, tables)
            for name in [*targets.values(), *tables]:
                self.assertEqual(digest(build / name), digest(BUILD / name), f"{name} differs; is {BUILD} up to date?")

    # By the table generators of the first build.
    def test_library_from_another_folder(self):
        self.expect_same(LIBRARY, f"-DVELDNLS_GENERATORS_FROM={BUILD}")

    def test_whole_product_and_generators_from_another_folder(self):
        self.expect_same(LIBRARY | TOOL)


if __name__ == "__main__":
    unittest.main()
