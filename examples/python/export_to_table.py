#!/usr/bin/env python3
"""A multi-value export turned into a table, with pandas and then with Dask.

The export holds one customer record a line: attributes separated by the
attribute mark (vxAM), the order dates and amounts multi-valued (vxVM):

    1 id       C0000042
    2 name     Ann Smith
    3 dates    13514ý13602           internal dates (days from 31 Dec 1967)
    4 amounts  12345ý990             internal amounts (cents)
    5 status   OPEN
    6 tags     WEBýPRIORITY

records_to_table() keeps the records tagged PRIORITY (LocateElement),
extracts the attributes (ExtractElement), explodes the order lines
(DynArrayToArray) and converts the dates and amounts (Convert "D4-" and
"MD2"), every step a crvlib.map over a column. It runs first as a pandas
function over the whole export, then over the partitions of a dask.dataframe
on a dask.distributed cluster: a LocalCluster of 1 and then 2 worker
processes, or the cluster at --scheduler ADDRESS. Next to each run it times
a CPU-bound control (a pure-Python loop of fixed work per partition) on the
same workers, so the example's scaling can be read against what the machine
gives.

    PYTHONPATH=build/python /usr/bin/python3 examples/python/export_to_table.py
    ... --records 3000            a small export (what CI runs)
    ... --scheduler tcp://host:8786
"""
import argparse
import csv
import os
import random
import sys
import time

import pandas as pd

import crvlib

AM, VM = crvlib.vxAM, crvlib.vxVM
F, C = crvlib.Functions, crvlib.Conversions
STATUSES = ["OPEN", "CLOSED", "HOLD"]
TAGS = ["WEB", "PHONE", "PRIORITY", "EXPORT", "RETAIL"]
FIRST = ["Ann", "Bo", "Carla", "Dmitri", "Eve", "Farid", "Grete", "Hiro", "Ines", "Jules"]
LAST = ["Smith", "Okafor", "Nguyen", "Muller", "Rossi", "Haddad", "Kowalski", "Silva"]


def generate(path, records, seed=7):
    """Writes `records` records to `path` (Latin-1, one byte per mark)."""
    rng = random.Random(seed)
    with open(path, "w", encoding="latin-1", newline="\n") as out:
        lines = []
        for i in range(records):
            orders = rng.randint(1, 6)
            dates = VM.join(str(rng.randint(12000, 20000)) for _ in range(orders))
            amounts = VM.join(str(rng.randint(100, 500000)) for _ in range(orders))
            tags = VM.join(rng.sample(TAGS, rng.randint(1, 3)))
            lines.append(AM.join([f"C{i:07d}", f"{rng.choice(FIRST)} {rng.choice(LAST)}", dates,
                                  amounts, rng.choice(STATUSES), tags]))
            if len(lines) == 10000:
                out.write("\n".join(lines) + "\n")
                lines = []
        if lines:
            out.write("\n".join(lines) + "\n")


def read_options():
    # One column of whole lines: no separator, quoting or NA handling.
    return dict(sep="\x1f", header=None, names=["record"], dtype=str, encoding="latin-1",
                quoting=csv.QUOTE_NONE, na_filter=False)


def records_to_table(records):
    """One row per order line of the PRIORITY records of a Series of records."""
    crvlib.set_locale("en-US")  # the date code's field order; set per worker thread
    records = records.tolist()
    tags = crvlib.map(F.ExtractElement, records, AM, 6)
    keep = [n > 0 for n in crvlib.map(F.LocateElement, tags, "PRIORITY", VM, 1)]
    records = [r for r, k in zip(records, keep) if k]

    def attribute(n):
        return crvlib.map(F.ExtractElement, records, AM, n)

    def values(n):
        return [array for _count, array in crvlib.map(F.DynArrayToArray, attribute(n), VM, [])]

    table = pd.DataFrame({"id": attribute(1), "name": attribute(2), "status": attribute(5),
                          "date": values(3), "amount": values(4)})
    table = table.explode(["date", "amount"], ignore_index=True)
    dates = crvlib.map(C.Convert, table["date"], "D4-")
    amounts = crvlib.map(C.Convert, table["amount"], "MD2")
    table["date"] = pd.to_datetime(pd.Series(dates, dtype=str), format="%m-%d-%Y")
    table["amount"] = pd.to_numeric(pd.Series(amounts, dtype=str))
    return table


META = pd.DataFrame({"id": pd.Series(dtype=str), "name": pd.Series(dtype=str),
                     "status": pd.Series(dtype=str), "date": pd.Series(dtype="datetime64[ns]"),
                     "amount": pd.Series(dtype=float)})


