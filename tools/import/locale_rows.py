#!/usr/bin/env python3
"""Makes data/locale/rows.tsv from CLDR and from glibc's locale sources.

    npm pack cldr-core@27.0.3 cldr-dates-full@27.0.3 cldr-numbers-full@27.0.3 cldr-localenames-full@29.0.0
    apt-get download locales                               # Debian 12, glibc 2.36
    tools/import/locale_rows.py --sources DIR [--data data]

DIR holds the four .tgz files and the .deb file. The SHA-256 of each is printed, and then every name of names.tsv that
differs from CLDR's. What a rule of this script gets wrong for a row is put right in overrides.tsv, which the table
generator lays over these rows; this script doesn't read it.
"""

import argparse
import collections
import hashlib
import io
import json
import lzma
import pathlib
import re
import sys
import tarfile
import unicodedata

sys.dont_write_bytecode = True
from common import run, stop  # noqa: E402

PACKAGES = {
    "core": "cldr-core-27.0.3.tgz",
    "dates": "cldr-dates-full-27.0.3.tgz",
    "numbers": "cldr-numbers-full-27.0.3.tgz",
    "names": "cldr-localenames-full-29.0.0.tgz",
}
GLIBC_PACKAGE = "locales_2.36*.deb"

# Rows without a name in names.tsv: their countries have gone.
UNNAMED_ROWS = ["sh_CS", "sh_YU", "sr_CS"]

# CLDR's name where it is neither language-country nor, without such a folder, the language.
CLDR_NAMES = {
    "no_NO": "nb", "sh_BA": "sr-Latn-BA", "sh_CS": "sr-Latn", "sh_ME": "sr-Latn-ME", "sh_RS": "sr-Latn",
    "sh_YU": "sr-Latn", "sr_BA": "sr-Cyrl-BA", "sr_ME": "sr-Cyrl-ME", "zh_HK": "zh-Hant-HK", "zh_MO": "zh-Hant-MO",
    "zh_SG": "zh-Hans-SG", "zh_TW": "zh-Hant",
}
# glibc's name where it has no file of the row's name.
GLIBC_NAMES = {
    "en_BE": "en_GB", "en_CB": "en_US", "en_JM": "en_GB", "fa_IN": "fa_IR", "hr_BA": "bs_BA", "no_NO": "nb_NO",
    "pl_XX": "pl_PL", "sh_BA": "bs_BA", "sh_CS": "sr_RS@latin", "sh_ME": "sr_RS@latin", "sh_RS": "sr_RS@latin",
    "sh_YU": "sr_RS@latin", "sr_BA": "sr_RS", "sr_CS": "sr_RS", "sr_YU": "sr_RS", "zh_MO": "zh_HK",
}
# Currencies of countries that CLDR doesn't know, or has several of.
CURRENCIES = {"CB": "USD", "CS": "CSD", "PA": "PAB", "XX": "PLN", "YU": "YUM"}

DAYS = ("sun", "mon", "tue", "wed", "thu", "fri", "sat")
MONTHS = tuple(str(month) for month in range(1, 13))
QUARTERS = ("1", "2", "3", "4")


