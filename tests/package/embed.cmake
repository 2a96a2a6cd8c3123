# Builds a project that has the module as a part and runs it; without a core library it is
# configured alone. In: CONSUMER (its source; the program has the name of its folder), WORK,
# PROJECT_SOURCE, HOST_SDK (the project's core library), EXPECTED (what the program prints, | for a
# new line), BUILD_TYPE, CCACHE and CCACHE_FOLDER (see support.cmake).

include(${CMAKE_CURRENT_LIST_DIR}/support.cmake)
file(REMOVE_RECURSE ${WORK})
set(configure
    ${CMAKE_COMMAND} -S ${CONSUMER} -G Ninja -DCMAKE_BUILD_TYPE=${BUILD_TYPE}
    ${fast_build} -DFETCHCONTENT_SOURCE_DIR_OVTRACE=${PROJECT_SOURCE})
run(${configure} -B ${WORK}/standin)
run(${configure} -B ${WORK}/build -DHOST_SDK=${HOST_SDK})
foreach(build standin build)
  file(STRINGS ${WORK}/${build}/CMakeCache.txt tests REGEX "^OVTRACE_(BUILD_|INSTALL).*=ON$")
  if(tests)
    message(FATAL_ERROR "on in a subproject without being asked for: ${tests}")
  endif()
endforeach()
run(${CMAKE_COMMAND} --build ${WORK}/build)
get_filename_component(program ${CONSUMER} NAME)
run(${WORK}/build/${program})
expect_output("${EXPECTED}")
run(${CMAKE_COMMAND} --install ${WORK}/build --prefix ${WORK}/prefix)
file(GLOB_RECURSE installed RELATIVE ${WORK}/prefix ${WORK}/prefix/*)
if(installed MATCHES "ovtrace|OvTrace|CPack")
  message(FATAL_ERROR "installed with the project around it: ${installed}")
endif()
