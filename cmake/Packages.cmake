# Three Debian packages, made by `cpack -G DEB` in the build tree of the preset "package".

set(ORVEL_MAINTAINER "Orvel developers <orvel@example.org>" CACHE STRING "Who answers for the packages")

set(CPACK_PACKAGE_NAME orvel)
set(CPACK_PACKAGE_CONTACT ${ORVEL_MAINTAINER})
# Each package has a summary of its own, as the first line of its description.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL Runtime Development Desk)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The libraries of the other package lie in the build tree.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY} ${ORVEL_PLUGIN_DIR})

set(library liborvel${ORVEL_SOVERSION})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${library})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "protocols of survey processing runs
A plug-in library for Qt applications that process survey data. It keeps every
line that a processing run writes, tied to the points and sections that the
line mentions, and shows the protocol of a run or of an item as an HTML page.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/package/triggers)
file(WRITE ${PROJECT_BINARY_DIR}/package/triggers "activate-noawait ldconfig\n")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liborvel-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${library} (= ${PROJECT_VERSION}), qtbase5-dev (>= 5.15), libboost-dev (>= 1.74)")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "protocols of survey processing runs: development files
Headers, CMake package and pkg-config file for applications that keep
protocols of their processing runs with Orvel.")

set(CPACK_DEBIAN_DESK_PACKAGE_NAME orvel-desk)
set(CPACK_DEBIAN_DESK_PACKAGE_SECTION science)
set(CPACK_DEBIAN_DESK_PACKAGE_DEPENDS "${library} (= ${PROJECT_VERSION}), qttranslations5-l10n")
set(CPACK_DEBIAN_DESK_PACKAGE_RECOMMENDS "xdg-utils")
set(CPACK_DEBIAN_DESK_DESCRIPTION "levelling desk: adjusts networks and keeps protocols
Reads a levelling network, checks its lines and loops against tolerances,
adjusts it by least squares and searches it for gross errors, with a window
or on the command line. Every run keeps a protocol whose lines lead back to
the points and sections.")

# The form of the list of changes that Debian asks for; not part of an ordinary installation.
string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${PROJECT_BINARY_DIR}/package/changelog
    "orvel (${PROJECT_VERSION}) unstable; urgency=medium\n\n  * Release ${PROJECT_VERSION}; CHANGELOG.md of the sources tells the changes.\n\n -- ${ORVEL_MAINTAINER}  ${now}\n")
execute_process(COMMAND gzip --best --no-name --force ${PROJECT_BINARY_DIR}/package/changelog)
foreach(component Runtime Development Desk)
    string(TOUPPER ${component} upper)
    install(FILES ${PROJECT_BINARY_DIR}/package/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}
        COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()

include(CPack)