class Sources:
    """The packages, read without unpacking them."""

    def __init__(self, folder):
        self.packages = {key: tarfile.open(fileobj=self.read(folder / name)) for key, name in PACKAGES.items()}
        self.glibc = tarfile.open(fileobj=self.debian_data(folder))
        self.known = set(self.packages["numbers"].getnames())
        self.cache = {}

    def read(self, path):
        raw = path.read_bytes()
        print(f"{path.name}  sha256 {hashlib.sha256(raw).hexdigest()}")
        return io.BytesIO(raw)

    def debian_data(self, folder):
        """The member data.tar.xz of the package, which is an `ar` archive."""
        found = sorted(folder.glob(GLIBC_PACKAGE))
        if not found:
            stop(f"{folder} has no {GLIBC_PACKAGE}")
        archive = self.read(found[0])
        archive.seek(8)
        while header := archive.read(60):
            size = int(header[48:58])
            content = archive.read(size + size % 2)[:size]
            if header.startswith(b"data.tar.xz"):
                return io.BytesIO(lzma.decompress(content))
        stop(f"{found[0].name} has no data.tar.xz")

    def json(self, package, path):
        if (package, path) not in self.cache:
            self.cache[package, path] = json.load(self.packages[package].extractfile("package/" + path))
        return self.cache[package, path]

    def cldr_name(self, row):
        name = row.replace("_", "-")
        return CLDR_NAMES.get(row) or (name if f"package/main/{name}/numbers.json" in self.known else row[:2])

    def main(self, package, row, file):
        name = self.cldr_name(row)
        return self.json(package, f"main/{name}/{file}.json")["main"][name]

    def glibc_words(self, row, category):
        """Keywords of a category of glibc's source, copies followed."""
        locale = GLIBC_NAMES.get(row, row)
        while True:
            text = self.glibc.extractfile("./usr/share/i18n/locales/" + locale).read().decode()
            body = re.search(rf"^{category}\n(.*?)^END {category}", text, re.DOTALL | re.MULTILINE).group(1)
            copied = re.search(r'^copy\s+"([^"]+)"', body, re.MULTILINE)
            if not copied:
                break
            locale = copied.group(1)
        words = dict(re.findall(r'^(\w+)\s+"([^"]*)"', body, re.MULTILINE))
        return {name: re.sub(r"<U([0-9A-F]+)>", lambda code: chr(int(code.group(1), 16)), value).replace("//", "/")
                for name, value in words.items()}


# ---- texts ----

def clean(text):
    """Without direction marks, and with plain blanks only."""
    return re.sub("[\u00A0\u202F\u2009]", " ", re.sub("[\u200E\u200F\u061C]", "", text))


def without_point(name):
    """A name without the point of an abbreviation; a name with more points keeps them all."""
    return name[:-1] if name.endswith(".") and "." not in name[:-1] else name


TOKEN = re.compile(r"'((?:[^']|'')*)'|(([A-Za-z])\3*)|([^A-Za-z']+)")
DATE_LETTERS = {"y": "%Y", "yyyy": "%Y", "yy": "%y", "M": "%m", "MM": "%m", "L": "%m", "MMM": "%b", "LLL": "%b",
                "MMMM": "%B", "LLLL": "%B", "d": "%d", "dd": "%d"}
# By the first letter; the count makes no difference.
OTHER_LETTERS = {"E": "%A", "c": "%A", "h": "%I", "K": "%I", "H": "%H", "k": "%H", "m": "%M", "s": "%S", "a": "%p",
                 "B": "%p"}


def convert(pattern):
    """A date or time pattern of CLDR as a format. Eras and zones drop out, with the blank or bracket in front and the
    bracket behind. The half of the day is moved behind the hour, since a reader overwrites it with an hour to come."""
    text = ""
    dropped = False
    for quoted, run, letter, other in TOKEN.findall(pattern):
        if letter and letter in "GzZv":
            text = re.sub(r"[ (]$", "", text)
            dropped = True
            continue
        if letter:
            text += DATE_LETTERS.get(run) or OTHER_LETTERS[letter]
        else:
            literal = clean(quoted or other).replace("%", "%%")
            text += literal[1:] if dropped and literal.startswith(")") else literal
        dropped = False
    text = text.strip()
    if "%p" in text and text.index("%p") < text.index("%I"):
        text = text.replace("%p", "").strip() + " %p"
    return text


# ---- fields ----

def names(calendar, kind, width, keys):
    table = calendar[kind]["format"][width]
    return [clean(table[key]) for key in keys]


def with_full_month(available, full, short):
    """A format with the full name of the month; where CLDR has none, made of the short one."""
    return convert(available[full]) if full in available else convert(available[short]).replace("%b", "%B")


