"""DynamicString and SharedString objects from Python."""
import gc
import os
import threading

import pytest

import crvlib


def make(text):
    d = crvlib.DynamicString()
    d.Value = text
    return d


def test_views_stay_live_under_edits():
    d = make("Hello World")
    w = d.SubString(6, 5)
    d.Insert("Big ", 6)
    assert (str(w), w.Start, len(w)) == ("World", 10, 5)
    assert (str(d), len(d)) == ("Hello Big World", 15)
    w.Value = "There"
    assert str(d) == "Hello Big There"
    assert w.Parent == d and d.Parent is None
    del d
    gc.collect()
    assert str(w.Parent) == "Hello Big There"  # a view keeps its family alive


# Members that return the object itself hand back an equal wrapper.
EDITS = [
    ("InsertElement", ("x", "|", 4), "a|b||x"),
    ("DeleteElement", ("|", 1), "b"),
    ("ReplaceElement", ("x", "|", 2), "a|x"),
    ("SortElements", ("|", crvlib.vxDescending), "b|a"),
    ("ChangeAll", ("|", "--"), "a--b"),
]


@pytest.mark.parametrize("member,args,want", EDITS, ids=[e[0] for e in EDITS])
def test_element_edits_return_the_object(member, args, want):
    d = make("a|b")
    assert getattr(d, member)(*args) == d
    assert str(d) == want


def test_extract_element_writes_eof():
    d = make("a|b")
    view, eof = d.ExtractElement("|", 2)
    assert (str(view), eof) == ("b", False)
    view, eof = d.ExtractElement("|", 5)
    assert (str(view), eof) == ("", True)


def test_errors_carry_the_object_source():
    with pytest.raises(crvlib.Error) as info:
        make("abc").SubString(-1, 1)
    assert info.value.source.startswith("CRVLIB.DynamicString::")


def test_objects_pass_and_come_back():
    d = crvlib.Functions.ToDynamicString("p|q")
    assert isinstance(d, crvlib.DynamicString) and str(d) == "p|q"
    assert d.Clone() != d and str(d.Clone()) == "p|q"
    assert {d: 1}[d.SubString(0, 99).Parent] == 1  # hashable by the object referred to


def test_methods_need_their_own_class():
    with pytest.raises(TypeError, match="needs a crvlib.DynamicString"):
        crvlib.DynamicString.Append(crvlib.SharedString(), "x")
    with pytest.raises(TypeError, match="needs a crvlib.DynamicString"):
        crvlib.DynamicString.Append("not an object", "x")


def test_a_family_shared_between_threads_does_not_crash():
    # A family belongs to one thread; used from several it is still only
    # ever touched by one at a time.
    d = make("")
    def work():
        for i in range(2000):
            d.Append("x|")
            d.CountElements("|")
    threads = [threading.Thread(target=work) for _ in range(4)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert len(d) == 4 * 2000 * 2


def test_shared_string():
    name = f"crvlib-python-test-{os.getpid()}"
    a, b = crvlib.SharedString(), crvlib.SharedString()
    with pytest.raises(crvlib.Error) as info:
        str(a)
    assert info.value.number == 13
    a.Create(name, 100)
    b.Create(name)
    a.Item = "shared \xfe text"
    assert b.Item == "shared \xfe text" and str(b) == "shared \xfe text"
    with pytest.raises(crvlib.Error):
        a.Item = "x" * 1000
