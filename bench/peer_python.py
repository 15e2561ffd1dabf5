#!/usr/bin/env python3
"""Python 3 equivalents of the element benchmarks on the same data.

Generates the 10^6 random 8-16 character elements with the same 64-bit LCG
as bench/elements_bench.cpp (or reads the file it writes with --write-data)
and times count, split, and '|'.join(sorted(s.split('|'))).

    python3 bench/peer_python.py
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
        t0 = time.perf_counter()
        fn()
        t = min(t, time.perf_counter() - t0)
    return t


def main():
    if len(sys.argv) > 1:
        with open(sys.argv[1], encoding="utf-8") as f:
            s = f.read()
    else:
        s = random_elements(1000000)
    print("count   %.1f ms" % (best(5, lambda: s.count("|") + 1) * 1e3))
    print("split   %.1f ms" % (best(5, lambda: s.split("|")) * 1e3))
    print("sorted  %.1f ms  ('|'.join(sorted(s.split('|'))))"
          % (best(3, lambda: "|".join(sorted(s.split("|")))) * 1e3))
    print("sorted, case-insensitive key %.1f ms"
          % (best(1, lambda: "|".join(sorted(s.split("|"), key=str.casefold))) * 1e3))


if __name__ == "__main__":
    main()
