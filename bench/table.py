#!/usr/bin/env python3
"""Turns one run of the benchmarks into the tables of bench/README.md.

Usage: table.py CORE_JSON GUI_TXT [REPLACE_JSON]
Every figure is shown beside the baseline measured in the same run: one memchr pass over the same
bytes (for the editor figures, over the text that the figure works on)."""
import json
import sys

UNIT_US = {"ns": 1e-3, "us": 1.0, "ms": 1e3, "s": 1e6}


def load_core(path):
    with open(path) as f:
        data = json.load(f)
    out = {}
    for b in data["benchmarks"]:
        if b.get("error_occurred"):
            out[b["name"]] = {"error": b.get("error_message", "error")}
            continue
        # CPU time: on a shared machine the wall clock also counts the time other programs ran.
        # Manual timings (sed, a child process) only have the wall clock.
        key = "real_time" if b["name"].endswith("manual_time") else "cpu_time"
        us = b[key] * UNIT_US[b["time_unit"]]
        out[b["name"]] = {"us": us, "baseline_us": b.get("baseline_us"), "bytes": b.get("text_bytes"), "raw": b}
    return out, data.get("context", {})


def load_gui(path):
    out = {}
    with open(path) as f:
        for line in f:
            parts = [p.strip() for p in line.split("|")]
            if len(parts) != 5:
                continue
            name, value, unit, base, base_unit = parts
            out[name] = (float(value), unit, None if base == "-" else float(base), base_unit)
    return out


def fmt_us(us):
    if us is None:
        return "-"
    if us >= 1e6:
        return "%.2f s" % (us / 1e6)
    if us >= 1e3:
        return "%.1f ms" % (us / 1e3)
    if us >= 1:
        return "%.1f us" % us
    return "%.0f ns" % (us * 1e3)


def size_name(b):
    if b is None:
        return ""
    b = float(b)
    return "%.1f MB" % (b / 2**20) if b >= 2**20 else "%.0f KB" % (b / 1024)


def main():
    core, ctx = load_core(sys.argv[1])
    gui = load_gui(sys.argv[2]) if len(sys.argv) > 2 else {}
    rows = []
    print("Run on %s CPUs at %s MHz, load average %s, %s." % (
        ctx.get("num_cpus", "?"), ctx.get("mhz_per_cpu", "?"),
        ", ".join("%.1f" % x for x in ctx.get("load_avg", [])) or "?", ctx.get("date", "")))
    print()
    print("| Figure | Text | Time | memchr baseline | Ratio |")
    print("|---|---|---:|---:|---:|")
    for name, b in core.items():
        if "error" in b:
            print("| %s | | error: %s | | |" % (name, b["error"]))
            continue
        base = b["baseline_us"]
        ratio = "%.1fx" % (b["us"] / base) if base else "-"
        print("| %s | %s | %s | %s | %s |" % (name, size_name(b["bytes"]), fmt_us(b["us"]), fmt_us(base), ratio))
    for name, (value, unit, base, base_unit) in gui.items():
        if unit == "us":
            t, bl = fmt_us(value), fmt_us(base)
        else:
            t, bl = "%.1f %s" % (value, unit), ("%.1f %s" % (base, base_unit) if base is not None else "-")
        ratio = "%.1fx" % (value / base) if base and unit == base_unit and unit != "MB" else "-"
        print("| %s (editor) | | %s | %s | %s |" % (name, t, bl, ratio))
    print()

    def us(name):
        b = core.get(name)
        return b["us"] if b and "us" in b else None

    def gui_value(name):
        return gui[name][0] if name in gui else None

    targets = []

    def target(what, measured, ok):
        targets.append((what, measured, "met" if ok else "NOT met"))

    for where in ("symbols range", "code"):
        small = gui_value("keystroke in the %s, 1 KB" % where)
        big = gui_value("keystroke in the %s, 10 MB" % where)
        if small and big:
            target("keystroke in the %s, 10 MB within 2x of 1 KB" % where,
                   "%s vs %s (%.2fx)" % (fmt_us(big), fmt_us(small), big / small), big <= 2 * small)
    for name, label in (("BM_Explorer", "explorer build"), ("BM_SyntaxCheck", "syntax check")):
        one = core.get("%s/%d" % (name, 2**20))
        ten = core.get("%s/%d" % (name, 10 * 2**20))
        if one and "us" in one:
            r = one["us"] / one["baseline_us"]
            target("%s of 1 MB within 10x of memchr" % label, "%s, %.0fx" % (fmt_us(one["us"]), r), r <= 10)
        if one and ten and "us" in one and "us" in ten:
            g = (ten["us"] / ten["bytes"]) / (one["us"] / one["bytes"])
            target("%s: no quadratic growth 1 MB to 10 MB" % label,
                   "time per byte grows %.2fx" % g, g <= 2)
    lint = core.get("BM_Lint/%d" % 2**20)
    if lint and "us" in lint:
        r = lint["us"] / lint["baseline_us"]
        target("lint of 1 MB within 30x of memchr", "%s, %.0fx" % (fmt_us(lint["us"]), r), r <= 30)
    lint50 = core.get("BM_Lint/%d" % (50 * 1024))
    if lint50 and "us" in lint50:
        target("lint of a 50 KB script under 2 ms", fmt_us(lint50["us"]), lint50["us"] < 2000)
    ra = core.get("BM_ReplaceAll_100k", {}).get("raw", {}).get("real_time")
    ra = ra * UNIT_US[core["BM_ReplaceAll_100k"]["raw"]["time_unit"]] if ra else None  # wall clock, as sed
    sed = us("BM_Sed_ReplaceAll_100k/iterations:5/manual_time")
    if ra and sed:
        target("Replace All (100,000 in 10 MB) within 10x of sed", "%s vs sed %s (%.2fx)" % (fmt_us(ra), fmt_us(sed), ra / sed),
               ra <= 10 * sed)
    o = gui_value("open a 50 MB file")
    if o is not None:
        fresh = gui_value("fresh memory for a 50 MB text and its styles")
        floor = "" if fresh is None else " (taking 2 x 50 MB of fresh memory into use: %.0f ms)" % fresh
        target("open a 50 MB file under 300 ms", "%.0f ms%s" % (o, floor), o < 300)
    s = gui_value("start-up to a shown frame (in process)")
    if s is not None:
        target("start-up to a shown frame under 300 ms", "%.0f ms" % s, s < 300)
    m = gui_value("resident memory at start")
    if m is not None:
        target("resident memory at start under 80 MB", "%.1f MB" % m, m < 80)
    print("| Target | Measured | |")
    print("|---|---|---|")
    for t in targets:
        print("| %s | %s | %s |" % t)


if __name__ == "__main__":
    main()
