# The installed package goes with the host library that it was built with, or not at all.
# In: PROJECT_BUILD (with the stand-in), PROJECT_SOURCE, HOST_SDK (another library), CONSUMER, WORK,
#     EXPECTED, BUILD_TYPE.

include(${CMAKE_CURRENT_LIST_DIR}/support.cmake)
file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${PROJECT_BUILD} --prefix ${WORK}/prefix)
set(configure ${CMAKE_COMMAND} -S ${CONSUMER} -G Ninja -DCMAKE_BUILD_TYPE=${BUILD_TYPE})

# Another library on the search path, even in front, is not taken.
set(ENV{CMAKE_PREFIX_PATH} ${HOST_SDK}:${WORK}/prefix)
run(${configure} -B ${WORK}/other)
file(STRINGS ${WORK}/other/CMakeCache.txt host REGEX "^OvHost_DIR")
if(NOT host MATCHES "${WORK}/prefix/")
  message(FATAL_ERROR "not the host library that the module was built with: ${host}")
endif()
run(${CMAKE_COMMAND} --build ${WORK}/other)
run(${WORK}/other/consumer)
expect_output("${EXPECTED}")

set(ENV{CMAKE_PREFIX_PATH} ${WORK}/prefix)

# One that is there already, or that was asked for by name, is refused.
set(sentence "was built with another host library than the one found")
run_failing(${sentence} ${configure} -B ${WORK}/named
            -DOvHost_DIR=${HOST_SDK}/lib/cmake/OvHost)
run_failing(${sentence} ${configure} -B ${WORK}/before
            -DCMAKE_PROJECT_INCLUDE=${HOST_SDK}/before.cmake)

# The build tree is a package, too.
run(${configure} -B ${WORK}/tree -DOvTrace_DIR=${PROJECT_BUILD}/cmake/OvTrace)
run(${CMAKE_COMMAND} --build ${WORK}/tree)
run(${WORK}/tree/consumer)
expect_output("${EXPECTED}")

# What needs the stand-in says so when it is configured.
foreach(part TOOLS TESTS)
  run_failing("OVTRACE_BUILD_${part} needs the stand-in for the host library" ${CMAKE_COMMAND}
              -S ${PROJECT_SOURCE} -B ${WORK}/${part} -G Ninja -DOVTRACE_HOST_SDK=${HOST_SDK}
              -DOVTRACE_BUILD_TOOLS=OFF -DOVTRACE_BUILD_TESTS=OFF -DOVTRACE_BUILD_${part}=ON)
endforeach()
