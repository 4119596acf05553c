# Install rules: the libraries with their headers, a CMake package
# (find_package(database)) and a pkg-config file.
include(CMakePackageConfigHelpers)

set(DATABASE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/database)

install(TARGETS database qjsonserializer classlogs
    EXPORT databaseTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    INCLUDES DESTINATION ${DATABASE_INSTALL_INCLUDEDIR})

foreach(folder database platform)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder}/
        DESTINATION ${DATABASE_INSTALL_INCLUDEDIR}/${folder}
        FILES_MATCHING PATTERN "*.h")
endforeach()
# The generated export headers.
install(DIRECTORY ${PROJECT_BINARY_DIR}/include/
    DESTINATION ${DATABASE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")

install(EXPORT databaseTargets
    NAMESPACE database::
    DESTINATION ${DATABASE_CMAKE_DIR})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/databaseConfig.cmake.in
    ${PROJECT_BINARY_DIR}/databaseConfig.cmake
    INSTALL_DESTINATION ${DATABASE_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/databaseConfigVersion.cmake
    VERSION ${PROJECT_VERSION}
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/databaseConfig.cmake ${PROJECT_BINARY_DIR}/databaseConfigVersion.cmake
    DESTINATION ${DATABASE_CMAKE_DIR})

configure_file(${PROJECT_SOURCE_DIR}/cmake/database.pc.in ${PROJECT_BINARY_DIR}/database.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/database.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
