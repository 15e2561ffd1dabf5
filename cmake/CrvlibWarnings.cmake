# Warnings are errors everywhere; defined once here.
function(crvlib_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror)
endfunction()
