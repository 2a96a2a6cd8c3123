# Installs the module, builds the consumer project against it and runs it.
# In: PROJECT_BUILD (build tree to install) or PROJECT_SOURCE and HOST_SDK (built here first),
#     WORK (folder to work in), CONSUMER (its source: a project whose program has the name of its
#     folder), EXPECTED (what the program prints, | for a new line), FLAGS (compiler flags),
#     BUILD_TYPE, CCACHE and CCACHE_FOLDER (see support.cmake), PAGE (optional: a Markdown page from
#     which the source is taken first).

include(${CMAKE_CURRENT_LIST_DIR}/support.cmake)

file(REMOVE_RECURSE ${WORK}/prefix ${WORK}/consumer)
if(PAGE)
  run(${CMAKE_COMMAND} -DPAGE=${PAGE} -DOUTPUT=${CONSUMER} -P ${CMAKE_CURRENT_LIST_DIR}/extract.cmake)
endif()
get_filename_component(program ${CONSUMER} NAME)
if(HOST_SDK)
  set(PROJECT_BUILD ${WORK}/build)
  run(${CMAKE_COMMAND} -S ${PROJECT_SOURCE} -B ${PROJECT_BUILD} -G Ninja
      -DCMAKE_BUILD_TYPE=${BUILD_TYPE} ${fast_build} -DOVTRACE_HOST_SDK=${HOST_SDK}
      -DOVTRACE_BUILD_TOOLS=OFF -DOVTRACE_BUILD_TESTS=OFF)
  run(${CMAKE_COMMAND} --build ${PROJECT_BUILD})
endif()
run(${CMAKE_COMMAND} --install ${PROJECT_BUILD} --prefix ${WORK}/prefix)
if(HOST_SDK AND EXISTS ${WORK}/prefix/include/ovhost)
  message(FATAL_ERROR "the stand-in was installed beside a real host library")
endif()
run(${CMAKE_COMMAND} -S ${CONSUMER} -B ${WORK}/consumer -G Ninja -DCMAKE_BUILD_TYPE=${BUILD_TYPE}
    -DCMAKE_PREFIX_PATH=${WORK}/prefix -DOvHost_ROOT=${HOST_SDK} "-DCMAKE_CXX_FLAGS=${FLAGS}")
run(${CMAKE_COMMAND} --build ${WORK}/consumer)
run(${WORK}/consumer/${program})
expect_output("${EXPECTED}")
