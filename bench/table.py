#!/usr/bin/env python3
"""Prints the table of goals from the results of bench.sh: lines "name value".

    bench/table.py RESULTS [--values]

--values: the values alone, as scripts/figures.py takes them. Of a measurement made several times the median counts.
"""

import collections
import statistics
import sys

# what | name of the measurement | limit | unit; a limit below 0 is a least value
GOALS = [
    ("whole export over the floor, native", "floor_ratio", 1.15, "x"),
    ("  the same by processor time", "floor_ratio_by_processor_time", 1.15, "x"),
    ("  the same with ten times as many bars", "large_floor_ratio", 1.15, "x"),
    ("  the same with a hundred times as many", "largest_floor_ratio", 1.15, "x"),
    ("formatting alone", "format_ns_per_line", 40, "ns/line"),
    ("  the same by processor time", "format_ns_per_line_by_processor_time", 40, "ns/line"),
    ("whole export over the floor, Windows code under Wine", "windows_floor_ratio", 1.3, "x"),
    ("  the same, the system's GUIDs added to the floor", "windows_floor_with_guids_ratio", 1.3, "x"),
    ("reading a batch file, bars dropped", "read_mb_per_s", -150, "MB/s"),
    ("  the same, exported with the output dropped", "read_export_dropped_mb_per_s", None, "MB/s"),
    ("reading a JSON model over its library's parser", "json_ratio", 1.2, "x"),
    ("reading 50,000 members of a SAF workbook", "workbook_saf_seconds", 3, "s"),
    ("  over unzipping and parsing alone", "workbook_saf_ratio", None, "x"),
    ("reading 50,000 bars of plain tables", "workbook_tables_seconds", 3, "s"),
    ("  over unzipping and parsing alone", "workbook_tables_ratio", None, "x"),
    ("Python, arrays to a file, over the program on its JSON", "python_ratio", 1.5, "x"),
    ("registry", "registry_bytes_per_entity", 32, "bytes/entity"),
    ("peak memory, large mixed model", "peak_mb_all", 700, "MB"),
    ("peak memory, large model of built-up sections", "peak_mb_built_up", 700, "MB"),
    ("time per bar, large model over 10,000 bars", "linear_ratio", 1.10, "x"),
    ("  the floor, the same", "linear_floor_ratio", None, "x"),
    ("  the export's over the floor's", "linear_over_floor_ratio", 1.10, "x"),
    ("  formatting alone", "linear_format_ratio", None, "x"),
    ("entities over IfcPlusPlus, no file", "ahead_of_ifcplusplus_kept", -1, "x"),
    ("  a file, flushed line by line", "ahead_of_ifcplusplus_flushed", -1, "x"),
    ("entities over web-ifc, no file", "ahead_of_webifc_kept", -1, "x"),
    ("  ours flushed line by line, theirs one write", "ahead_of_webifc_written", -1, "x"),
]

# What stands below the table.
DETAILS = [
    "export_ns_per_line", "floor_ns_per_line", "floor_ratio_low_quarter", "floor_ratio_high_quarter",
    "large_floor_ratio_low_quarter", "large_floor_ratio_high_quarter",
    "largest_export_ns_per_line", "largest_floor_ns_per_line", "guid_ns",
    "windows_export_ns_per_line", "windows_floor_ns_per_line", "windows_guid_ns",
    "instructions_all", "instructions_simple", "instructions_built_up",
    "json_mb_per_s", "json_library_mb_per_s", "python_ms", "python_program_ms",
    "ours_entities", "ours_kept_per_s", "ours_flushed_per_s",
    "ifcplusplus_entities", "ifcplusplus_kept_per_s", "ifcplusplus_written_per_s",
    "ifcplusplus_flushed_per_s",
    "webifc_entities", "webifc_kept_per_s", "webifc_written_per_s",
]

# Identifiers an export asks of the system for each line, in the mixed model.
GUIDS_PER_LINE = 3 * 1.24 / 29.5


def derived(values):
    """Adds the measurements that are made of others."""
    def ratio(name, over, under):
        if over in values and under in values:
            values[name] = values[over] / values[under]

    ratio("linear_over_floor_ratio", "linear_ratio", "linear_floor_ratio")
    ratio("ahead_of_ifcplusplus_kept", "ours_kept_per_s", "ifcplusplus_kept_per_s")
    ratio("ahead_of_ifcplusplus_flushed", "ours_flushed_per_s", "ifcplusplus_flushed_per_s")
    ratio("ahead_of_webifc_kept", "ours_kept_per_s", "webifc_kept_per_s")
    ratio("ahead_of_webifc_written", "ours_flushed_per_s", "webifc_written_per_s")
    if "windows_export_ns_per_line" in values:
        floor = values["windows_floor_ns_per_line"] + GUIDS_PER_LINE * values["windows_guid_ns"]
        values["windows_floor_with_guids_ratio"] = values["windows_export_ns_per_line"] / floor


def verdict(value, limit):
    if limit is None:
        return ""
    return "met" if (value >= -limit if limit < 0 else value <= limit) else "MISSED"


def goal(limit, unit):
    if limit is None:
        return "-"
    return f"{'at least' if limit < 0 else 'at most'} {abs(limit):g} {unit}"


def main():
    with open(sys.argv[1], encoding="ascii") as results:
        measured = collections.defaultdict(list)
        for name, value in map(str.split, results):
            measured[name].append(float(value))
    values = {name: statistics.median(all_of_it) for name, all_of_it in measured.items()}
    derived(values)
    if "--values" in sys.argv[2:]:
        for name, value in values.items():
            print(name, f"{value:.0f}" if value >= 1000 or value == round(value) else f"{value:.4g}")
        return
    print(f"{'':54}{'goal':24}{'measured':>18}   verdict")
    for what, name, limit, unit in GOALS:
        if name in values:
            found = f"{values[name]:.4g} {unit}"
            print(f"{what:54}{goal(limit, unit):24}{found:>18}   {verdict(values[name], limit)}")
        else:
            print(f"{what:54}{goal(limit, unit):24}{'not measured':>18}   MISSED")
    print()
    for name in DETAILS:
        if name in values:
            print(f"{name:32}{values[name]:>14,.10g}")
    for name in ("floor_ratio", "windows_floor_ratio"):
        print(f"{name} of each process", *sorted(measured[name]))


if __name__ == "__main__":
    main()
