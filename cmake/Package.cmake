# Debian packages, one of each component: scripts/package builds them.

set(library_package libvpath${PROJECT_VERSION_MAJOR})
set(debian_version ${PROJECT_VERSION}-1)

# Policy has its own mind about where these are.
set(CMAKE_INSTALL_DOCDIR share/doc/libvpath-dev)
set(VPATH_ZSH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)

# Packages bear the date of their sources, which the changelog has, not that of the day.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
    file(STRINGS ${PROJECT_SOURCE_DIR}/packaging/changelog.in date REGEX "^ -- " LIMIT_COUNT 1)
    string(REGEX REPLACE ".*>  " "" date "${date}")
    execute_process(COMMAND date -d "${date}" +%s OUTPUT_VARIABLE date
        OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(ENV{SOURCE_DATE_EPOCH} ${date})
endif()
set(CPACK_SOURCE_DATE_EPOCH $ENV{SOURCE_DATE_EPOCH})

# --- documents that every package brings

set(debian_dir ${PROJECT_BINARY_DIR}/debian)
configure_file(packaging/changelog.in ${debian_dir}/changelog.Debian @ONLY)
configure_file(CHANGELOG.md ${debian_dir}/changelog COPYONLY)
foreach(component library development command)
    set(package_overrides "")
    if(component STREQUAL library)
        set(package ${library_package})
        file(READ ${PROJECT_SOURCE_DIR}/packaging/lintian-overrides.library package_overrides)
        string(CONFIGURE "${package_overrides}" package_overrides @ONLY)
    elseif(component STREQUAL development)
        set(package libvpath-dev)
    else()
        set(package vpath)
    endif()
    install(FILES ${debian_dir}/changelog.Debian ${debian_dir}/changelog packaging/copyright
        DESTINATION share/doc/${package} COMPONENT ${component})
    configure_file(packaging/lintian-overrides.in ${debian_dir}/${package} @ONLY)
    install(FILES ${debian_dir}/${package}
        DESTINATION share/lintian/overrides COMPONENT ${component})
    string(TOUPPER ${component} COMPONENT)
    set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME ${package})
endforeach()

# --- what is said of them

set(about "libvpath keeps ordered lists of directories, and what those directories hold,
in memory, indexed by name, and answers where a name lies: files, and the
contents of private, class and package directories, in order of precedence. It
notices what changes on disk and tells listeners.

This package holds")
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "search paths of directories, searched by name
${about} the shared library, and libhostkit, the utility calls that
the library takes from its host and that a host may replace.")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "search paths of directories - development files
${about} the headers, the files for CMake and pkg-config, ready-made
callbacks over the real file system, examples and documents.")
set(CPACK_DEBIAN_COMMAND_DESCRIPTION "search paths of directories - command
${about} the command vpath, which answers from a shell where a name
lies, and why.")
# The general summary would be put in front of each.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_NAME} built using CMake")

set(CPACK_PACKAGE_CONTACT "libvpath developers <libvpath@example.org>")
set(CPACK_DEBIAN_PACKAGE_SOURCE vpath)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_COMMAND_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)

# --- what they need and offer

set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_COMPONENT_COMMAND_DEPENDS library)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "cmake, pkg-config")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA
    ${PROJECT_SOURCE_DIR}/packaging/triggers ${debian_dir}/symbols)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# --- how they are made

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library development command)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${debian_dir}/finish_staging.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/repack.cmake)
configure_file(packaging/finish_staging.cmake.in ${debian_dir}/finish_staging.cmake @ONLY)
include(CPack)
