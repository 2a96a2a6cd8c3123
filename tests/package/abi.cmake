# Compares the interface that programs are linked to with that of the last release: a change that
# breaks them must come with another SONAME. OVTRACE_UPDATE_ABI=1 keeps it for a new release.
# In: MODULE (its exported functions with debug information), PROJECT_BUILD (to install from), ABIDW,
#     ABIDIFF, RELEASED (the last release's interface, abi.xml in an archive), WORK.

include(${CMAKE_CURRENT_LIST_DIR}/support.cmake)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK}/now)
# What other headers than the installed ones define is left out as far as can be.
run(${CMAKE_COMMAND} --install ${PROJECT_BUILD} --prefix ${WORK}/prefix)
run(${ABIDW} --no-show-locs --no-corpus-path --no-comp-dir-path --exported-interfaces-only
    --no-elf-needed --no-parameter-names --headers-dir ${WORK}/prefix/include
    --drop-private-types --out-file ${WORK}/now/abi.xml ${MODULE})
if("$ENV{OVTRACE_UPDATE_ABI}")
  run(${CMAKE_COMMAND} -E chdir ${WORK}/now ${CMAKE_COMMAND} -E tar cJf ${RELEASED} abi.xml)
endif()
file(ARCHIVE_EXTRACT INPUT ${RELEASED} DESTINATION ${WORK}/released)

# compare(RELEASED): abidiff's status, 0 when nothing that a program uses has changed or gone.
function(compare released)
  execute_process(COMMAND ${ABIDIFF} --no-added-syms ${released} ${WORK}/now/abi.xml
                  RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  set(status ${status} PARENT_SCOPE)
  set(output "${output}" PARENT_SCOPE)
endfunction()
compare(${WORK}/released/abi.xml)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "not the interface of the last release (status ${status}):\n${output}")
endif()

# expect_seen(OLD NEW): the comparison finds fault with a release that had NEW for OLD.
function(expect_seen old new)
  file(READ ${WORK}/now/abi.xml released)
  string(REPLACE "${old}" "${new}" changed "${released}")
  if(changed STREQUAL released)
    message(FATAL_ERROR "the interface has no ${old}")
  endif()
  file(WRITE ${WORK}/changed.xml "${changed}")
  compare(${WORK}/changed.xml)
  if(status EQUAL 0)
    message(FATAL_ERROR "the comparison does not see ${new} in place of ${old}")
  endif()
endfunction()
expect_seen("_ZN13OvTraceBitmap9setOptionERK7QStringd" "_ZN13OvTraceBitmap9putOptionERK7QStringd")
expect_seen("name='OvTraceBitmap' size-in-bits='" "name='OvTraceBitmap' size-in-bits='9")
