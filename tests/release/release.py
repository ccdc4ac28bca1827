"""What the tests of the release form share: the build under test, commands, and the help of the tool."""
import os
import pathlib
import re
import subprocess

SOURCE = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ["VELDNLS_BUILD"])
VELD = BUILD / "veld"


def run(*command, **options):
    """Standard output and standard error of a command, which must succeed."""
    done = subprocess.run(
        [str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, **options
    )
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))} ended with {done.returncode}:\n{done.stdout}")
    return done.stdout


def cached(name):
    """A variable of the build's CMake cache."""
    return re.search(rf"^{name}(?::\w+)?=(.*)$", (BUILD / "CMakeCache.txt").read_text(), re.MULTILINE).group(1)


def library_folder():
    """The folder of libraries, below the prefix."""
    return cached("CMAKE_INSTALL_LIBDIR")


def help_of(*command):
    """The names of options and of commands that the tool's help shows, for the tool or for one of its commands."""
    text = run(VELD, *command, "--help")
    options = [name for names in re.findall(r"^  (-[-\w,]+)", text, re.MULTILINE) for name in names.split(",")]
    commands = re.findall(r"^  (\w+)", text.partition("\nSubcommands:\n")[2], re.MULTILINE)
    return options, commands