def date_fields(sources, row):
    calendar = sources.main("dates", row, "ca-gregorian")["dates"]["calendars"]["gregorian"]
    available = calendar["dateTimeFormats"]["availableFormats"]
    halves = calendar["dayPeriods"]["format"]["abbreviated"]
    return {
        "dayNames": "|".join(names(calendar, "days", "wide", DAYS)),
        "dayAbbreviations": "|".join(map(without_point, names(calendar, "days", "abbreviated", DAYS))),
        "monthNames": "|".join(names(calendar, "months", "wide", MONTHS)),
        "monthAbbreviations": "|".join(map(without_point, names(calendar, "months", "abbreviated", MONTHS))),
        "dateFormatShort": convert(calendar["dateFormats"]["short"]),
        "dateFormatMedium": convert(calendar["dateFormats"]["medium"]),
        "dateFormatLong": convert(calendar["dateFormats"]["long"]),
        "dateFormatFull": convert(calendar["dateFormats"]["full"]),
        "timeFormat24": convert(available["Hms"]),
        "timeFormat12": convert(available["hms"]),
        "clock": "12" if "a" in calendar["timeFormats"]["medium"] else "24",
        "amText": clean(halves["am"]).strip("[ ]"),
        "pmText": clean(halves["pm"]).strip("[ ]"),
        "monthYearFormat": with_full_month(available, "yMMMM", "yMMM"),
        "monthYearFormatShort": convert(available["yMMM"]),
        "monthDayFormat": with_full_month(available, "MMMMd", "MMMd"),
        "monthDayFormatShort": convert(available["MMMd"]),
        "quarterNames": "|".join(names(calendar, "quarters", "wide", QUARTERS)),
    }


def currency_of(sources, country):
    """The newest currency of a country that is legal tender today."""
    if country in CURRENCIES:
        return CURRENCIES[country]
    regions = sources.json("core", "supplemental/currencyData.json")["supplemental"]["currencyData"]["region"]
    valid = [(span["_from"], code) for entry in regions[country] for code, span in entry.items()
             if "_to" not in span and span.get("_tender") != "false"]
    return max(valid)[1]


def currency_symbol(sources, row, code):
    """CLDR's sign; where that is the code itself, glibc's sign or else CLDR's narrow one."""
    known = sources.main("numbers", row, "currencies")["numbers"]["currencies"].get(code, {})
    symbol = clean(known.get("symbol", code))
    if symbol != code:
        return symbol
    monetary = sources.glibc_words(row, "LC_MONETARY")
    if monetary.get("int_curr_symbol", "").strip() == code and clean(monetary["currency_symbol"]).strip() != code:
        return clean(monetary["currency_symbol"]).strip()
    return clean(known.get("symbol-alt-narrow", code))


def currency_digits(row, code):
    """Digits as callers know them, which are those of the currency only by and large."""
    if row[:2] == "ar":
        return 3
    return {"EUR": 4, "JPY": 0, "KRW": 0}.get(code, 2)


def currency_pattern(row, code, standard):
    pattern = clean(standard).strip()
    if row[:2] == "ar":
        return pattern.replace(".00", ".###")
    return pattern.replace(".00", "") if currency_digits(row, code) == 0 else pattern


def number_fields(sources, row):
    numbers = sources.main("numbers", row, "numbers")["numbers"]
    system = "numberSystem-" + ("arabext" if row[:2] == "fa" else "latn")
    symbols = numbers["symbols-" + system]
    group = {"\u202F": "\u00A0", "\u2019": "'"}
    code = currency_of(sources, row[3:])
    return {
        "decimalPoint": symbols["decimal"],
        "groupSeparator": group.get(symbols["group"], symbols["group"]),
        "numberPattern": clean(numbers["decimalFormats-" + system]["standard"]),
        "currencyPattern": currency_pattern(row, code, numbers["currencyFormats-" + system]["standard"]),
        "currencyCode": code,
        "currencySymbol": currency_symbol(sources, row, code),
        "currencyDigits": str(currency_digits(row, code)),
        "percentPattern": clean(numbers["percentFormats-" + system]["standard"]),
        "percentSign": clean(symbols["percentSign"]),
    }


