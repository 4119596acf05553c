# Debian packages made by cpack from the install rules, one per component:
#   libdatabase4     the shared libraries (component deb_runtime)
#   libdatabase-dev  headers, CMake package, pkg-config file (deb_development)
#   dbhost           the host with its systemd unit, user and configuration
# Build them with ./dev.sh package, or: cpack --config build/CPackConfig.cmake
# The packages install under /usr whatever CMAKE_INSTALL_PREFIX the build was
# configured with: their library components are laid out for /usr by
# cmake/install.cmake, and the host's binary goes to bin under either prefix.

set(DATABASE_PACKAGING_DIR ${PROJECT_SOURCE_DIR}/packaging/dbhost)

# The service's files have fixed places on the system. Kept out of a plain
# `cmake --install`, which would otherwise write into /etc whatever the prefix.
install(FILES ${DATABASE_PACKAGING_DIR}/dbhost.service
    DESTINATION /usr/lib/systemd/system COMPONENT dbhost EXCLUDE_FROM_ALL)
install(FILES ${DATABASE_PACKAGING_DIR}/sysusers.conf
    DESTINATION /usr/lib/sysusers.d RENAME dbhost.conf COMPONENT dbhost EXCLUDE_FROM_ALL)
install(FILES ${DATABASE_PACKAGING_DIR}/dbhost.conf
    DESTINATION /etc/dbhost COMPONENT dbhost EXCLUDE_FROM_ALL)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME database)
set(CPACK_PACKAGE_VENDOR "Database maintainers")
set(CPACK_PACKAGE_CONTACT "Database maintainers <maintainers@example.com>")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://example.com/database")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX ${DATABASE_PACKAGE_PREFIX})
# Debian ships stripped binaries; the debug information stays in the build folder.
set(CPACK_STRIP_FILES ON)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL deb_runtime deb_development dbhost)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# Dependencies on other packages come from the binaries' needs (dpkg-shlibdeps);
# the ones between our packages from the component dependencies, at the same
# version. dpkg-shlibdeps must find our own libraries to read them: cpack runs
# it inside each component's staging folder, beside the one of deb_runtime.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ../deb_runtime${CPACK_PACKAGING_INSTALL_PREFIX}/${DATABASE_PACKAGE_LIBDIR})
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
# A shlibs file in libdatabase4, so that packages built against it depend on it.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

string(CONCAT CPACK_COMPONENT_DEB_RUNTIME_DESCRIPTION
    "configuration and live state of a KNX building-automation supervisor\n"
    "The library holds the configuration, the live state and the presence\n"
    "simulation of an installation, and keeps the copies of the processes of\n"
    "one installation in step. This package holds the shared libraries.")
set(CPACK_DEBIAN_DEB_RUNTIME_PACKAGE_NAME libdatabase${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_DEB_RUNTIME_PACKAGE_SECTION libs)

string(CONCAT CPACK_COMPONENT_DEB_DEVELOPMENT_DESCRIPTION
    "configuration and live state of a KNX supervisor - development files\n"
    "Headers, the CMake package (find_package(database)) and the pkg-config\n"
    "file for programs that link the library.")
set(CPACK_COMPONENT_DEB_DEVELOPMENT_DEPENDS deb_runtime)
set(CPACK_DEBIAN_DEB_DEVELOPMENT_PACKAGE_NAME libdatabase-dev)
set(CPACK_DEBIAN_DEB_DEVELOPMENT_PACKAGE_SECTION libdevel)
# What databaseConfig.cmake and database.pc look for.
set(CPACK_DEBIAN_DEB_DEVELOPMENT_PACKAGE_DEPENDS "qt6-base-dev (>= 6.4), qt6-5compat-dev (>= 6.4), libspdlog-dev")

string(CONCAT CPACK_COMPONENT_DBHOST_DESCRIPTION
    "database host service of a KNX building-automation supervisor\n"
    "dbhost keeps the databases of one process in /var/lib/dbhost and meets\n"
    "the other processes of the installation at an MQTT broker, as the server\n"
    "or as a client. The broker and the role are set in /etc/dbhost/dbhost.conf.")
set(CPACK_COMPONENT_DBHOST_DEPENDS deb_runtime)
set(CPACK_DEBIAN_DBHOST_PACKAGE_NAME dbhost)
set(CPACK_DEBIAN_DBHOST_PACKAGE_SECTION net)
# postinst makes the user with systemd-sysusers, or adduser without systemd.
set(CPACK_DEBIAN_DBHOST_PACKAGE_DEPENDS "adduser | systemd")
set(CPACK_DEBIAN_DBHOST_PACKAGE_SUGGESTS mosquitto)
# conffiles: dpkg keeps the administrator's changes to the configuration.
set(CPACK_DEBIAN_DBHOST_PACKAGE_CONTROL_EXTRA
    ${DATABASE_PACKAGING_DIR}/conffiles
    ${DATABASE_PACKAGING_DIR}/postinst
    ${DATABASE_PACKAGING_DIR}/prerm
    ${DATABASE_PACKAGING_DIR}/postrm)

include(CPack)
