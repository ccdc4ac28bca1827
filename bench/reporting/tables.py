"""Tables of ratios and speeds: lines for a terminal, and Markdown."""
from collections import defaultdict
from statistics import median

from .ratios import COPY

FORMS = ("looped", "random", "field-16", "field-64", "field-256")
FORM_TITLES = {
    "looped": "64 KB looped",
    "random": "random words",
    "field-16": "16 bytes",
    "field-64": "64 bytes",
    "field-256": "256 bytes",
}
# How ratios are gathered: title, and which of them.
SECTIONS = (
    ("Between pages and Unicode", lambda r: r.kind == "page"),
    ("Among Unicode forms", lambda r: r.kind == "unicode"),
    ("From page to page", lambda r: r.kind == "bytes" and r.peer != COPY),
    ("From page to page, beside memcpy", lambda r: r.kind == "bytes" and r.peer == COPY),
    ("Between multi-byte encodings and Unicode", lambda r: r.kind == "multi"),
    ("From multi-byte to multi-byte", lambda r: r.kind == "multi-multi"),
    ("Validation", lambda r: r.kind == "validate"),
)
JUDGED_CALLS = (
    ("Damaged text", lambda r: r.kind == "damage"),
    ("A text beside its halves", lambda r: r.kind == "doubling"),
    ("Numbers", lambda r: r.kind == "numbers"),
    ("A pool with 8,192 live blocks beside one with 256", lambda r: r.kind == "pool-growth"),
)
OTHERS = ("damage", "doubling", "names", "numbers", "pool", "pool-growth")


def number(value):
    if value < 0.1:
        return f"{value:.3f}"
    return f"{value:.2f}" if value < 10 else f"{value:.1f}"


def sections(ratios, chosen=SECTIONS):
    for title, belongs in chosen:
        found = [ratio for ratio in ratios if belongs(ratio)]
        if found:
            yield title, found


def by_line(ratios, key):
    lines = defaultdict(dict)
    for ratio in ratios:
        kept = lines[key(ratio)].get(ratio.form)
        if kept is None or ratio.ratio < kept.ratio:
            lines[key(ratio)][ratio.form] = ratio
    return lines


def print_ratios(ratios):
    for title, found in sections(ratios):
        print(f"\n{title} (* below its floor)")
        print(f"{'':28}{'':7}" + "".join(f"{FORM_TITLES[form]:>15}" for form in FORMS))
        for (op, text), line in by_line(found, lambda r: (r.op, r.text)).items():
            cells = (f"{number(line[f].ratio)}{'*' if line[f].below else ' '}" if f in line else "" for f in FORMS)
            print(f"{op:28}{text:7}" + "".join(f"{cell:>15}" for cell in cells))
    others = [ratio for ratio in ratios if ratio.kind in OTHERS]
    if others:
        print("\nOther calls")
    for ratio in others:
        mark = "*" if ratio.below else ""
        print(f"{ratio.op}, {ratio.text}, {ratio.form}, beside {ratio.peer}: {number(ratio.ratio)}{mark}")


def print_below(ratios):
    judged = [ratio for ratio in ratios if ratio.floor is not None]
    below = sorted((ratio for ratio in judged if ratio.below), key=lambda r: r.ratio / r.floor)
    print(f"\n{len(below)} of {len(judged)} ratios are below their floors")
    for r in below:
        print(f"{r.ratio:7.3f}  floor {r.floor:.2f}  {r.op:26} {r.text:14} {r.form:10} {r.peer}")


def markdown_table(titles, rows):
    lines = ["| " + " | ".join(titles) + " |", "|" + "---|" * len(titles)]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows])


def cell(ratio):
    if ratio is None:
        return ""
    return f"**{number(ratio.ratio)}**" if ratio.below else number(ratio.ratio)


def markdown_summary(ratios):
    rows = []
    for title, found in sections(ratios, SECTIONS + JUDGED_CALLS):
        judged = [ratio for ratio in found if ratio.floor is not None]
        values = [ratio.ratio for ratio in judged]
        if not judged:
            continue
        below = sum(ratio.below for ratio in judged)
        floors = " or ".join(number(floor) for floor in sorted({ratio.floor for ratio in judged}))
        rows.append([title, floors, str(len(judged)), str(below), number(min(values)), number(median(values)),
                     number(max(values))])
    return markdown_table(["group", "floor", "ratios", "below", "lowest", "median", "highest"], rows)


def markdown_ratios(ratios):
    parts = []
    for title, found in sections(ratios):
        lines = by_line(found, lambda r: r.op).items()
        rows = [[op] + [cell(line.get(form)) for form in FORMS] for op, line in lines]
        parts.append(f"### {title}\n\n" + markdown_table(["conversion"] + [FORM_TITLES[f] for f in FORMS], rows))
    rows = [[f"{r.op}, {r.text}", r.form, r.peer, cell(r), number(r.floor) if r.floor else ""]
            for r in ratios if r.kind in OTHERS]
    parts.append("### Other calls\n\n" + markdown_table(["call", "form", "beside", "ratio", "floor"], rows))
    return "\n\n".join(parts)


def markdown_speeds(speeds, ops):
    """Absolute figures of some conversions: GB/s of input for long texts, nanoseconds for fields."""
    lines = defaultdict(dict)
    for speed in speeds:
        if speed.op in ops or speed.kind in ops:
            lines[(speed.op, speed.text)][speed.form] = speed
    rows = []
    for (op, text), line in lines.items():
        cells = []
        for form in FORMS:
            speed = line.get(form)
            if speed is None:
                cells.append("")
            else:
                cells.append(f"{speed.gigabytes:.2f} GB/s" if form in ("looped", "random") else f"{speed.call:.0f} ns")
        rows.append([op, text] + cells)
    return markdown_table(["conversion", "text"] + [FORM_TITLES[form] for form in FORMS], rows)


def markdown_calls(speeds):
    rows = [[f"{s.op}, {s.text}", s.form, f"{s.call:.0f} ns"] for s in speeds if s.kind in OTHERS + ("construction",)]
    return markdown_table(["call", "form", "time"], rows)
