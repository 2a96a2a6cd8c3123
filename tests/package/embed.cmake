# Builds a project that has the module as a part and runs it.
# In: CONSUMER (its source; the program has the name of its folder), WORK, ARGUMENTS (for CMake),
#     EXPECTED (what the program prints, | for a new line), BUILD_TYPE.

include(${CMAKE_CURRENT_LIST_DIR}/support.cmake)
file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} -S ${CONSUMER} -B ${WORK}/build -G Ninja -DCMAKE_BUILD_TYPE=${BUILD_TYPE}
    ${ARGUMENTS})
file(STRINGS ${WORK}/build/CMakeCache.txt tests REGEX "^OVTRACE_(BUILD_|INSTALL).*=ON$")
if(tests)
  message(FATAL_ERROR "on in a subproject without being asked for: ${tests}")
endif()
run(${CMAKE_COMMAND} --build ${WORK}/build)
get_filename_component(program ${CONSUMER} NAME)
run(${WORK}/build/${program})
expect_output("${EXPECTED}")
run(${CMAKE_COMMAND} --install ${WORK}/build --prefix ${WORK}/prefix)
file(GLOB_RECURSE installed RELATIVE ${WORK}/prefix ${WORK}/prefix/*)
if(installed MATCHES "ovtrace|OvTrace|CPack")
  message(FATAL_ERROR "installed with the project around it: ${installed}")
endif()
