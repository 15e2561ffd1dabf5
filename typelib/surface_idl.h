// The type library description (IDL) of a member table, as `crv idl` prints
// it and typelib/crvlib.idl holds it.
//
// Each class becomes a dual interface `_<Class>` deriving from IDispatch and
// a coclass with that interface as its default (the global classes as
// application objects); each enumeration a typedef'd enum. Members keep
// their DISPIDs, help strings, `[in]`/`[in, out]` flags, optional parameters
// with their defaults and `[out, retval]` results:
//
//   [id(0x60030002), helpstring("Returns the number of elements …")]
//   HRESULT CountElements(
//       [in, out] BSTR* ArrayValue,
//       [in, out] BSTR* Delimiter,
//       [out, retval] long* Result);
//
// The output compiles with widl, which cannot express four things the type
// library holds; those are written as comments next to the construct they
// belong to: the help strings of enumeration members, the predeclared
// instance (predeclid) of a global class, the default of an optional
// by-reference String, and a help string holding CR LF (its helpstring then
// has a space in their place).
#ifndef CRVLIB_TYPELIB_SURFACE_IDL_H_
#define CRVLIB_TYPELIB_SURFACE_IDL_H_

#include <string>

#include "typelib/surface.h"

namespace crvlib::typelib {

// The IDL of `surface` (its library attributes and classes) and of the
// library's enumerations.
std::string TypeLibraryIdl(const Surface& surface);

}  // namespace crvlib::typelib

#endif  // CRVLIB_TYPELIB_SURFACE_IDL_H_
