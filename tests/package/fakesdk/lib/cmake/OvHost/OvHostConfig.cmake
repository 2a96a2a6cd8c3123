# The smallest core library that the module can be built against: the operations it calls, no more.
include(CMakeFindDependencyMacro)
find_dependency(Qt6 COMPONENTS Core)
if(NOT TARGET OvHost::core)
  add_library(OvHost::core INTERFACE IMPORTED)
  set_target_properties(
    OvHost::core PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${CMAKE_CURRENT_LIST_DIR}/../../../include"
                            INTERFACE_LINK_LIBRARIES Qt6::Core)
endif()
