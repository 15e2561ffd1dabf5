"""crvlib.map against single calls, its error modes, its columns and threads."""
import threading

import pytest

import crvlib

F, C = crvlib.Functions, crvlib.Conversions

ITEMS = ["a|b|c", "\xfe|\u20ac", "\U0001F600|x", "a\ud800|b", b"a\x00|\x00b\x00"]

# Each row: a routine, its fixed arguments; map must give what the single
# calls give, item by item.
ROUTINES = [
    ("ExtractElement", F.ExtractElement, ("|", 2), {}),
    ("keyword", F.LocateElement, ("b", "|", 1), {"SearchType": crvlib.vxFirstCharMatch}),
    ("writes its first parameter", F.InsertSorted, ("|", "b"), {}),
    ("writes an array", F.DynArrayToArray, ("|", []), {"ArrayBase": crvlib.vxOneBased}),
    ("returns an object", F.ToDynamicString, (), {}),
]


@pytest.mark.parametrize("name,fn,args,kwargs", ROUTINES, ids=[r[0] for r in ROUTINES])
def test_map_is_the_single_calls(name, fn, args, kwargs):
    def plain(v):
        return str(v) if isinstance(v, crvlib.DynamicString) else v
    want = [plain(fn(item, *args, **kwargs)) for item in ITEMS]
    got = [plain(v) for v in crvlib.map(fn, ITEMS, *args, **kwargs)]
    assert got == want


def test_many_items_cross_blocks():
    items = [f"{i}|{i * 2}" for i in range(5000)]
    assert crvlib.map(F.ExtractElement, items, "|", 2) == [str(i * 2) for i in range(5000)]
    assert crvlib.map(F.CountElements, tuple(items), "|") == [2] * 5000


def test_other_first_parameter_types():
    amounts = [crvlib.Conversions.CurrencyIn(x) for x in ("1", "2.5")]
    assert crvlib.map(F.NumToWords, amounts) == ["One and 00/100", "Two and 50/100"]
    assert crvlib.map(F.Pad, ["7", "42"], "0", 3) == ["007", "042"]


def test_failing_item_raises_with_its_index():
    items = ["a|b"] * 3000 + ["a"] + ["a|b"]
    with pytest.raises(crvlib.Error) as info:
        crvlib.map(C.Convert, ["1", "2", "x"] + items, "MCZ")
    assert (info.value.number, info.value.index) == (1611, 0)
    with pytest.raises(crvlib.Error) as info:
        crvlib.map(F.ConvertHexToStr, ["^H41", "^H42", "zz", "^H43"])
    assert info.value.index == 2


def test_coerce_gives_none():
    got = crvlib.map(F.ConvertHexToStr, ["^H41", "zz", 5, None, "^H42^H43"], errors="coerce")
    assert got == ["A", None, None, None, "BC"]


BAD = [
    ("not a routine", (len, ["a"]), {}, TypeError, "takes a routine of a global class"),
    ("an object's method", (crvlib.DynamicString.Append, ["a"]), {}, TypeError,
     "takes a routine of a global class"),
    ("a single str", (F.CountElements, "abc", "|"), {}, TypeError, "not a single str"),
    ("item of the wrong type", (F.CountElements, ["a", 3], "|"), {}, TypeError,
     "Functions.CountElements() argument 'ArrayValue' must be str, not int (item 1 of the column)"),
    ("bad fixed argument", (F.ExtractElement, ["a"], "|", "x"), {}, TypeError,
     "argument 'Position' must be int"),
    ("missing argument", (F.ExtractElement, ["a"], "|"), {}, TypeError, "'Position'"),
    ("bad errors", (F.CountElements, ["a"], "|"), {"errors": "ignore"}, ValueError,
     "errors must be"),
    ("no first parameter", (F.GetMyDocumentsPath, ["a"]), {}, TypeError, "no first parameter"),
]


@pytest.mark.parametrize("name,args,kwargs,error,message", BAD, ids=[b[0] for b in BAD])
def test_bad_calls(name, args, kwargs, error, message):
    with pytest.raises(error) as info:
        crvlib.map(*args, **kwargs)
    assert message in str(info.value)


def test_series_and_arrays():
    pd = pytest.importorskip("pandas")
    np = pytest.importorskip("numpy")
    series = pd.Series(["a|b", "c|d"], index=[10, 20])
    assert crvlib.map(F.ExtractElement, series, "|", 2) == ["b", "d"]
    assert crvlib.map(F.ExtractElement, np.array(["a|b"], dtype=object), "|", 1) == ["a"]
    assert crvlib.map(F.ExtractElement, (s for s in ["x|y"]), "|", 2) == ["y"]


def test_threads_map_at_once_and_keep_their_locale():
    items = ["13514"] * 20000
    results = {}

    def run(locale):
        crvlib.set_locale(locale)
        results[locale] = crvlib.map(C.Convert, items, "D4/")

    threads = [threading.Thread(target=run, args=(l,)) for l in ("en-US", "de-DE")]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert set(results["en-US"]) == {"12/30/2004"}
    assert set(results["de-DE"]) == {"30.12.2004"}


def test_a_column_changed_meanwhile_does_not_crash():
    items = ["a|b"] * 200000
    stop = threading.Event()

    def shrink():
        while not stop.is_set() and items:
            del items[-1000:]

    t = threading.Thread(target=shrink)
    t.start()
    try:
        got = crvlib.map(F.ExtractElement, items, "|", 2)
        assert set(got) <= {"b"}
    except RuntimeError as e:
        assert "changed size" in str(e)
    finally:
        stop.set()
        t.join()
