# The warnings every target compiles with, defined once here. CRVLIB_WERROR
# makes them errors (CI builds with it; a consumer's newer compiler need not).
function(crvlib_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
  if(CRVLIB_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  # GCC 12 reports false -Wrestrict overlaps inside std::string's own inlined
  # copies at -O3 (GCC bug 105329); the warning says nothing about our code.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
endfunction()
