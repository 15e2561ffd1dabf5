# Checks what the shared library exports: the public API, and nothing from the
# internal or platform namespaces (not even inside a template's arguments).
#
#   cmake -DLIBRARY=<libcrvlib.so> -DNM=<nm> -P check_exports.cmake
cmake_minimum_required(VERSION 3.25)

# One symbol of each public class and free function; the typeinfo of Error is
# what lets a program catch the library's errors.
set(public
  "crvlib::Constants::" "crvlib::Conversions::" "crvlib::DLLRoutines::"
  "crvlib::DynamicString::" "crvlib::Error::" "typeinfo for crvlib::Error"
  "crvlib::Functions::" "crvlib::SharedString::" "crvlib::String::"
  "crvlib::Validations::" "crvlib::SetThreadLocale(" "crvlib::IsKnownLocale("
  "crvlib::ThreadLocale" "crvlib::operator<<(")

execute_process(COMMAND ${NM} -D --defined-only -C ${LIBRARY}
                OUTPUT_VARIABLE symbols RESULT_VARIABLE rc)
if(rc)
  message(FATAL_ERROR "${NM} could not read ${LIBRARY}")
endif()
# One list item per symbol; brackets ([abi:cxx11]) and semicolons would split
# or join items, so they are rewritten first.
string(REPLACE "[" "<" symbols "${symbols}")
string(REPLACE "]" ">" symbols "${symbols}")
string(REPLACE ";" "," symbols "${symbols}")
string(REPLACE "\n" ";" symbols "${symbols}")

set(problems "")
foreach(name IN LISTS public)
  string(FIND "${symbols}" "${name}" at)
  if(at EQUAL -1)
    list(APPEND problems "not exported: ${name}")
  endif()
endforeach()
foreach(symbol IN LISTS symbols)
  if(symbol MATCHES "(internal|platform)::")
    list(APPEND problems "exported: ${symbol}")
  endif()
endforeach()

if(problems)
  list(LENGTH problems count)
  list(JOIN problems "\n  " report)
  message(FATAL_ERROR "${LIBRARY}: ${count} problems\n  ${report}")
endif()
