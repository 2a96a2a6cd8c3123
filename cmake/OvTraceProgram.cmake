# Where the module lies, seen from a program that is linked to it: in the build tree, and installed.
# One search path in the program serves both.

# ovtrace_add_search_path(PROGRAM)
function(ovtrace_add_search_path program)
  if(WIN32)
    return()
  endif()
  file(RELATIVE_PATH installed ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set(folders ../lib ${installed})
  list(REMOVE_DUPLICATES folders)
  list(TRANSFORM folders PREPEND "$ORIGIN/")
  set_target_properties(
    ${program}
    PROPERTIES BUILD_WITH_INSTALL_RPATH ON
               INSTALL_RPATH "${folders}"
               INSTALL_RPATH_USE_LINK_PATH ON)
endfunction()
