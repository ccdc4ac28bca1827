#!/usr/bin/env python3
"""Hosts in C and in C++, built against an installed tree with CMake and with pkg-config. The tree is moved away after the
installation, so that nothing in it may rest on its first place."""
import os
import pathlib
import shlex
import subprocess
import tempfile
import unittest

from release import BUILD, SOURCE, cached, library_folder, run

HERE = pathlib.Path(__file__).resolve().parent
STRICT = ["-Wall", "-Wextra", "-Wconversion", "-Wpedantic", "-Werror"]


class Consumers(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.work = pathlib.Path(cls.folder.name)
        cls.prefix = cls.work / "moved tree"
        run("cmake", "--install", BUILD, "--prefix", cls.work / "first")
        (cls.work / "first").rename(cls.prefix)
        cls.libraries = cls.prefix / library_folder()

    def says_hello(self, program, **environment):
        self.assertEqual(run(program, env={**os.environ, **environment}), "Hello\n")

    def by_cmake(self, source, compiler):
        build = self.work / f"build {source}"
        run("cmake", "-G", "Ninja", "-S", HERE / source, "-B", build,
            f"-D{compiler}={cached(compiler)}", f"-DCMAKE_PREFIX_PATH={self.prefix}")  # fmt: skip
        run("cmake", "--build", build)
        self.says_hello(build / "linked")
        self.says_hello(build / "host")

    def by_pkg_config(self, source, packages, compiler, *options):
        flags = run("pkg-config", "--cflags", "--libs", *packages, env=self.pkg_config())
        program = self.work / f"{source.name}.program"
        run(cached(compiler), *options, *STRICT, source, "-o", program, *shlex.split(flags))
        self.says_hello(program, LD_LIBRARY_PATH=str(self.libraries))

    def pkg_config(self):
        return {**os.environ, "PKG_CONFIG_PATH": str(self.libraries / "pkgconfig")}

    def test_c_by_cmake(self):
        self.by_cmake("consumer_c", "CMAKE_C_COMPILER")

    def test_cpp_by_cmake(self):
        self.by_cmake("consumer_cpp", "CMAKE_CXX_COMPILER")

    def test_c_by_pkg_config(self):
        for name, packages in (("linked.c", ["veldnls"]), ("host.c", ["veldnls", "veldnls-host"])):
            self.by_pkg_config(HERE / "consumer_c" / name, packages, "CMAKE_C_COMPILER", "-std=c11")

    def test_cpp_by_pkg_config(self):
        for name, packages in (("linked.cpp", ["veldnls"]), ("host.cpp", ["veldnls", "veldnls-host"])):
            self.by_pkg_config(HERE / "consumer_cpp" / name, packages, "CMAKE_CXX_COMPILER", "-std=c++20")

    def test_versions(self):
        version = cached("CMAKE_PROJECT_VERSION")
        for name in ("veldnls", "veldnls-host"):
            self.assertEqual(run("pkg-config", "--modversion", name, env=self.pkg_config()).strip(), version)

    # The versions that consumers ask for are of this major version.
    def test_another_major_version_is_refused(self):
        script = self.work / "find.cmake"
        script.write_text('find_package(veldnls 2.0 QUIET CONFIG PATHS "${folder}" NO_DEFAULT_PATH)\n'
                          'message("${veldnls_CONSIDERED_VERSIONS} ${veldnls_FOUND}")\n')  # fmt: skip
        answer = run("cmake", f"-Dfolder={self.libraries}/cmake", "-P", script)
        self.assertEqual(answer, f"{cached('CMAKE_PROJECT_VERSION')} 0\n")

    def test_one_copyright_for_the_whole_tree(self):
        found = [path.relative_to(self.prefix) for path in self.prefix.rglob("copyright")]
        self.assertEqual(found, [pathlib.Path("share/doc/veldnls/copyright")])
        self.assertEqual((self.prefix / found[0]).read_text(), (SOURCE / "COPYRIGHT").read_text())

    def test_the_tool_finds_the_module_of_its_tree(self):
        answer = run(self.prefix / "bin/veld", "info")
        self.assertIn(str(self.libraries / "veldnls.so.1"), answer)

    def test_the_tool_without_a_module_tells_where_it_looked(self):
        alone = self.work / "alone"
        run("cmake", "--install", BUILD, "--prefix", alone, "--component", "tool")
        done = subprocess.run([alone / "bin/veld", "info"], capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 2)
        self.assertIn(f"neither in {alone}/bin nor in {alone / library_folder()}", done.stderr)


if __name__ == "__main__":
    unittest.main()
