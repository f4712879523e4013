# Run by CPack with the packages that it has made. It gives those with shared libraries scripts that
# call ldconfig, for which there is a trigger; and the times of folders differ from run to run, which
# dpkg-deb cuts to SOURCE_DATE_EPOCH.
set(ENV{SOURCE_DATE_EPOCH} ${CPACK_SOURCE_DATE_EPOCH})
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    set(tree ${package}.tree)
    file(REMOVE_RECURSE ${tree})
    execute_process(COMMAND dpkg-deb --raw-extract ${package} ${tree} COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE ${tree}/DEBIAN/postinst ${tree}/DEBIAN/postrm)
    execute_process(COMMAND dpkg-deb --root-owner-group -Zxz --build ${tree} ${package}
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE_RECURSE ${tree})
endforeach()
