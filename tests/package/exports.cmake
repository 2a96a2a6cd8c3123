# Compares what the module exports with the list that is checked in. In: MODULE, NM, LIST.

execute_process(COMMAND ${NM} --dynamic --defined-only --demangle ${MODULE} OUTPUT_VARIABLE output
                COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "[0-9a-f]+ [A-Za-z] ([^\n]*)" "\\1" symbols "${output}")
string(REPLACE "\n" ";" symbols "${symbols}")
list(REMOVE_ITEM symbols "")
list(REMOVE_DUPLICATES symbols)
list(SORT symbols)
string(REPLACE ";" "\n" symbols "${symbols}\n")
file(READ ${LIST} expected)
if(NOT symbols STREQUAL expected)
  message(FATAL_ERROR "the module exports:\n${symbols}\nbut ${LIST} has:\n${expected}")
endif()
