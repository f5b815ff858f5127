# Compiler settings for the project's own targets.
#
# ZO_SANITIZER takes a list as -fsanitize does ("address,undefined"). Undefined
# behaviour halts the process at its first report, so that a test sees it as a
# failure instead of a line on stderr. With ZO_FUZZ every target carries the
# coverage instrumentation that guides libFuzzer.
function(zo_project_options target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror)
  if(ZO_SANITIZER)
    set(flags -fsanitize=${ZO_SANITIZER} -fno-omit-frame-pointer)
    if(ZO_SANITIZER MATCHES "undefined")
      list(APPEND flags -fno-sanitize-recover=undefined)
    endif()
    target_compile_options(${target} PRIVATE ${flags})
    target_link_options(${target} PRIVATE ${flags})
    # GCC under AddressSanitizer takes the std::function in the states of
    # <regex>'s automaton for "maybe uninitialized" (GCC bug 105562), in
    # every file that builds a regex. The release build keeps the warning.
    if(ZO_SANITIZER MATCHES "address" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
    endif()
  endif()
  if(ZO_FUZZ)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# For the project's shared libraries: a call from a library to a function it
# defines itself goes straight there, without a PLT entry that the dynamic
# linker resolves at the first call by searching every loaded library. Every
# child process that runs a case pays those look-ups again. Data (singletons,
# static members shared across libraries) keeps its one process-wide copy.
function(zo_bind_locally target)
  target_link_options(${target} PRIVATE -Wl,-Bsymbolic-functions)
endfunction()
