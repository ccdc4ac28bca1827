"""The parts of docs/performance.md that come from a run. They stand between marker lines; the rest is written by hand."""
import re

from . import tables


def machine(cpu, context):
    flags = [flag for flag in ("avx2", "bmi2", "avx512bw", "avx512vbmi", "avx512_vbmi2") if flag in cpu["flags"]]
    return (f"{cpu['count']} processors, {cpu['model']} ({', '.join(flags) or 'no vector extensions of note'}); "
            f"{context['compiler']}, glibc {context['glibc']}, ICU {context['icu']}; "
            f"{context['samples']} samples of {context['sampleSeconds'] * 1000:g} ms.")


def parts(cpu, context, ratios, speeds):
    unicode_ops = ("utf-8 to utf-16le", "utf-16le to utf-8", "utf-8 to utf-32le", "utf-32le to utf-8")
    return {
        "machine": machine(cpu, context),
        "summary": tables.markdown_summary(ratios),
        "ratios": tables.markdown_ratios(ratios),
        "speeds": tables.markdown_speeds(speeds, unicode_ops),
        "utf-e": tables.markdown_speeds(speeds, ("utf-e",)),
        "multi": tables.markdown_speeds(speeds, ("multi", "multi-multi")),
        "validate": tables.markdown_speeds(speeds, ("validate",)),
        "calls": tables.markdown_calls(speeds),
    }


def fill(page, contents):
    for name, content in contents.items():
        pattern = rf"(<!-- {name}: begin -->\n).*?(<!-- {name}: end -->)"
        page, count = re.subn(pattern, lambda m: f"{m[1]}{content}\n{m[2]}", page, flags=re.DOTALL)
        if count != 1:
            raise ValueError(f"the page has {count} places for {name}")
    return page
