# Install rules: the libraries with their headers, a CMake package
# (find_package(database)) and a pkg-config file. The shared libraries are the
# component "runtime", everything a program needs to build against them
# "development" (see cmake/packaging.cmake for the packages they make).
include(CMakePackageConfigHelpers)

set(DATABASE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/database)

install(TARGETS database qjsonserializer classlogs
    EXPORT databaseTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
    INCLUDES DESTINATION ${DATABASE_INSTALL_INCLUDEDIR})

foreach(folder database platform)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder}/
        DESTINATION ${DATABASE_INSTALL_INCLUDEDIR}/${folder}
        COMPONENT development
        FILES_MATCHING PATTERN "*.h")
endforeach()
# The generated export headers.
install(DIRECTORY ${PROJECT_BINARY_DIR}/include/
    DESTINATION ${DATABASE_INSTALL_INCLUDEDIR}
    COMPONENT development
    FILES_MATCHING PATTERN "*.h")

install(EXPORT databaseTargets
    NAMESPACE database::
    DESTINATION ${DATABASE_CMAKE_DIR}
    COMPONENT development)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/databaseConfig.cmake.in
    ${PROJECT_BINARY_DIR}/databaseConfig.cmake
    INSTALL_DESTINATION ${DATABASE_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/databaseConfigVersion.cmake
    VERSION ${PROJECT_VERSION}
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/databaseConfig.cmake ${PROJECT_BINARY_DIR}/databaseConfigVersion.cmake
    DESTINATION ${DATABASE_CMAKE_DIR}
    COMPONENT development)

configure_file(${PROJECT_SOURCE_DIR}/cmake/database.pc.in ${PROJECT_BINARY_DIR}/database.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/database.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)
