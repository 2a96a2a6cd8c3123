# Shared by the scripts beside it.

# What builds the module once more, unoptimised and without debugging information. In: CCACHE and
# CCACHE_FOLDER (optional).
set(fast_build -DCMAKE_CXX_FLAGS_DEBUG=)
if(CCACHE)
  list(APPEND fast_build -DCMAKE_CXX_COMPILER_LAUNCHER=${CCACHE})
  set(ENV{CCACHE_DIR} ${CCACHE_FOLDER})
  set(ENV{CCACHE_NOHASHDIR} 1)
endif()

# run(COMMAND...): runs it and keeps what it printed in `output`; stops when it fails.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output
                  ERROR_VARIABLE errors)
  if(status)
    message(FATAL_ERROR "${ARGN}\nfailed:\n${output}${errors}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

# run_failing(SENTENCE COMMAND...): runs what must fail with this in its errors, whatever the line
# breaks.
function(run_failing sentence)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output
                  ERROR_VARIABLE errors)
  string(REGEX REPLACE "[ \n]+" " " errors "${errors}")
  string(FIND "${errors}" "${sentence}" place)
  if(status EQUAL 0 OR place EQUAL -1)
    message(FATAL_ERROR "${ARGN}\nended with ${status}, without \"${sentence}\":\n${errors}")
  endif()
endfunction()

# expect_output(TEXT): what the last program printed; | stands for a new line.
function(expect_output text)
  string(REPLACE "|" "\n" text "${text}")
  if(NOT output STREQUAL text)
    message(FATAL_ERROR "the program printed: ${output}")
  endif()
endfunction()
