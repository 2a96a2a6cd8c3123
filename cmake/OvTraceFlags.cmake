# Compiler flags of every target of the project: warnings, and arithmetic that gives the same bits
# everywhere (no fused multiply-add, no value-changing optimisation).

add_library(ovtrace_flags INTERFACE)

if(MSVC)
  target_compile_options(ovtrace_flags INTERFACE /W4 /fp:precise /utf-8 /permissive-)
else()
  target_compile_options(
    ovtrace_flags
    INTERFACE -ffp-contract=off
              -fno-fast-math
              -Wall
              -Wextra
              -Wpedantic
              -Wconversion
              -Wsign-conversion
              -Wdouble-promotion
              -Wshadow=local
              -Wcast-qual
              -Wold-style-cast
              -Wnon-virtual-dtor
              -Woverloaded-virtual
              -Wundef)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # Clang knows the flag without a scope; it would object to members named like parameters.
    target_compile_options(ovtrace_flags INTERFACE -Wno-unknown-warning-option)
  endif()
endif()

if(OVTRACE_SANITIZE)
  # Qt's lists compare two null lists by a memcmp() of no bytes, which the last flag lets pass.
  target_compile_options(ovtrace_flags INTERFACE -fsanitize=${OVTRACE_SANITIZE}
                                                 -fno-sanitize-recover=all
                                                 -fno-sanitize=nonnull-attribute
                                                 -fno-omit-frame-pointer)
  target_link_options(ovtrace_flags INTERFACE -fsanitize=${OVTRACE_SANITIZE})
endif()

# ovtrace_precompile(TARGET HEADER...): under sanitizers, for time. Other builds show that sources
# include what they use.
function(ovtrace_precompile target)
  if(OVTRACE_SANITIZE)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()
