# Compiler settings for the project's own targets.
function(zo_project_options target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror)
  if(ZO_SANITIZER)
    target_compile_options(${target} PRIVATE -fsanitize=${ZO_SANITIZER} -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${ZO_SANITIZER})
  endif()
endfunction()
