"""The picture: every ratio a dot on a logarithmic scale, a line for each kind of conversion and each call of numbers."""
import math
from xml.sax.saxutils import escape

from .ratios import COPY
from .tables import FORM_TITLES, FORMS

WIDTH = 960
LEFT = 250
RIGHT = 24
TOP = 78
LINE = 26
BOTTOM = 44
SMALLEST, LARGEST = 0.03, 100.0
TICKS = (0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 50)
COLOURS = {
    "looped": "#8c8c8c",
    "random": "#1f5fa8",
    "field-16": "#c8102e",
    "field-64": "#e08a1e",
    "field-256": "#3a8f4d",
}
NUMBER_COLOUR = "#222222"
UNICODE = ("utf-8", "utf-16le", "utf-16be", "utf-32le", "utf-32be")


def line_of(ratio):
    """The line of the picture that a ratio stands in; None for other calls."""
    if ratio.kind == "page":
        source, target = ratio.op.split(" to ")
        return f"page to {target}" if target in UNICODE else f"{source} to page"
    if ratio.kind == "unicode":
        return ratio.op
    if ratio.kind == "bytes":
        return "page to page, beside memcpy" if ratio.peer == COPY else "page to page"
    if ratio.kind == "multi":
        source, target = ratio.op.split(" to ")
        return f"multi-byte to {target}" if target in UNICODE else f"{source} to multi-byte"
    if ratio.kind == "multi-multi":
        return "multi-byte to multi-byte"
    if ratio.kind == "numbers":
        return ratio.op
    return None


def place(value):
    span = math.log(LARGEST / SMALLEST)
    share = math.log(min(max(value, SMALLEST), LARGEST) / SMALLEST) / span
    return LEFT + share * (WIDTH - LEFT - RIGHT)


def draw(ratios, caption):
    lines = {}
    for ratio in ratios:
        name = line_of(ratio)
        if name is not None:
            lines.setdefault(name, []).append(ratio)
    height = TOP + LINE * len(lines) + BOTTOM
    floor_end = TOP + LINE * len(lines)
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" font-family="sans-serif" '
        'font-size="12" fill="#222">',
        f'<rect width="{WIDTH}" height="{height}" fill="#ffffff"/>',
        f'<text x="16" y="24" font-size="16">{escape("Speed beside the best peer")}</text>',
        f'<text x="16" y="42" fill="#555">{escape(caption)}</text>',
    ]
    for index, form in enumerate(FORMS):
        x = 16 + index * 130
        parts.append(f'<circle cx="{x + 4}" cy="58" r="4" fill="{COLOURS[form]}"/>')
        parts.append(f'<text x="{x + 14}" y="62">{FORM_TITLES[form]}</text>')
    for tick in TICKS:
        x = place(tick)
        stroke = 'stroke="#222" stroke-width="1.5"' if tick == 1 else 'stroke="#dddddd"'
        parts.append(f'<line x1="{x:.1f}" y1="{TOP - 4}" x2="{x:.1f}" y2="{floor_end}" {stroke}/>')
        parts.append(f'<text x="{x:.1f}" y="{floor_end + 18}" text-anchor="middle">{tick:g}</text>')
    parts.append(f'<text x="{WIDTH - RIGHT}" y="{floor_end + 36}" text-anchor="end" fill="#555">'
                 'times the throughput of the best peer; right of 1 the library is faster</text>')
    for index, (name, found) in enumerate(lines.items()):
        y = TOP + LINE * index + LINE / 2
        parts.append(f'<text x="{LEFT - 12}" y="{y + 4:.1f}" text-anchor="end">{escape(name)}</text>')
        for ratio in found:
            offset = (FORMS.index(ratio.form) - 2) * 4 if ratio.form in FORMS else 0
            parts.append(f'<circle cx="{place(ratio.ratio):.1f}" cy="{y + offset:.1f}" r="2.6" '
                         f'fill="{COLOURS.get(ratio.form, NUMBER_COLOUR)}" fill-opacity="0.7"/>')
    parts.append("</svg>")
    return "\n".join(parts) + "\n"
