# Install rules: the libraries with their headers, a CMake package
# (find_package(database)) and a pkg-config file.
#
# They come twice. The components runtime and development follow the configured
# CMAKE_INSTALL_PREFIX with GNUInstallDirs' folders for it: that is what a plain
# `cmake --install` writes. The Debian packages (cmake/packaging.cmake) always
# install under /usr, whatever prefix the build folder was given, so they have
# components of their own, deb_runtime and deb_development, laid out for /usr
# (Debian's multiarch library folder, database.pc naming /usr) and left out of a
# plain install. Only the library folder and the files that name it differ
# between the two; the headers and the binaries land alike.
include(CMakePackageConfigHelpers)

# The library folder GNUInstallDirs gives the prefix /usr on Debian.
if(CMAKE_LIBRARY_ARCHITECTURE)
    set(DATABASE_PACKAGE_LIBDIR lib/${CMAKE_LIBRARY_ARCHITECTURE})
else()
    set(DATABASE_PACKAGE_LIBDIR lib)
endif()
set(DATABASE_PACKAGE_PREFIX /usr)

# database_install_layout(<runtime component> <development component> <prefix> <libdir> [EXCLUDE_FROM_ALL])
function(database_install_layout runtime development prefix libdir)
    set(exclude ${ARGN})
    set(cmake_dir ${libdir}/cmake/database)
    set(staging ${PROJECT_BINARY_DIR}/install-${development})

    install(TARGETS database qjsonserializer classlogs
        EXPORT databaseTargets-${development}
        LIBRARY DESTINATION ${libdir} COMPONENT ${runtime} NAMELINK_COMPONENT ${development} ${exclude}
        ARCHIVE DESTINATION ${libdir} COMPONENT ${development} ${exclude}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${runtime} ${exclude}
        INCLUDES DESTINATION ${DATABASE_INSTALL_INCLUDEDIR})

    foreach(folder database platform)
        install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder}/
            DESTINATION ${DATABASE_INSTALL_INCLUDEDIR}/${folder}
            COMPONENT ${development} ${exclude}
            FILES_MATCHING PATTERN "*.h")
    endforeach()
    # The generated export headers.
    install(DIRECTORY ${PROJECT_BINARY_DIR}/include/
        DESTINATION ${DATABASE_INSTALL_INCLUDEDIR}
        COMPONENT ${development} ${exclude}
        FILES_MATCHING PATTERN "*.h")

    install(EXPORT databaseTargets-${development}
        FILE databaseTargets.cmake
        NAMESPACE database::
        DESTINATION ${cmake_dir}
        COMPONENT ${development} ${exclude})

    configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/databaseConfig.cmake.in
        ${staging}/databaseConfig.cmake
        INSTALL_DESTINATION ${cmake_dir})
    write_basic_package_version_file(${staging}/databaseConfigVersion.cmake
        VERSION ${PROJECT_VERSION}
        COMPATIBILITY SameMajorVersion)
    install(FILES ${staging}/databaseConfig.cmake ${staging}/databaseConfigVersion.cmake
        DESTINATION ${cmake_dir}
        COMPONENT ${development} ${exclude})

    # database.pc.in's names.
    set(DATABASE_PC_PREFIX ${prefix})
    set(DATABASE_PC_LIBDIR ${libdir})
    configure_file(${PROJECT_SOURCE_DIR}/cmake/database.pc.in ${staging}/database.pc @ONLY)
    install(FILES ${staging}/database.pc DESTINATION ${libdir}/pkgconfig
        COMPONENT ${development} ${exclude})
endfunction()

database_install_layout(runtime development ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_LIBDIR})
database_install_layout(deb_runtime deb_development ${DATABASE_PACKAGE_PREFIX} ${DATABASE_PACKAGE_LIBDIR}
    EXCLUDE_FROM_ALL)
