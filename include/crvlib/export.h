// CRVLIB_EXPORT marks what the shared library exports: every public class and
// free function with a definition inside the library. Everything else in it is
// hidden, so a program sees the public API and nothing of the internals.
// Classes written wholly in their header (Variant, Currency, SafeArray) have
// nothing to export and are not marked; of Date only the two calendar
// conversions are defined inside the library.
//
// For a shared library on Windows it is __declspec(dllexport) while building
// the library and __declspec(dllimport) for its users; for a shared library
// elsewhere, default visibility; for a static library, nothing (CRVLIB_STATIC
// is then defined for the library and its users). It stands before a class's
// name (class CRVLIB_EXPORT Functions) or a function's result type
// (CRVLIB_EXPORT std::string ThreadLocale()).
#ifndef CRVLIB_EXPORT_H_
#define CRVLIB_EXPORT_H_

#if defined(CRVLIB_STATIC)
#define CRVLIB_EXPORT
#elif defined(_WIN32)
#if defined(CRVLIB_BUILDING)
#define CRVLIB_EXPORT __declspec(dllexport)
#else
#define CRVLIB_EXPORT __declspec(dllimport)
#endif
#else
#define CRVLIB_EXPORT __attribute__((visibility("default")))
#endif

#endif  // CRVLIB_EXPORT_H_
