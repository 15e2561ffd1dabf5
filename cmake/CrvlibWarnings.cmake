# Warnings are errors everywhere; defined once here.
function(crvlib_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror)
  # GCC 12 reports false -Wrestrict overlaps inside std::string's own inlined
  # copies at -O3 (GCC bug 105329); the warning says nothing about our code.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
endfunction()
