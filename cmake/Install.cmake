include(CMakePackageConfigHelpers)

set(cmake_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vpath)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(TARGETS hostkit EXPORT hostkitTargets)
install(TARGETS vpath_lib posix_host EXPORT vpathTargets)
install(FILES docs/man/libvpath.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3)
install(FILES docs/man/vpath-cache.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5)
if(TARGET vpath)
    install(TARGETS vpath)
    install(FILES ${PROJECT_BINARY_DIR}/man/vpath.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES ${PROJECT_BINARY_DIR}/completions/vpath
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(FILES ${PROJECT_BINARY_DIR}/completions/_vpath
        DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
    install(FILES ${PROJECT_BINARY_DIR}/completions/vpath.fish
        DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
    install(FILES share/vpath/schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/vpath)
endif()

install(
    DIRECTORY include/ hostkit/include/ posix/include/
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")

# find_package(vpath CONFIG) gives vpath::vpath, vpath::posix_host and hostkit::hostkit.
install(EXPORT hostkitTargets NAMESPACE hostkit:: DESTINATION ${cmake_package_dir})
install(EXPORT vpathTargets NAMESPACE vpath:: DESTINATION ${cmake_package_dir})
configure_package_config_file(
    cmake/vpathConfig.cmake.in ${PROJECT_BINARY_DIR}/vpathConfig.cmake
    INSTALL_DESTINATION ${cmake_package_dir}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/vpathConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(
    FILES
        ${PROJECT_BINARY_DIR}/vpathConfig.cmake
        ${PROJECT_BINARY_DIR}/vpathConfigVersion.cmake
    DESTINATION ${cmake_package_dir})

# The modules find their prefix from where they lie, so that the tree can be installed with
# `cmake --install --prefix` and moved.
file(RELATIVE_PATH prefix_from_pkgconfig
    ${CMAKE_INSTALL_PREFIX}/${pkgconfig_dir} ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig "${prefix_from_pkgconfig}")
foreach(module hostkit vpath vpath-posix-host)
    configure_file(cmake/${module}.pc.in ${PROJECT_BINARY_DIR}/${module}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${module}.pc DESTINATION ${pkgconfig_dir})
endforeach()
