#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Vesk authors
# SPDX-License-Identifier: Apache-2.0
"""rows.py FILE: from what vesk-bench wrote of shortRows as JSON, lines of the number of rows and what one of them cost in microseconds: least,
median and most of the repetitions."""

import collections
import json
import pathlib
import statistics
import sys

runs = collections.defaultdict(list)
for run in json.loads(pathlib.Path(sys.argv[1]).read_text())["benchmarks"]:
    if run["run_type"] == "iteration":
        runs[int(run["name"].split("/")[1])].append(run["us_per_row"])
for count, costs in sorted(runs.items()):
    print(count, f"{min(costs):.3f} {statistics.median(costs):.3f} {max(costs):.3f}")
