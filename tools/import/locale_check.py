#!/usr/bin/env python3
"""Compares data/locale/ with public sources and lists every difference.

usage: locale_check.py [--icu DIR] [--iso-codes DIR] [--data DIR]

  --icu        folder of ICU's shared libraries (Debian: libicu72); names and LCIDs of locales, alphabets, code pages
  --iso-codes  folder of iso_639-3.json (Debian: iso-codes); language codes
  --data       the data folder of this tree

The rows were put together by hand, so that a difference is something to look at and not an error: README.md in
data/locale tells which ones are known. Exit 0 in any case but for a source that can't be read.
"""
import argparse
import ctypes
import glob
import hashlib
import json
import locale as python_locale
import os
import re
import sys


def rows(path):
    with open(path, encoding="utf-8") as file:
        return [line.rstrip("\n").split("\t") for line in file if line.strip() and not line.startswith("#")]


def tell_source(path):
    with open(path, "rb") as file:
        print(f"source {os.path.basename(path)} sha256 {hashlib.sha256(file.read()).hexdigest()}")


class Icu:
    """The few calls of ICU that are needed, through its C interface."""

    def __init__(self, folder):
        found = sorted(glob.glob(os.path.join(folder, "libicui18n.so.[0-9][0-9]")))
        if not found:
            sys.exit(f"no libicui18n.so.NN in {folder}; install libicu72 or give --icu")
        self.version = found[-1].rsplit(".", 1)[1]
        for name in ("libicudata", "libicuuc", "libicui18n"):
            tell_source(os.path.realpath(os.path.join(folder, f"{name}.so.{self.version}")))
        self.uc = ctypes.CDLL(os.path.join(folder, f"libicuuc.so.{self.version}"))
        self.i18n = ctypes.CDLL(found[-1])
        for library, name, result in (
            (self.uc, "uloc_getLCID", ctypes.c_uint32),
            (self.uc, "uset_openEmpty", ctypes.c_void_p),
            (self.uc, "ucnv_open", ctypes.c_void_p),
            (self.i18n, "ulocdata_open", ctypes.c_void_p),
            (self.i18n, "ulocdata_getExemplarSet", ctypes.c_void_p),
        ):
            self.call(library, name).restype = result

    def call(self, library, name):
        return getattr(library, f"{name}_{self.version}")

    def lcid(self, locale):
        return self.call(self.uc, "uloc_getLCID")(locale.encode())

    def display(self, function, locale):
        buffer = (ctypes.c_uint16 * 100)()
        error = ctypes.c_int(0)
        length = self.call(self.uc, function)(locale.encode(), b"en", buffer, 100, ctypes.byref(error))
        return "".join(map(chr, buffer[:length]))

    def alphabet(self, locale):
        """Main exemplar characters, both cases, as a set of characters."""
        error = ctypes.c_int(0)
        data = self.call(self.i18n, "ulocdata_open")(locale.encode(), ctypes.byref(error))
        found = self.call(self.i18n, "ulocdata_getExemplarSet")(
            ctypes.c_void_p(data), None, 4, 0, ctypes.byref(error))
        return self.members(found)

    def repertoire(self, converter):
        """Characters of a converter, or None where ICU doesn't have it."""
        error = ctypes.c_int(0)
        handle = self.call(self.uc, "ucnv_open")(converter.encode(), ctypes.byref(error))
        if error.value > 0 or not handle:
            return None
        chars = self.call(self.uc, "uset_openEmpty")()
        self.call(self.uc, "ucnv_getUnicodeSet")(ctypes.c_void_p(handle), ctypes.c_void_p(chars), 0, ctypes.byref(error))
        self.call(self.uc, "ucnv_close")(ctypes.c_void_p(handle))
        return self.members(chars)

    def members(self, uset):
        characters = set()
        count = self.call(self.uc, "uset_getItemCount")(ctypes.c_void_p(uset))
        for item in range(count):
            start, end = ctypes.c_int32(), ctypes.c_int32()
            text = (ctypes.c_uint16 * 50)()
            error = ctypes.c_int(0)
            length = self.call(self.uc, "uset_getItem")(
                ctypes.c_void_p(uset), item, ctypes.byref(start), ctypes.byref(end), text, 50, ctypes.byref(error))
            if length == 0:
                characters.update(map(chr, range(start.value, end.value + 1)))
            else:
                characters.update(map(chr, text[:length]))
        return characters


