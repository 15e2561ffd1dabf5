"""Values crossing between Python and the library, the rule for what a call
returns, and the errors of calls that do not fit."""
import datetime
import decimal

import pytest

import crvlib

F, C, V = crvlib.Functions, crvlib.Conversions, crvlib.Validations
D = decimal.Decimal

# Each row: a call and what it returns. The strings exercise every storage
# kind of str (ASCII, Latin-1, two-byte, four-byte) and lone surrogates.
CALLS = [
    ("ascii", F.ExtractElement, ("a|b|c", "|", 2), {}, "b"),
    ("latin-1 mark", F.ExtractElement, ("x\xfey", crvlib.vxAM, 2), {}, "y"),
    ("two-byte", F.ExtractElement, ("\u20ac|\u0416", "|", 2), {}, "\u0416"),
    ("astral is a pair", F.CountElements, ("\U0001F600|x", "|"), {}, 2),
    ("astral element", F.ExtractElement, ("a|\U0001F600", "|", 2), {}, "\U0001F600"),
    ("lone surrogate kept", F.ExtractElement, ("\ud800|\udfff", "|", 2), {}, "\udfff"),
    ("half of a pair", F.ExtractElement, ("\U0001F600", "\ude00", 1), {}, "\ud83d"),
    ("keyword", F.LocateElement, ("a|bx|c", "x", "|", 1), {"SearchType": crvlib.vxSubStringMatch}, 2),
    ("default", F.LocateElement, ("a|B", "b", "|", 1), {}, 0),
    ("keywords only", F.LocateElement, (), dict(ArrayValue="a|B", Element="b", Delimiter="|",
                                              Position=1, CaseType=crvlib.vxCaseNotSensitive), 2),
    ("ParamArray", F.ReplaceParams, ("% and %", "%", "x", 5), {}, "x and 5"),
    ("Currency in", C.CurrencyIn, ("$1,234.56",), {}, D("1234.56")),
    ("Currency out", C.CurrencyOut, (D("-1234.5"),), {}, "($1,234.50)"),
    ("Currency rounds half to even", C.CurrencyOut, (D("0.00005"), "0.0000"), {}, "0.0000"),
    ("int as Currency", F.NumToWords, (12,), {}, "Twelve and 00/100"),
    ("Date in", C.DateIn, ("12/31/2004",), {}, datetime.datetime(2004, 12, 31)),
    ("Date out", C.DateOut, (datetime.datetime(2004, 12, 31, 18, 30),), {"OutputFormat": "yyyy-mm-dd hh:nn"},
     "2004-12-31 18:30"),
    ("date before day 0", C.DateOut, (datetime.datetime(1899, 12, 29, 6),), {"OutputFormat": "yyyy-mm-dd hh:nn"},
     "1899-12-29 06:00"),
    ("Boolean", C.Convert, ("abc", "MCU", False), {}, "ABC"),
    ("Integer", F.Swap, ("abc", 98, 120), {}, "axc"),
]


@pytest.mark.parametrize("name,fn,args,kwargs,want", CALLS, ids=[c[0] for c in CALLS])
def test_call(name, fn, args, kwargs, want):
    got = fn(*args, **kwargs)
    assert got == want
    assert type(got) is type(want)


# What a call returns: the result alone, or (result, written...) in
# parameter order when the routine writes some of its parameters, whether or
# not the type library passes them by reference.
RETURNS = [
    ("by-ref strings not written", F.CountElements, ("a|b", "|"), 2),
    ("optional by-ref not written", C.CurrencyOut, (D(5),), "$5.00"),
    ("InsertSorted", F.InsertSorted, ("a|c", "|", "b"), (2, "a|b|c")),
    ("ParseStr", F.ParseStr, ("ab cd", " ", 4), ("cd", 6)),
    ("ParseStr default Position", F.ParseStr, ("ab cd", " "), ("ab", 3)),
    ("BooleanOut", C.BooleanOut, (True, "bogus"), ("True", "True/False")),
    ("DynArrayToArray", F.DynArrayToArray, ("a|b", "|", [], crvlib.vxOneBased),
     (2, crvlib.StrArray(["a", "b"], 1))),
    ("ParseFileName, a Sub", F.ParseFileName, ("C:\\d\\f.txt", "", "", "", ""),
     (None, "C", "\\d\\", "f", "txt")),
    ("CRVExtractElement", crvlib.DLLRoutines.CRVExtractElement, ("a|b", "|", 2, ""), (-1, "b")),
    ("CRVInsertElementSorted", crvlib.DLLRoutines.CRVInsertElementSorted, ("a|c", "|", 0, "b"),
     (-1, 1)),
]


@pytest.mark.parametrize("name,fn,args,want", RETURNS, ids=[r[0] for r in RETURNS])
def test_returns(name, fn, args, want):
    assert fn(*args) == want


