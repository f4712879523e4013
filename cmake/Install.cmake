# What is installed. Components: library (what a program needs to run), development (what it needs
# to be built), command (vpath). cmake/Package.cmake makes a package of each.
include(CMakePackageConfigHelpers)

set(cmake_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vpath)
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(NOT VPATH_ZSH_COMPLETIONS)
    set(VPATH_ZSH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
endif()

foreach(export hostkit vpath)
    if(export STREQUAL hostkit)
        set(targets hostkit)
    else()
        set(targets vpath_lib posix_host)
    endif()
    install(TARGETS ${targets} EXPORT ${export}Targets
        LIBRARY COMPONENT library NAMELINK_COMPONENT development
        ARCHIVE COMPONENT development)
    install(EXPORT ${export}Targets NAMESPACE ${export}::
        DESTINATION ${cmake_package_dir} COMPONENT development)
endforeach()

# The pages say of which version they speak; that of the command is made with it.
configure_file(docs/man/libvpath.3 ${PROJECT_BINARY_DIR}/man/libvpath.3 @ONLY)
configure_file(docs/man/vpath-cache.5 ${PROJECT_BINARY_DIR}/man/vpath-cache.5 @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/man/libvpath.3
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/man/vpath-cache.5
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man5 COMPONENT development)
if(TARGET vpath)
    install(TARGETS vpath COMPONENT command)
    install(FILES ${PROJECT_BINARY_DIR}/man/vpath.1
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT command)
    install(FILES ${PROJECT_BINARY_DIR}/completions/vpath
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT command)
    install(FILES ${PROJECT_BINARY_DIR}/completions/_vpath
        DESTINATION ${VPATH_ZSH_COMPLETIONS} COMPONENT command)
    install(FILES ${PROJECT_BINARY_DIR}/completions/vpath.fish
        DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT command)
    install(FILES share/vpath/schema.json
        DESTINATION ${CMAKE_INSTALL_DATADIR}/vpath COMPONENT command)
endif()

install(
    DIRECTORY include/ hostkit/include/ posix/include/
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
    FILES_MATCHING PATTERN "*.h")

install(FILES docs/embedding.md docs/searching.md docs/cache-format.md
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY examples
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development
    PATTERN "*.sh" PERMISSIONS
        OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# find_package(vpath CONFIG) gives vpath::vpath, vpath::posix_host and hostkit::hostkit.
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
    DESTINATION ${cmake_package_dir} COMPONENT development)

# The modules find their prefix from where they lie, so that the tree can be installed with
# `cmake --install --prefix` and moved.
file(RELATIVE_PATH prefix_from_pkgconfig
    ${CMAKE_INSTALL_PREFIX}/${pkgconfig_dir} ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig "${prefix_from_pkgconfig}")
foreach(module hostkit vpath vpath-posix-host)
    configure_file(cmake/${module}.pc.in ${PROJECT_BINARY_DIR}/${module}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${module}.pc
        DESTINATION ${pkgconfig_dir} COMPONENT development)
endforeach()
