#!/usr/bin/env python3
"""Makes data/unicode from files of the Unicode Character Database.

    tools/import/unicode.py --ucd DIR [--out data/unicode]

DIR holds UnicodeData-1.1.5.txt, UnicodeData-3.1.0.txt, UnicodeData-5.0.0.txt, DerivedCoreProperties-3.1.0.txt and
PropList-3.1.0.txt. The public name and the SHA-256 of each are printed.
"""

import argparse
import hashlib
import itertools
import pathlib
import sys

sys.dont_write_bytecode = True
from common import run  # noqa: E402

PUBLIC = "https://www.unicode.org/Public/"
PUBLIC_NAMES = {
    "UnicodeData-1.1.5.txt": PUBLIC + "1.1-Update/UnicodeData-1.1.5.txt",
    "UnicodeData-3.1.0.txt": PUBLIC + "3.1-Update/UnicodeData-3.1.0.txt",
    "DerivedCoreProperties-3.1.0.txt": PUBLIC + "3.1-Update/DerivedCoreProperties-3.1.0.txt",
    "PropList-3.1.0.txt": PUBLIC + "3.1-Update/PropList-3.1.0.txt",
    "UnicodeData-5.0.0.txt": PUBLIC + "5.0.0/ucd/UnicodeData.txt",
}

# Categories that take no room on a page, and surrogates and private use, which have no look of their own.
NOT_PRINTABLE = {"Cc", "Cf", "Cs", "Co", "Zl", "Zp"}
# Digits by category but for these two, which the digit class has had from its first version.
SUPERSCRIPT_DIGITS = (0xB2, 0xB3)
LAST_OF_BMP = 0xFFFF


class Ucd:
    def __init__(self, folder):
        self.folder = folder

    def lines(self, name):
        """Fields of the lines of a file, comments cut off."""
        raw = (self.folder / name).read_bytes()
        print(f"{PUBLIC_NAMES[name]}  sha256 {hashlib.sha256(raw).hexdigest()}")
        for line in raw.decode("latin-1").split("\n"):
            text = line.split("#", 1)[0].strip()
            if text:
                yield [field.strip() for field in text.split(";")]

    def property_ranges(self, name):
        """(property, first, last) for each line of a property file, in its order."""
        for codes, value in (fields[:2] for fields in self.lines(name)):
            first, _, last = codes.partition("..")
            yield value, int(first, 16), int(last or first, 16)


def is_range_line(fields):
    return fields[1].endswith((", First>", ", Last>"))


def runs(codes):
    """Maximal runs of consecutive numbers in a sorted list."""
    for _, group in itertools.groupby(enumerate(codes), lambda pair: pair[1] - pair[0]):
        members = [code for _, code in group]
        yield members[0], members[-1]


def span(first, last):
    return f"{first:04X}" if first == last else f"{first:04X}..{last:04X}"


def decomposition(text):
    """Base and mark of a canonical decomposition; a leading tag makes it a compatibility one, which isn't kept."""
    if not text or text.startswith("<"):
        return "-", "-"
    parts = text.split()
    assert len(parts) <= 2
    return parts[0], parts[1] if len(parts) == 2 else "-"


def character_records(ucd):
    """A line for each character, or for a run of characters that differ in nothing and map to nothing."""
    rows = []
    for fields in ucd.lines("UnicodeData-5.0.0.txt"):
        if is_range_line(fields):
            continue
        base, mark = decomposition(fields[5])
        values = (fields[2], fields[4], fields[3], fields[12] or "-", fields[13] or "-", base, mark)
        code = int(fields[0], 16)
        plain = values[3:] == ("-",) * 4
        if rows and plain and rows[-1][1] == code - 1 and rows[-1][2] == values:
            rows[-1][1] = code
        else:
            rows.append([code, code, values])
    for first, last, values in rows:
        yield span(first, last), *values


def case_pairs(ucd):
    """(upper, direction, lower): "<>" maps both ways, ">" only to lower, "<" only to upper."""
    to_lower, to_upper = {}, {}
    for fields in ucd.lines("UnicodeData-1.1.5.txt"):
        code = int(fields[0], 16)
        if fields[13]:
            to_lower[code] = int(fields[13], 16)
        if fields[12]:
            to_upper[code] = int(fields[12], 16)
    pairs = set(to_lower.items()) | {(upper, lower) for lower, upper in to_upper.items()}
    for upper, lower in sorted(pairs):
        down, up = to_lower.get(upper) == lower, to_upper.get(lower) == upper
        yield f"{upper:04X}", "<>" if down and up else ">" if down else "<", f"{lower:04X}"


def class_ranges(ucd):
    """(class, range) with the rows of each class in ascending order."""
    digits, printable = list(SUPERSCRIPT_DIGITS), []
    pending = None
    for fields in ucd.lines("UnicodeData-3.1.0.txt"):
        code, category = int(fields[0], 16), fields[2]
        if fields[1].endswith(", First>"):
            pending = code
            continue
        codes = range(code if pending is None else pending, code + 1)
        pending = None
        if category == "Nd":
            digits.extend(codes)
        if category not in NOT_PRINTABLE and code <= LAST_OF_BMP:
            printable.extend(codes)
    derived = list(ucd.property_ranges("DerivedCoreProperties-3.1.0.txt"))
    classes = {
        "digit": list(runs(sorted(digits))),
        "lower": [row[1:] for row in derived if row[0] == "Lowercase"],
        "upper": [row[1:] for row in derived if row[0] == "Uppercase"],
        "alpha": [row[1:] for row in derived if row[0] == "Alphabetic"],
        "space": [row[1:] for row in ucd.property_ranges("PropList-3.1.0.txt") if row[0] == "White_space"],
        "printable": list(runs(printable)),
    }
    for name, rows in classes.items():
        for first, last in rows:
            yield name, span(first, last)


HEADERS = {
    "character_records.tsv": "code\tcategory\tbidi\tcombining\tupper\tlower\tbase\tmark",
    "case_pairs.tsv": "upper\tdirection\tlower",
    "class_ranges.tsv": "class\trange",
}


def write(folder, name, rows):
    text = f"# {HEADERS[name]}\n" + "".join("\t".join(row) + "\n" for row in rows)
    (folder / name).write_text(text, encoding="ascii", newline="\n")
    print(f"{name}: {text.count(chr(10)) - 1} lines, {len(text)} bytes")


def main():
    here = pathlib.Path(__file__).resolve()
    parser = argparse.ArgumentParser(description="Makes data/unicode from the Unicode Character Database.")
    parser.add_argument("--ucd", type=pathlib.Path, required=True, help="folder of the input files")
    parser.add_argument("--out", type=pathlib.Path, default=here.parents[2] / "data" / "unicode")
    arguments = parser.parse_args()
    ucd = Ucd(arguments.ucd)
    write(arguments.out, "character_records.tsv", character_records(ucd))
    write(arguments.out, "case_pairs.tsv", case_pairs(ucd))
    write(arguments.out, "class_ranges.tsv", class_ranges(ucd))


if __name__ == "__main__":
    run(main)
