# Runs the layer check on small trees of one file each and compares its verdict
# with the expected one: "pass", or the start of the message that names the
# offence. Every file carries its include on line 3.
#
#   cmake -DSOURCE_DIR=<tree> -DBINARY_DIR=<scratch> -P check_layers_test.cmake
cmake_minimum_required(VERSION 3.25)

# want | file | included header
set(cases
  "pass                          | core/a.cpp              | \"platform/locale_source.h\""
  "core/a.cpp:3:                 | core/a.cpp              | \"platform/collation.h\""
  "core/a.cpp:3:                 | core/a.cpp              | \"runtime/val.h\""
  "pass                          | platform/clock_posix.cpp | \"core/thread_state.h\""
  "pass                          | platform/regex_pcre2.cpp | \"platform/regex_to_pcre2.h\""
  "platform/locale_icu.cpp:3:    | platform/locale_icu.cpp | \"platform/regex_to_pcre2.h\""
  "platform/locale_icu.cpp:3:    | platform/locale_icu.cpp | \"regex_to_pcre2.h\""
  "runtime/a.cpp:3:              | runtime/a.cpp           | \"platform/regex_to_pcre2.h\""
  "platform/helpers.cpp:         | platform/helpers.cpp    | \"core/string.h\""
  "pass                          | runtime/a.cpp           | \"platform/collation.h\""
  "pass                          | runtime/a.cpp           | \"val.h\""
  "runtime/a.cpp:3:              | runtime/a.cpp           | \"../classes/x.h\""
  "dynstring/a.cpp:3:            | dynstring/a.cpp         | \"classes/x.h\""
  "pass                          | classes/a.cpp           | \"dynstring/x.h\""
  "include/crvlib/a.h:3:         | include/crvlib/a.h      | \"core/x.h\""
  "pass                          | include/crvlib/a.h      | <crvlib/string.h>"
  "typelib/a.cpp:3:              | typelib/a.cpp           | \"classes/x.h\""
  "pass                          | cli/a.cpp               | \"typelib/surface.h\""
  "com/a.cpp:3:                  | com/a.cpp               | <core/x.h>"
  "python/a.cpp:3:               | python/a.cpp            | \"cli/x.h\""
  "pass                          | cli/a.cpp               | <unicode/ucol.h>"
  "pass                          | tests/a.cpp             | \"platform/regex_to_pcre2.h\""
  "extras/a.cpp:                 | extras/a.cpp            | \"core/x.h\"")

set(failures "")
set(n 0)
foreach(row IN LISTS cases)
  string(REGEX MATCH "^([^ |]+) *[|] *([^ |]+) *[|] *(.+)$" _ "${row}")
  set(want "${CMAKE_MATCH_1}")
  set(file "${CMAKE_MATCH_2}")
  set(include "${CMAKE_MATCH_3}")
  math(EXPR n "${n} + 1")
  set(tree "${BINARY_DIR}/layers-fixture/${n}")
  file(REMOVE_RECURSE "${tree}")
  file(WRITE "${tree}/${file}" "// ${file}\n\n#include ${include}\n")
  execute_process(COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${tree} -P ${SOURCE_DIR}/cmake/check_layers.cmake
                  RESULT_VARIABLE rc ERROR_VARIABLE out OUTPUT_VARIABLE out)
  if(want STREQUAL "pass")
    if(rc)
      list(APPEND failures "${file} with ${include}: refused\n${out}")
    endif()
  elseif(NOT rc OR NOT out MATCHES "\n *${want}")
    list(APPEND failures "${file} with ${include}: wanted \"${want}\", got ${rc}\n${out}")
  endif()
endforeach()

if(failures)
  list(JOIN failures "\n" report)
  message(FATAL_ERROR "${report}")
endif()