def test_string_array_keeps_its_lower_bound():
    count, array = F.DynArrayToArray("x|y", "|", [], crvlib.vxOneBased)
    assert array.lbound == 1 and isinstance(array, list)
    assert F.ArrayToDynArray(array, "-") == "x-y"
    assert F.ArrayToDynArray(("p", "q"), "-") == "p-q"


def test_odd_byte_length_is_bytes_both_ways():
    d = crvlib.DynamicString()
    d.Value = "abc"
    odd = d.ExtractB(1, 3)
    assert odd == b"\x00b\x00"
    assert d.Binary is True
    assert F.ConvertStrToHex(odd) == F.ConvertStrToHex(odd)  # accepted back as a String
    assert crvlib.Functions.CountElements(b"a\x00|\x00b\x00", "|") == 2


@pytest.mark.parametrize("value", [None, crvlib.Empty], ids=["Null", "Empty"])
def test_null_and_empty_reach_a_variant_parameter(value):
    # Neither is a Boolean, so the routine itself refuses them.
    with pytest.raises(crvlib.Error) as info:
        C.BooleanOut(value)
    assert info.value.number == 13


def test_library_error():
    with pytest.raises(crvlib.Error) as info:
        F.ExtractElement("a", "|", -2)
    e = info.value
    assert (e.number, e.source, e.index) == (5, "CRVLIB.Functions::ExtractElement", None)
    assert e.description == "Invalid procedure call or argument"
    assert isinstance(e, Exception)
    with pytest.raises(crvlib.Error) as info:
        F.ConvertHexToStr("zz")
    assert info.value.number == -2147220495


BAD = [
    ("str for Long", F.ExtractElement, ("a", "|", "2"), {}, TypeError,
     "Functions.ExtractElement() argument 'Position' must be int, not str"),
    ("bool for Long", F.ExtractElement, ("a", "|", True), {}, TypeError, "not bool"),
    ("float for Long", F.ExtractElement, ("a", "|", 2.0), {}, TypeError, "not float"),
    ("huge int", F.ExtractElement, ("a", "|", 2**31), {}, ValueError,
     "'Position' is out of range for a Long"),
    ("huge int, Integer", F.Swap, ("a", 2**15, 1), {}, ValueError, "for an Integer"),
    ("None for String", F.ExtractElement, (None, "|", 1), {}, TypeError,
     "'ArrayValue' must be str, not NoneType"),
    ("int for Boolean", C.Convert, ("a", "MCU", 1), {}, TypeError, "'InputConvert' must be bool"),
    ("list for Variant", C.DateOut, ([],), {}, TypeError, "'DateValue' must be"),
    ("huge int for Variant", C.DateOut, (10**400,), {}, ValueError, "too large for a Double"),
    ("NaN Currency", F.NumToWords, (D("NaN"),), {}, ValueError, "out of range for a Currency"),
    ("Currency overflow", F.NumToWords, (10**15,), {}, ValueError, "out of range for a Currency"),
    ("zoned datetime", C.DateOut, (datetime.datetime(2004, 1, 1, tzinfo=datetime.timezone.utc),),
     {}, ValueError, "time zone"),
    ("year 50", C.DateOut, (datetime.datetime(50, 1, 1),), {}, ValueError, "years 100 to 9999"),
    ("non-str item", F.ArrayToDynArray, (["a", 1], "|"), {}, TypeError, "item 1 must be str"),
    ("str for array", F.ArrayToDynArray, ("ab", "|"), {}, TypeError, "must be a list of str"),
    ("missing", F.ExtractElement, ("a",), {}, TypeError,
     "missing 2 required arguments: 'Delimiter', 'Position'"),
    ("too many", F.ExtractElement, ("a", "|", 1, 2), {}, TypeError,
     "takes 3 positional arguments but 4 were given"),
    ("unknown keyword", F.ExtractElement, ("a", "|", 1), {"position": 1}, TypeError,
     "unexpected keyword argument 'position'"),
    ("twice", F.ExtractElement, ("a", "|", 1), {"Position": 1}, TypeError,
     "multiple values for argument 'Position'"),
    ("wrong object", F.ExtractElement, (crvlib.DynamicString(), "|", 1), {}, TypeError,
     "must be str, not DynamicString"),
]


@pytest.mark.parametrize("name,fn,args,kwargs,error,message", BAD, ids=[b[0] for b in BAD])
def test_bad_arguments(name, fn, args, kwargs, error, message):
    with pytest.raises(error) as info:
        fn(*args, **kwargs)
    assert message in str(info.value)


def test_locale_is_per_thread():
    import threading
    date = datetime.datetime(2004, 12, 31)
    seen = {}

    def in_german():
        crvlib.set_locale("de-DE")
        seen["de"] = (crvlib.get_locale(), C.DateOut(date))

    thread = threading.Thread(target=in_german)
    thread.start()
    thread.join()
    assert seen["de"] == ("de-DE", "31.12.2004")
    assert C.DateOut(date) == "12/31/2004"
    with pytest.raises(ValueError):
        crvlib.set_locale("xx-YY")
