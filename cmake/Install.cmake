include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${AUX_NAME})
set(made ${PROJECT_BINARY_DIR}/package)

install(TARGETS aux EXPORT ${AUX_NAME}-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Devel)
install(DIRECTORY include/aux ${PROJECT_BINARY_DIR}/include/aux
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT Devel FILES_MATCHING PATTERN "*.h")
install(EXPORT ${AUX_NAME}-targets NAMESPACE ${AUX_NAME}:: DESTINATION ${package_dir} COMPONENT Devel)

configure_package_config_file(cmake/config.cmake.in ${made}/${AUX_NAME}-config.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${made}/${AUX_NAME}-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${made}/${AUX_NAME}-config.cmake ${made}/${AUX_NAME}-config-version.cmake
    DESTINATION ${package_dir} COMPONENT Devel)

file(RELATIVE_PATH pc_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/package.pc.in ${made}/lib${AUX_NAME}.pc @ONLY)
install(FILES ${made}/lib${AUX_NAME}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Devel)

# The kit stays together as it is, with its programs in the way of everybody.
set(kit ${CMAKE_INSTALL_DATADIR}/aux-kit) # also where CMake looks for the package
install(DIRECTORY kit/ DESTINATION ${kit} COMPONENT Kit USE_SOURCE_PERMISSIONS PATTERN crashes EXCLUDE)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libaux-kit COMPONENT Kit)
file(RELATIVE_PATH bin_to_kit /${CMAKE_INSTALL_BINDIR} /${kit})
foreach(program sandbox)
    file(CREATE_LINK ${bin_to_kit}/${program} ${made}/aux-${program} SYMBOLIC)
    install(FILES ${made}/aux-${program} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Kit)
endforeach()
