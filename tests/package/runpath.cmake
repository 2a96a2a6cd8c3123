# No library is looked for in the current folder: the search path of each file of the build has no
# empty or relative entry. In: READELF, PATTERNS (of the files' names).

file(GLOB files ${PATTERNS})
set(paths 0)
foreach(file IN LISTS files)
  execute_process(COMMAND ${READELF} -d ${file} OUTPUT_VARIABLE output ERROR_QUIET)
  if(output MATCHES "\\((RUNPATH|RPATH)\\)[^\n]*\\[([^\n]*)\\]")
    math(EXPR paths "${paths} + 1")
    string(REPLACE ":" ";" folders "${CMAKE_MATCH_2}")
    if(folders STREQUAL "" OR folders MATCHES "(^|;)(;|$)" OR folders MATCHES "(^|;)[^/$;]")
      message(FATAL_ERROR "${file} has the search path [${CMAKE_MATCH_2}]")
    endif()
  endif()
endforeach()
if(paths EQUAL 0)
  message(FATAL_ERROR "none of the files has a search path: ${files}")
endif()
