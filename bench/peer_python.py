#!/usr/bin/env python3
"""Python 3 equivalents of the element benchmarks on the same data.

Generates the 10^6 random 8-16 character elements with the same 64-bit LCG
as bench/elements_bench.cpp (or reads the file it writes with --write-data)
and times count, split, and '|'.join(sorted(s.split('|'))).

    python3 bench/peer_python.py [--sort-only] [FILE]

Times are the thread's CPU time, as in the C++ benchmark.

With --sort-only only the sort is timed and printed ("sorted <ms>"); the
C++ benchmark runs it that way to take its ratio in the same run.
"""
import sys
import time

MASK = (1 << 64) - 1


def random_elements(n, delim="|", digits=False):
    state = 12345
    out = []
    for _ in range(n):
        state = (state * 6364136223846793005 + 1442695040888963407) & MASK
        length = 8 + ((state >> 33) % 9)
        chars = []
        for _ in range(length):
            state = (state * 6364136223846793005 + 1442695040888963407) & MASK
            r = state >> 33
            chars.append(chr(48 + r % 10) if digits else chr(97 + r % 26))
        out.append("".join(chars))
    return delim.join(out)


def best(reps, fn):
    t = 1e30
    for _ in range(reps):
        t0 = time.thread_time()
        fn()
        t = min(t, time.thread_time() - t0)
    return t


def main():
    args = sys.argv[1:]
    sort_only = "--sort-only" in args
    args = [a for a in args if a != "--sort-only"]
    if args:
        with open(args[0], encoding="utf-8") as f:
            s = f.read()
    else:
        s = random_elements(1000000)
    sort_ms = best(5 if sort_only else 3, lambda: "|".join(sorted(s.split("|")))) * 1e3
    if sort_only:
        print("sorted %.1f" % sort_ms)
        return
    print("count   %.1f ms" % (best(5, lambda: s.count("|") + 1) * 1e3))
    print("split   %.1f ms" % (best(5, lambda: s.split("|")) * 1e3))
    print("sorted  %.1f ms  ('|'.join(sorted(s.split('|'))))" % sort_ms)
    print("sorted, case-insensitive key %.1f ms"
          % (best(1, lambda: "|".join(sorted(s.split("|"), key=str.casefold))) * 1e3))


if __name__ == "__main__":
    main()
