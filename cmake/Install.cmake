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
file(RELATIVE_PATH bin_to_kit /${CMAKE_INSTALL_BINDIR} /${kit})
find_program(HELP2MAN help2man REQUIRED)
function(aux_install_kit_program program source description)
    set(link ${made}/${program})
    file(CREATE_LINK ${bin_to_kit}/${source} ${link} SYMBOLIC)
    set(manual ${CMAKE_CURRENT_SOURCE_DIR}/kit/${program}.man)
    add_custom_command(OUTPUT ${link}.1
        COMMAND ${HELP2MAN} --no-info --name ${description} --include ${manual} --output ${link}.1
            --version-string "${program} ${PROJECT_VERSION}" ./${source}
        WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/kit # help2man takes no path with a blank
        DEPENDS kit/${source} ${manual} VERBATIM)
    add_custom_target(${program}-manual ALL DEPENDS ${link}.1)
    install(FILES ${link} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Kit)
    install(FILES ${link}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Kit)
endfunction()
aux_install_kit_program(aux-sandbox sandbox "run a program in a private world, that of a terminal")
aux_install_kit_program(aux-terminal terminal/boot "boot a virtual terminal with a program in it")
write_basic_package_version_file(${made}/aux-kit-config-version.cmake
    COMPATIBILITY SameMajorVersion ARCH_INDEPENDENT)
install(FILES ${made}/aux-kit-config-version.cmake DESTINATION ${kit} COMPONENT Kit)
install(DIRECTORY kit/ DESTINATION ${kit} COMPONENT Kit USE_SOURCE_PERMISSIONS
    PATTERN crashes EXCLUDE PATTERN "*.man" EXCLUDE)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/libaux-kit COMPONENT Kit)