def summary(table):
    """Rows and total amount per status: small enough to send back."""
    return table.groupby("status")["amount"].agg(["count", "sum"])


def control(_partition, loops):
    """The CPU-bound control: a pure-Python loop of fixed work."""
    total = 0
    for i in range(loops):
        total += i * i % 7
    return total


def with_pandas(path, chunk_records):
    start = time.perf_counter()
    parts = [summary(records_to_table(chunk["record"]))
             for chunk in pd.read_csv(path, chunksize=chunk_records, **read_options())]
    result = pd.concat(parts).groupby(level=0).sum()
    return result, time.perf_counter() - start


def with_dask(client, path, blocksize, loops):
    import dask.dataframe as dd
    frame = dd.read_csv(path, blocksize=blocksize, **read_options())
    tables = frame["record"].map_partitions(records_to_table, meta=META)
    start = time.perf_counter()
    result = tables.map_partitions(summary).compute().groupby(level=0).sum()
    seconds = time.perf_counter() - start
    checks = frame["record"].map_partitions(control, loops, meta=(None, int))
    start = time.perf_counter()
    checks.compute()
    control_seconds = time.perf_counter() - start
    return result, seconds, control_seconds, frame.npartitions


def same(a, b):
    return (a["count"].equals(b["count"])
            and ((a["sum"] - b["sum"]).abs() < 1e-6 * b["sum"].abs().max()).all())


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--records", type=int, default=3500000,
                        help="records in the export (default 3500000, about 300 MB)")
    parser.add_argument("--workdir", default="/tmp/crvlib-export-example",
                        help="where the export is written (and kept for the next run)")
    parser.add_argument("--scheduler", help="a dask.distributed scheduler to use instead of a "
                        "LocalCluster of 1 and 2 worker processes")
    parser.add_argument("--blocksize", default=None,
                        help="bytes per dask partition (default: the export in 16 parts)")
    args = parser.parse_args()

    os.makedirs(args.workdir, exist_ok=True)
    path = os.path.join(args.workdir, f"export-{args.records}.txt")
    if not os.path.exists(path):
        start = time.perf_counter()
        generate(path + ".part", args.records)
        os.replace(path + ".part", path)
        print(f"generated {args.records} records, {os.path.getsize(path) / 1e6:.0f} MB, "
              f"in {time.perf_counter() - start:.1f} s")
    size = os.path.getsize(path)
    blocksize = int(args.blocksize) if args.blocksize else max(size // 16 + 1, 1 << 14)

    expected, seconds = with_pandas(path, 200000)
    print(f"pandas, one process:   {args.records / seconds:12.0f} records/s")
    print(expected.to_string())

    from dask.distributed import Client, LocalCluster
    # The control does, per partition, about the work pandas did for one.
    start = time.perf_counter()
    control(None, 200000)
    loops_per_second = 200000 / (time.perf_counter() - start)
    loops = max(1000, int(loops_per_second * seconds * blocksize / size))
    clusters = [None] if args.scheduler else [1, 2]
    rates = {}
    for workers in clusters:
        if workers is None:
            client, cluster = Client(args.scheduler), None
            label = args.scheduler
        else:
            cluster = LocalCluster(n_workers=workers, threads_per_worker=1, processes=True,
                                   dashboard_address=None)
            client = Client(cluster)
            label = f"{workers} worker process{'es' if workers > 1 else ''}"
        try:
            client.run(lambda: __import__("crvlib") and None)  # import it everywhere first
            result, seconds, control_seconds, parts = with_dask(client, path, blocksize, loops)
        finally:
            client.close()
            if cluster is not None:
                cluster.close()
        if not same(result, expected):
            print(result.to_string())
            sys.exit(f"dask on {label} disagrees with pandas")
        rates[workers] = (args.records / seconds, parts / control_seconds)
        print(f"dask, {label:21s} {args.records / seconds:12.0f} records/s   "
              f"control {parts / control_seconds:8.1f} partitions/s  ({parts} partitions)")
    if 1 in rates and 2 in rates:
        scaling = rates[2][0] / rates[1][0]
        control_scaling = rates[2][1] / rates[1][1]
        print(f"scaling 1 -> 2 workers: example {scaling:.2f}x, control {control_scaling:.2f}x: "
              f"{scaling / control_scaling:.2f} of the control's (target >= 0.85)")


if __name__ == "__main__":
    main()
