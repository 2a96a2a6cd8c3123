# What the module is made of: an object library a folder, and ovtrace_objects, which brings all of
# them to the module, the tests, the benchmarks and the fuzzers.

add_library(ovtrace_objects INTERFACE)
target_compile_definitions(ovtrace_objects INTERFACE OVTRACE_STATIC)

add_library(ovtrace_host_check OBJECT ${PROJECT_SOURCE_DIR}/plugin/hostcheck.cpp)
target_link_libraries(ovtrace_host_check PRIVATE OvHost::core Qt6::Core ovtrace_flags)

# ovtrace_add_objects(SOURCE...): the sources of the current folder as ovtrace_<folder>_objects, a
# part of the module. What it includes from another such folder it names by
# target_link_libraries(ovtrace_<folder>_objects PUBLIC ovtrace_<other>_objects).
function(ovtrace_add_objects)
  cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME folder)
  set(objects ovtrace_${folder}_objects)
  add_library(${objects} OBJECT ${ARGN})
  target_include_directories(${objects} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_compile_definitions(${objects} PRIVATE OVTRACE_BUILDING)
  target_link_libraries(
    ${objects}
    PUBLIC OvHost::core Qt6::Core Qt6::Gui
    PRIVATE ovtrace_flags)
  if(OVTRACE_BUILD_FUZZ)
    target_compile_options(${objects} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
  # What a host library lacks is said in a sentence before other sources fail on it.
  add_dependencies(${objects} ovtrace_host_check)
  # Object files reach those alone that link them directly, so they are named as sources, too.
  target_link_libraries(ovtrace_objects INTERFACE ${objects})
  target_sources(ovtrace_objects INTERFACE $<TARGET_OBJECTS:${objects}>)
endfunction()
