include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/aux)

install(TARGETS aux EXPORT aux-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Devel)
install(DIRECTORY include/aux ${PROJECT_BINARY_DIR}/include/aux
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT Devel FILES_MATCHING PATTERN "*.h")
install(EXPORT aux-targets NAMESPACE aux:: DESTINATION ${package_dir} COMPONENT Devel)

configure_package_config_file(cmake/aux-config.cmake.in ${PROJECT_BINARY_DIR}/aux-config.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/aux-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/aux-config.cmake ${PROJECT_BINARY_DIR}/aux-config-version.cmake
    DESTINATION ${package_dir} COMPONENT Devel)

file(RELATIVE_PATH pc_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/libaux.pc.in ${PROJECT_BINARY_DIR}/libaux.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/libaux.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Devel)
