# Which host library is this? Polylines are the host's own classes, compiled into the module: another
# library with other classes would crash the host.

# ovhost_fingerprint(OUTPUT): a hash of the headers of OvHost::core that the module is compiled with,
# and of the host's headers that those include.
function(ovhost_fingerprint output)
  get_target_property(folders OvHost::core INTERFACE_INCLUDE_DIRECTORIES)
  # The stand-in's folders in its build tree.
  string(REGEX REPLACE "\\$<INSTALL_INTERFACE:[^>]*>" "" folders "${folders}")
  string(REGEX REPLACE "\\$<BUILD_INTERFACE:([^>]*)>" "\\1" folders "${folders}")
  set(names ovvector.h ovpolyline.h ovplugininterface.h)
  set(seen "")
  set(hashes "")
  while(names)
    list(POP_FRONT names name)
    if(name IN_LIST seen)
      continue()
    endif()
    list(APPEND seen ${name})
    unset(header)
    find_file(header ${name} PATHS ${folders} NO_DEFAULT_PATH NO_CACHE NO_CMAKE_FIND_ROOT_PATH)
    if(header)
      file(STRINGS ${header} lines)
      string(SHA256 hash "${lines}")
      list(APPEND hashes ${hash})
      string(REGEX MATCHALL "# *include *[<\"][^>\"]+" includes "${lines}")
      list(TRANSFORM includes REPLACE ".*[<\"]" "")
      list(FILTER includes INCLUDE REGEX "^ov[^/]*$")
      list(APPEND names ${includes})
    endif()
  endwhile()
  string(SHA256 fingerprint "${hashes}")
  set(${output} ${fingerprint} PARENT_SCOPE)
endfunction()
