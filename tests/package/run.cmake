# Installs the module, builds the consumer project against it and runs it.
# In: PROJECT_BUILD (build tree to install) or PROJECT_SOURCE and HOST_SDK (built here first),
#     WORK (folder to work in), CONSUMER (its source), FLAGS (compiler flags), BUILD_TYPE.

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output
                  ERROR_VARIABLE output)
  if(status)
    message(FATAL_ERROR "${ARGN}\nfailed:\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK}/prefix ${WORK}/consumer)
if(HOST_SDK)
  set(PROJECT_BUILD ${WORK}/build)
  run(${CMAKE_COMMAND} -S ${PROJECT_SOURCE} -B ${PROJECT_BUILD} -G Ninja
      -DCMAKE_BUILD_TYPE=${BUILD_TYPE} -DOVTRACE_HOST_SDK=${HOST_SDK} -DOVTRACE_BUILD_TOOLS=OFF
      -DOVTRACE_BUILD_TESTS=OFF)
  run(${CMAKE_COMMAND} --build ${PROJECT_BUILD})
endif()
run(${CMAKE_COMMAND} --install ${PROJECT_BUILD} --prefix ${WORK}/prefix)
if(HOST_SDK AND EXISTS ${WORK}/prefix/include/ovhost)
  message(FATAL_ERROR "the stand-in was installed beside a real host library")
endif()
run(${CMAKE_COMMAND} -S ${CONSUMER} -B ${WORK}/consumer -G Ninja -DCMAKE_BUILD_TYPE=${BUILD_TYPE}
    "-DCMAKE_PREFIX_PATH=${WORK}/prefix;${HOST_SDK}" "-DCMAKE_CXX_FLAGS=${FLAGS}")
run(${CMAKE_COMMAND} --build ${WORK}/consumer)
run(${WORK}/consumer/consumer)
if(NOT output STREQUAL "2 outlines, end 8.5\n")
  message(FATAL_ERROR "the consumer printed: ${output}")
endif()
