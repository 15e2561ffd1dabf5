# Checks that every #include in the source tree follows the layers, and names
# each file and line that does not.
#
#   cmake -DSOURCE_DIR=<tree> -P check_layers.cmake
#
# The layers, from the faces down: cli, com and python are driven by typelib,
# which describes the public API of include/crvlib; under that API classes
# build on dynstring, dynstring on runtime and runtime on core. platform sits
# at the edge: its interfaces (platform/*.h) are what the layers above core
# may use of the operating system, and its backends implement them on core.
# core reaches the platform at one point only, the locale start-up, through
# the interface platform/locale_source.h; that header depends on nothing in
# core but the plain LocaleSettings struct.
#
# Each row: a folder, then what its files may include, as folders or single
# headers; "*" means anything. A folder that is not in the table may hold no
# source file. Folders that do not exist yet are simply empty.
cmake_minimum_required(VERSION 3.25)

set(layers
  "include/crvlib | include/crvlib"
  "core           | include/crvlib core platform/locale_source.h"
  "platform       | include/crvlib core platform"
  "runtime        | include/crvlib core platform runtime"
  "dynstring      | include/crvlib core platform runtime dynstring"
  "classes        | include/crvlib core platform runtime dynstring classes"
  "typelib        | include/crvlib typelib"
  "cli            | include/crvlib typelib cli"
  "com            | include/crvlib typelib com"
  "python         | include/crvlib typelib python"
  "tests          | *"
  "bench          | *"
  "fuzz           | *"
  "examples       | *")

# Platform files are named after their backend (collation_icu.cpp). Every
# platform source names one; a platform header that names one is private to
# that backend's files, the other platform headers are the interfaces.
set(backends icu pcre2 posix xdg win32)

if(NOT SOURCE_DIR)
  message(FATAL_ERROR "usage: cmake -DSOURCE_DIR=<tree> -P check_layers.cmake")
endif()

set(folders "")
foreach(row IN LISTS layers)
  string(REGEX MATCH "^([^ |]+) *[|] *(.*)$" _ "${row}")
  list(APPEND folders "${CMAKE_MATCH_1}")
  string(REPLACE " " ";" allowed "${CMAKE_MATCH_2}")
  set("may_${CMAKE_MATCH_1}" "${allowed}")
endforeach()
set(problems "")

# The folder of a path relative to the tree: include/crvlib or its first part.
function(folder_of path out)
  if(path MATCHES "^include/crvlib/")
    set(${out} "include/crvlib" PARENT_SCOPE)
  else()
    string(REGEX REPLACE "/.*$" "" first "${path}")
    if(first STREQUAL path)  # a file at the top of the tree
      set(first ".")
    endif()
    set(${out} "${first}" PARENT_SCOPE)
  endif()
endfunction()

# The backend a platform file names, or "" when it names none.
function(backend_of path out)
  get_filename_component(stem "${path}" NAME_WE)
  string(REGEX MATCH "[^_]+$" suffix "${stem}")
  if(NOT suffix STREQUAL stem AND suffix IN_LIST backends)
    set(${out} "${suffix}" PARENT_SCOPE)
  else()
    set(${out} "" PARENT_SCOPE)
  endif()
endfunction()

# Every source file of the tree, leaving out hidden folders and build folders.
file(GLOB tops RELATIVE "${SOURCE_DIR}" "${SOURCE_DIR}/*")
set(sources "")
foreach(top IN LISTS tops)
  if(top MATCHES "^[.]" OR EXISTS "${SOURCE_DIR}/${top}/CMakeCache.txt")
    continue()
  endif()
  set(patterns "")
  foreach(ext h hh hpp c cc cpp cxx inc ipp)
    if(IS_DIRECTORY "${SOURCE_DIR}/${top}")
      list(APPEND patterns "${SOURCE_DIR}/${top}/*.${ext}")
    elseif(top MATCHES "[.]${ext}$")
      list(APPEND patterns "${SOURCE_DIR}/${top}")
    endif()
  endforeach()
  if(patterns)
    file(GLOB_RECURSE found RELATIVE "${SOURCE_DIR}" ${patterns})
    list(APPEND sources ${found})
  endif()
endforeach()
list(SORT sources)

foreach(file IN LISTS sources)
  folder_of("${file}" folder)
  if(NOT folder IN_LIST folders)
    list(APPEND problems "${file}: the folder ${folder} has no row in the layer table")
    continue()
  endif()
  set(may "${may_${folder}}")
  if(may STREQUAL "*")
    continue()
  endif()
  set(own_backend "")
  if(folder STREQUAL "platform")
    backend_of("${file}" own_backend)
    if(NOT own_backend AND NOT file MATCHES "[.]h$")
      list(APPEND problems "${file}: a platform source names its backend, one of: ${backends}")
    endif()
  endif()
  get_filename_component(dir "${file}" DIRECTORY)

  # One list item per line: the characters CMake treats specially in lists
  # never occur in an include's name, so they are blanked out first.
  file(READ "${SOURCE_DIR}/${file}" text)
  string(REGEX REPLACE "[][;\\\\]" " " text "${text}")
  string(REPLACE "\n" ";" lines "${text}")
  set(number 0)
  foreach(line IN LISTS lines)
    math(EXPR number "${number} + 1")
    if(NOT line MATCHES "^[ \t]*#[ \t]*include[ \t]*([\"<])([^\">]+)[\">]")
      continue()
    endif()
    set(quoted "${CMAKE_MATCH_1}")
    set(name "${CMAKE_MATCH_2}")
    # Where the included file lies in the tree; "" for a header from outside.
    set(target "")
    if(name MATCHES "^crvlib/")
      set(target "include/${name}")
    elseif(quoted STREQUAL "\"" AND (NOT name MATCHES "/" OR name MATCHES "(^|/)[.][.]?/"))
      cmake_path(SET target NORMALIZE "${dir}/${name}")
    else()
      folder_of("${name}" first)
      if(first IN_LIST folders OR (quoted STREQUAL "\"" AND EXISTS "${SOURCE_DIR}/${name}"))
        set(target "${name}")
      endif()
    endif()
    if(NOT target)
      continue()
    endif()

    folder_of("${target}" target_folder)
    set(why "")
    if(NOT target_folder IN_LIST folders)
      set(why "the folder ${target_folder} has no row in the layer table")
    elseif(NOT target_folder IN_LIST may AND NOT target IN_LIST may)
      list(JOIN may " " may_text)
      set(why "${folder} may include only ${may_text}")
    elseif(target_folder STREQUAL "platform")
      backend_of("${target}" target_backend)
      if(target_backend AND NOT target_backend STREQUAL own_backend)
        set(why "a header private to the ${target_backend} backend")
      endif()
    endif()
    if(why)
      list(APPEND problems "${file}:${number}: includes \"${name}\": ${why}")
    endif()
  endforeach()
endforeach()

if(problems)
  list(JOIN problems "\n  " report)
  message(FATAL_ERROR "includes across the layers:\n  ${report}")
endif()
