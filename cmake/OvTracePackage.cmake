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

# A Debian package of the module and the program: cpack --config build/release/CPackConfig.cmake.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ovtrace)
set(CPACK_PACKAGE_VENDOR "KORVID")
set(CPACK_PACKAGE_CONTACT "KORVID <trace@korvid.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# TIFF, WebP, TGA and others.
set(CPACK_DEBIAN_PACKAGE_DEPENDS qt6-image-formats-plugins)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${OVTRACE_EDITION_URL})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
include(CPack)