def other_fields(sources, row):
    paper = sources.json("core", "supplemental/measurementData.json")["supplemental"]["measurementData"]["paperSize"]
    words = sources.glibc_words(row, "LC_NAME")
    family_first = words.get("name_fmt") == "%p%t%f%t%g"
    forms = [words.get(word) or default for word, default in
             (("name_mr", "Mr."), ("name_mrs", "Mrs."), ("name_ms", "Ms."))]
    return {
        "paperName": "LETTER" if paper.get(row[3:]) == "US-Letter" else "A4",
        "nameFormat": "%p%t%f%t%g" if family_first else "%p%t%g%t%m%t%f",
        "formsOfAddress": "|".join(forms),
    }


# ---- the table ----

def common_value(values):
    """The value of more than half of the rows; none of a single row."""
    value, count = collections.Counter(values).most_common(1)[0]
    return value if 2 * count > len(values) > 1 else None


def layers(table):
    """(row, field, value) with what most rows have under "*", and what most rows of a language have under it."""
    fields = list(next(iter(table.values())))
    languages = collections.defaultdict(list)
    for row in sorted(table):
        languages[row[:2]].append(row)
    everywhere = {field: common_value([row[field] for row in table.values()]) for field in fields}
    yield from (("*", field, value) for field, value in everywhere.items() if value is not None)
    for language, rows in languages.items():
        shared = {field: common_value([table[row][field] for row in rows]) for field in fields}
        shared = {field: value for field, value in shared.items() if value not in (None, everywhere[field])}
        yield from ((language, field, value) for field, value in shared.items())
        for row in rows:
            for field in fields:
                if table[row][field] != shared.get(field, everywhere[field]):
                    yield row, field, table[row][field]


def visible(value):
    """Blanks and marks that can't be seen as escapes, "<U00A0>"."""
    return "".join(f"<U{ord(c):04X}>" if c != " " and unicodedata.category(c) in ("Cc", "Cf", "Zs") else c for c in value)


def named_rows(data):
    with open(data / "locale/names.tsv", encoding="utf-8") as file:
        return [line.rstrip("\n").split("\t") for line in file if not line.startswith("#")]


def tell_names(sources, rows):
    languages = sources.json("names", "main/en/languages.json")["main"]["en"]["localeDisplayNames"]["languages"]
    territories = sources.json("names", "main/en/territories.json")["main"]["en"]["localeDisplayNames"]["territories"]
    plain = lambda text: re.sub(r"[^A-Za-z]", "", unicodedata.normalize("NFD", text))
    different = set()
    for posix_name, _, language, country, *_ in rows:
        other = plain(languages.get(posix_name[:2], "-")), plain(territories.get(posix_name[3:], "-"))
        different.update(own + " " + cldr for own, cldr in zip((language, country), other) if own != cldr)
    for line in sorted(different):
        print("name", line)


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--sources", type=pathlib.Path, required=True)
    parser.add_argument("--data", type=pathlib.Path, default=pathlib.Path(__file__).parents[2] / "data")
    arguments = parser.parse_args()

    sources = Sources(arguments.sources)
    named = named_rows(arguments.data)
    tell_names(sources, named)
    table = {}
    for row in sorted([fields[0] for fields in named] + UNNAMED_ROWS):
        table[row] = date_fields(sources, row) | number_fields(sources, row) | other_fields(sources, row)
    with open(arguments.data / "locale/rows.tsv", "w", encoding="utf-8", newline="\n") as out:
        out.write("# row\tfield\tvalue\n")
        out.write("# Taken from Unicode CLDR 27.0.3 (LICENSE-unicode.txt) and glibc 2.36, changed by "
                  "tools/import/locale_rows.py\n")
        for row, field, value in layers(table):
            out.write(f"{row}\t{field}\t{visible(value)}\n")


if __name__ == "__main__":
    run(main)
