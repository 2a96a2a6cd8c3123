# Compares what the DLL exports with the list that is checked in, and looks for libraries that it
# must not need and for the plug-in metadata. In: MODULE, OBJDUMP, LIST.

execute_process(COMMAND ${OBJDUMP} -p -h ${MODULE} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)

string(REGEX MATCHALL "\t\\[ *[0-9]+\\] [A-Za-z_][^\n]*" symbols "${output}")
list(TRANSFORM symbols REPLACE "\t\\[ *[0-9]+\\] " "")
list(SORT symbols)
list(JOIN symbols "\n" symbols)
file(READ ${LIST} expected)
if(NOT "${symbols}\n" STREQUAL expected)
  message(FATAL_ERROR "the module exports:\n${symbols}\nbut ${LIST} has:\n${expected}")
endif()

string(REGEX MATCHALL "DLL Name: [^\n]*" libraries "${output}")
foreach(library ${libraries})
  if(NOT library MATCHES
     "^DLL Name: (Qt6(Core|Gui)|KERNEL32|msvcrt|libgcc_s_seh-1|libstdc\\+\\+-6|libwinpthread-1)\\.dll$")
    message(FATAL_ERROR "the module needs more than it may: ${library}")
  endif()
endforeach()
if(NOT libraries OR NOT output MATCHES "\\.qtmetadata")
  message(FATAL_ERROR "no libraries or no plug-in metadata found in ${MODULE}")
endif()
