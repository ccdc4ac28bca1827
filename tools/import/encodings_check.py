#!/usr/bin/env python3
"""Compares the names in data/encodings/rows.tsv with ICU and Java and lists every difference.

usage: encodings_check.py [--uconv PROGRAM] [--java PROGRAM] [--data DIR]

  --uconv  ICU's converter tool (Debian: icu-devtools); IANA names, CCSIDs, Windows code pages
  --java   a JDK (Debian: openjdk-17-jdk-headless); canonical and historical charset names
  --data   the data folder of this tree

The rows were put together by hand from published identifiers, so that a difference is something to look at and not an
error: README.md in data/encodings tells which ones are known. Exit 0 in any case but for a source that can't be read.
"""
import argparse
import hashlib
import os
import re
import subprocess
import sys
import tempfile

JAVA_LISTING = """
import java.io.*;
import java.nio.charset.Charset;

public class Charsets {
  public static void main(String[] arguments) {
    for (Charset charset : Charset.availableCharsets().values()) {
      String historical = new InputStreamReader(InputStream.nullInputStream(), charset).getEncoding();
      System.out.println(charset.name() + "\\t" + historical + "\\t" + String.join("\\t", charset.aliases()));
    }
  }
}
"""


def run(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout
    except (OSError, subprocess.CalledProcessError) as error:
        sys.exit(f"{command[0]} can't be run ({error}); install it or give its path")


def tell_source(name, text):
    print(f"source {name} sha256 {hashlib.sha256(text.encode()).hexdigest()}")


def read_rows(path):
    with open(path, encoding="utf-8") as file:
        lines = [line.rstrip("\n").split("\t") for line in file]
    header = [lines[0][0].removeprefix("# "), *lines[0][1:]]
    return [dict(zip(header, line)) for line in lines[1:]]


class Icu:
    """Names of all converters: upper-case name to converter, and those that are IANA's or Windows'."""

    def __init__(self, program):
        listing = run(program, "-l", "--canon")
        tell_source(f"converters of {run(program, '-V').strip()}", listing)
        self.converter, self.iana, self.windows = {}, set(), set()
        for block in re.split(r"\n(?=\S)", listing):
            names = re.findall(r"^\s*(\S+)(?: \{ (.*?) \})?$", block, re.M)
            for name, standards in names:
                self.converter.setdefault(name.upper(), names[0][0])
                if "IANA" in standards:
                    self.iana.add(name.upper())
                if "WINDOWS" in standards:
                    self.windows.add(name.upper())


class Java:
    """Canonical name by any name of a charset in upper case, and its historical name by canonical name."""

    def __init__(self, program):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "Charsets.java")
            with open(path, "w", encoding="ascii") as file:
                file.write(JAVA_LISTING)
            listing = run(program, path)
        tell_source(f"charsets of {run(program, '--version').splitlines()[0]}", listing)
        self.canonical, self.historical = {}, {}
        for line in listing.splitlines():
            name, historical, *aliases = line.split("\t")
            self.historical[name] = historical
            for alias in [*aliases, historical, name]:
                self.canonical[alias.upper()] = name


def check_java(row, java):
    preferred, name = row["preferredName"], row["javaName"]
    charset = java.canonical.get(preferred.upper())
    if preferred and charset is None:
        yield f"preferredName {preferred}: unknown to Java"
    elif preferred and charset != preferred:
        yield f"preferredName {preferred}: Java's canonical name is {charset}"
    if name and name.upper() not in java.canonical:
        yield f"javaName {name}: unknown to Java"
    elif name and charset and java.canonical[name.upper()] != charset:
        yield f"javaName {name}: Java's {java.canonical[name.upper()]}, not {charset}"
    elif name and charset and java.historical[charset] not in (name, charset):
        yield f"javaName {name}: Java's historical name is {java.historical[charset]}"


def check_icu(row, icu):
    iana, ccsid, page = row["ianaName"], row["ccsid"], row["codePage"]
    if iana and iana.upper() not in icu.iana:
        yield f"ianaName {iana}: no IANA name of ICU"
    if ccsid and f"IBM-{int(ccsid)}" not in icu.converter and f"IBM-{ccsid}" not in icu.converter:
        yield f"ccsid {ccsid}: ICU has no ibm-{ccsid}"
    if page and not {f"WINDOWS-{page}", f"CP{page}", f"IBM-{page}"} & icu.converter.keys():
        yield f"codePage {page}: ICU has neither windows-{page} nor cp{page}"


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    parser = argparse.ArgumentParser(description="Compares names of encodings with ICU and Java.")
    parser.add_argument("--uconv", default="uconv")
    parser.add_argument("--java", default="java")
    parser.add_argument("--data", default=os.path.join(here, "../../data"))
    arguments = parser.parse_args()
    icu, java = Icu(arguments.uconv), Java(arguments.java)
    rows = read_rows(os.path.join(arguments.data, "encodings/rows.tsv"))
    differences = 0
    for row in rows:
        for text in [*check_java(row, java), *check_icu(row, icu)]:
            differences += 1
            print(f"{row['cei']} {row['name']}: {text}")
    print(f"{len(rows)} rows, {differences} differences")


if __name__ == "__main__":
    main()
