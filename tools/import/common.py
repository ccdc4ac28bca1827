"""What the scripts of this folder share: how they end when an input can't be had."""
import pathlib
import subprocess
import sys


def stop(message):
    """Ends the script with a sentence on standard error and status 1."""
    sys.exit(f"tools/import/{pathlib.Path(sys.argv[0]).name}: {message}")


def run(main):
    """Calls `main`. A file that can't be opened and a program that can't be run or fails end the script by `stop`."""
    try:
        main()
    except subprocess.CalledProcessError as error:
        stop(f"{error.cmd[0]} ended with status {error.returncode}" + (f": {error.stderr}" if error.stderr else ""))
    except OSError as error:
        stop(f"{error.filename}: {error.strerror}" if error.filename else error)
