#!/usr/bin/env python3
"""The Python side of python_map_bench: times crvlib.map(Functions.ExtractElement)
and the plain-Python split over the items in FILE (one per line, UTF-8), as
CPU time of this thread per item, best of five, and prints
"map NS split NS"."""
import sys
import time

import crvlib


def best(runs, fn):
    """The least CPU time of fn() over the runs; each result is let go after
    its time is taken, as the C++ loop frees its results untimed."""
    t = float("inf")
    for _ in range(runs):
        t0 = time.thread_time()
        result = fn()
        t = min(t, time.thread_time() - t0)
        del result
    return t


def main():
    with open(sys.argv[1], encoding="utf-8") as f:
        items = f.read().split("\n")[:-1]
    mark = crvlib.vxAM
    extract = crvlib.Functions.ExtractElement
    mapped = crvlib.map(extract, items, mark, 5)
    split = [s.split(mark)[4] for s in items]
    if mapped != split:
        sys.exit("crvlib.map and split disagree")
    t_map = best(5, lambda: crvlib.map(extract, items, mark, 5))
    t_split = best(5, lambda: [s.split(mark)[4] for s in items])
    n = len(items)
    print("map %.1f split %.1f" % (t_map * 1e9 / n, t_split * 1e9 / n))


if __name__ == "__main__":
    main()
