# What is installed beside the targets: the CMake package, in the build tree as well; Debian packages.

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/OvTrace)
if(OVTRACE_HOST_SDK)
  set(host_package ${OvHost_DIR})
else()
  set(host_package "\${CMAKE_CURRENT_LIST_DIR}/../OvHost")
  export(EXPORT OvHostTargets NAMESPACE OvHost:: FILE cmake/OvHost/OvHostTargets.cmake)
endif()
configure_package_config_file(cmake/OvTraceConfig.cmake.in cmake/OvTrace/OvTraceConfig.cmake
                              INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(cmake/OvTrace/OvTraceConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
configure_file(cmake/OvHostFingerprint.cmake cmake/OvTrace/OvHostFingerprint.cmake COPYONLY)
export(EXPORT OvTraceTargets NAMESPACE OvTrace:: FILE cmake/OvTrace/OvTraceTargets.cmake)
install(FILES ${PROJECT_BINARY_DIR}/cmake/OvTrace/OvTraceConfig.cmake
              ${PROJECT_BINARY_DIR}/cmake/OvTrace/OvTraceConfigVersion.cmake
              ${PROJECT_BINARY_DIR}/cmake/OvTrace/OvHostFingerprint.cmake
        DESTINATION ${package_folder})

# Debian packages: cpack --config build/release/CPackConfig.cmake. A window is a component, and a
# package, of its own.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ovtrace)
set(CPACK_PACKAGE_VENDOR "KORVID")
set(CPACK_PACKAGE_CONTACT "KORVID <trace@korvid.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL ovtrace)
set(CPACK_DEBIAN_OVTRACE_PACKAGE_NAME ovtrace)
# TIFF, WebP, TGA and others.
set(CPACK_DEBIAN_OVTRACE_PACKAGE_DEPENDS qt6-image-formats-plugins)
if(TARGET ovtraceview)
  list(APPEND CPACK_COMPONENTS_ALL ovtraceview)
  set(CPACK_DEBIAN_OVTRACEVIEW_PACKAGE_NAME ovtraceview)
  set(CPACK_DEBIAN_OVTRACEVIEW_PACKAGE_DEPENDS "ovtrace (= ${PROJECT_VERSION})")
  set(CPACK_COMPONENT_OVTRACEVIEW_DESCRIPTION "Window of the bitmap vectorization")
endif()
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${OVTRACE_EDITION_URL})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
include(CPack)