def check_lcids(names, icu):
    print("\n-- Windows identifiers that another table gives differently")
    python = {}
    for lcid, name in python_locale.windows_locale.items():
        python.setdefault(name, set()).add(lcid)
    for row in names:
        name, own = row[0], int(row[5], 16)
        others = {"python": python.get(name, set()), "icu": {icu.lcid(name)} - {0}}
        for source, values in others.items():
            if values and own not in values:
                print(f"{name} {own:#06x} {source} " + " ".join(f"{value:#06x}" for value in sorted(values)))


def check_names(names, icu):
    print("\n-- English names that differ from CLDR's without blanks and signs")
    plain = lambda text: re.sub(r"[^A-Za-z]", "", text)
    for row in names:
        language = plain(icu.display("uloc_getDisplayLanguage", row[0]))
        country = plain(icu.display("uloc_getDisplayCountry", row[0]))
        if (row[2], row[3]) != (language, country):
            print(f"{row[0]} {row[2]}_{row[3]} cldr {language}_{country}")


def check_codes(codes, folder):
    path = os.path.join(folder, "iso_639-3.json")
    tell_source(path)
    with open(path, encoding="utf-8") as file:
        known = {entry["alpha_2"] for entry in json.load(file)["639-3"] if "alpha_2" in entry}
    own = {row[0] for row in codes}
    print("\n-- language codes")
    print("not in ISO 639-1 today: " + " ".join(sorted(own - known)))
    print("missing here: " + " ".join(sorted(known - own)))


def converter_names(encoding):
    """Names under which ICU may have an encoding of data/encodings/rows.tsv, the surest first."""
    name, iana, ccsid, code_page = encoding[7], encoding[11], encoding[13], encoding[14]
    if name.lower().startswith("open_ed-"):
        yield f"ibm-{name[8:].lstrip('0')}"
    for candidate in (iana, f"ibm-{ccsid}" if ccsid else "", f"windows-{code_page}" if code_page else ""):
        if candidate:
            yield candidate


def check_coverage(data, icu):
    """A page stands on a first list where it covers the alphabet and the family serves the language."""
    path = os.path.join(data, "encodings", "rows.tsv")
    repertoires = {}
    for encoding in rows(path):
        if encoding[0].isdigit() and encoding[1] == "0":
            for name in converter_names(encoding):
                characters = icu.repertoire(name)
                if characters:
                    repertoires[int(encoding[0])] = characters
                    break
    print(f"\n-- coverage of alphabets by {len(repertoires)} single-byte pages")
    for row in rows(os.path.join(data, "locale", "encodings.tsv")):
        alphabet = {c for c in icu.alphabet(row[0]) if c.isalpha()}
        first = [int(cei) for cei in row[1].split()]
        second = [int(cei) for cei in row[2].split()]
        lacking = [(c, "".join(sorted(alphabet - repertoires[c]))) for c in first
                   if c in repertoires and not alphabet <= repertoires[c]]
        whole = [c for c in second if c in repertoires and alphabet <= repertoires[c]]
        for cei, missing in lacking:
            print(f"{row[0]} first list {cei} lacks {missing}")
        for cei in whole:
            print(f"{row[0]} second list {cei} lacks nothing")


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--icu", default="/usr/lib/x86_64-linux-gnu")
    parser.add_argument("--iso-codes", default="/usr/share/iso-codes/json")
    parser.add_argument("--data", default=os.path.join(os.path.dirname(__file__), "..", "..", "data"))
    arguments = parser.parse_args()
    icu = Icu(arguments.icu)
    names = rows(os.path.join(arguments.data, "locale", "names.tsv"))
    check_lcids(names, icu)
    check_names(names, icu)
    check_codes(rows(os.path.join(arguments.data, "locale", "language_codes.tsv")), arguments.iso_codes)
    check_coverage(arguments.data, icu)


if __name__ == "__main__":
    main()
