"""The module against the type library description checked in beside the
member table (typelib/crvlib.idl): every class, member, parameter name,
default, help string and enumeration it lists is reachable from Python as
it says."""
import inspect
import pathlib
import re

import pytest

import crvlib

IDL = (pathlib.Path(__file__).parents[2] / "typelib" / "crvlib.idl").read_text()
STRING = r'"(?:[^"\\]|\\.)*"'
MEMBER = re.compile(
    r"\[id\((0x[0-9A-F]+)\)((?:, \w+)*), helpstring\((" + STRING + r")\)\]\s*HRESULT (\w+)\((.*?)\);",
    re.S)
PARAM = re.compile(r"\[([^\]]*)\]\s*([\w()*]+)\s+(\w+)")
DEFAULT = re.compile(r"defaultvalue\((" + STRING + r"|-?\d+)\)")


def unquote(text):
    return re.sub(r"\\(.)", r"\1", text[1:-1])


def words(text):
    return " ".join(text.split())


def idl_classes():
    for name, body in re.findall(r"interface _(\w+) : IDispatch \{(.*?)\n    \};", IDL, re.S):
        members = []
        for dispid, flags, help_text, member, params in MEMBER.findall(body):
            parsed = []
            for attrs, _type, pname in PARAM.findall(params):
                if "retval" in attrs:
                    continue
                default = DEFAULT.search(attrs)
                value = None
                if default:
                    value = default.group(1)
                    value = unquote(value) if value.startswith('"') else int(value)
                parsed.append((pname, "optional" in attrs, value))
            members.append((member, flags, unquote(help_text), parsed))
        yield name, members


CLASSES = list(idl_classes())
MEMBERS = [(c, *m) for c, members in CLASSES for m in members]
SETTABLE = {(c, m[0]) for c, members in CLASSES for m in members if "propput" in m[1]}


def test_every_class_is_there():
    assert [c for c, _ in CLASSES] == [
        "Constants", "Conversions", "Validations", "Functions", "DLLRoutines", "DynamicString",
        "SharedString"]
    for name, _ in CLASSES:
        assert inspect.isclass(getattr(crvlib, name))


@pytest.mark.parametrize("cls,member,flags,help_text,params", MEMBERS,
                         ids=[f"{m[0]}.{m[1]}{m[2]}" for m in MEMBERS])
def test_member_matches_the_type_library(cls, member, flags, help_text, params):
    attribute = inspect.getattr_static(getattr(crvlib, cls), member)
    if "propget" in flags or "propput" in flags:
        if isinstance(attribute, property):
            assert words(help_text) in words(attribute.__doc__)
            assert (attribute.fset is not None) == ((cls, member) in SETTABLE)
            return
    function = getattr(getattr(crvlib, cls), member)
    assert words(help_text) in words(function.__doc__)
    signature = inspect.signature(function)
    got = [(p.name, p.default is not inspect.Parameter.empty,
            None if p.default is inspect.Parameter.empty else p.default)
           for p in signature.parameters.values()]
    if "vararg" in flags:
        # The ParamArray is the trailing positional arguments.
        assert list(signature.parameters.values())[-1].kind is inspect.Parameter.VAR_POSITIONAL
        got[-1] = (got[-1][0], True, None)
        params = params[:-1] + [(params[-1][0], True, None)]
    assert got == params


ENUMS = re.findall(r"typedef enum (\w+) \{(.*?)\}", IDL, re.S)


@pytest.mark.parametrize("name,body", ENUMS, ids=[e[0] for e in ENUMS])
def test_enumeration(name, body):
    members = [(m, int(v)) for m, v in re.findall(r"(\w+) = (-?\d+)", body)]
    enum = getattr(crvlib, name)
    assert [(m.name, m.value) for m in enum] == members
    for member, value in members:
        assert getattr(crvlib, member) == value
        assert repr(getattr(crvlib, member)) == member  # as the defaults read in help()


MARKS = [("vxRM", "\xff"), ("vxAM", "\xfe"), ("vxVM", "\xfd"), ("vxSVM", "\xfc"),
         ("vxTM", "\xfb"), ("vxEM", "\xfa"), ("vxVBAR", "|")]


@pytest.mark.parametrize("name,char", MARKS)
def test_marks_on_the_module_the_class_and_an_instance(name, char):
    assert getattr(crvlib, name) == char
    assert getattr(crvlib.Constants, name) == char
    assert getattr(crvlib.Constants(), name) == char


def test_help_reads_like_the_object_browser():
    text = inspect.getdoc(crvlib.Functions.LocateElement)
    assert ("Function LocateElement(ArrayValue As String, Element As String, Delimiter As String, "
            "ByVal Position As Long, [ByVal SearchType As vxMatchingEnum = vxExactMatch], "
            "[ByVal CaseType As vxCaseEnum = vxCaseSensitive]) As Long") in text
    assert "Member of crvlib.Functions" in text
    assert "Default member of crvlib.DynamicString" in crvlib.DynamicString.Value.__doc__
    assert "read-only" in crvlib.DynamicString.Start.__doc__
