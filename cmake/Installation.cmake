# What is installed, in three components: Runtime (the libraries with their data), Development (what a host is built
# with) and Desk (the programs). The programs' files are named where they are built.

include(CMakePackageConfigHelpers)

set(packageFolder ${CMAKE_INSTALL_LIBDIR}/cmake/Orvel)
set(headerFolder ${CMAKE_INSTALL_INCLUDEDIR}/orvel)
set(generatedFolder ${PROJECT_BINARY_DIR}/package)

install(TARGETS Host Orvel EXPORT OrvelTargets
    LIBRARY
        DESTINATION ${CMAKE_INSTALL_LIBDIR}
        COMPONENT Runtime
        NAMELINK_COMPONENT Development)

install(DIRECTORY ${ORVEL_DATA_DIR}/Protocol DESTINATION ${CMAKE_INSTALL_DATADIR}/orvel COMPONENT Runtime)

# Headers with nothing in them for other libraries stay here.
install(DIRECTORY host DESTINATION ${headerFolder} COMPONENT Development
    FILES_MATCHING PATTERN "*.h"
    PATTERN "app/LibraryFolder.h" EXCLUDE
    PATTERN "files/RandomName.h" EXCLUDE
    PATTERN "files/UnfinishedFile.h" EXCLUDE
    PATTERN "files/UnreadFiles.h" EXCLUDE
    PATTERN "process" EXCLUDE)
install(FILES
    host/process/BesideWindow.h
    host/process/CProcessMonitor.h
    host/process/IProcessMonitor.h
    host/process/ProgressImplementation.h
    DESTINATION ${headerFolder}/host/process COMPONENT Development)
install(FILES Orvel/Toolkit.h DESTINATION ${headerFolder}/Orvel COMPONENT Development)
install(FILES
    Orvel/store/COrvel.h
    Orvel/store/COVMessage.h
    Orvel/store/DataFileReader.h
    Orvel/store/DataFileWriter.h
    Orvel/store/ProtocolTypes.h
    Orvel/store/SavedProtocol.h
    DESTINATION ${headerFolder}/Orvel/store COMPONENT Development)
install(FILES
    Orvel/integration/CReportDelegate.h
    Orvel/integration/ExceptionCatcher.h
    Orvel/integration/OrvelGUIExtension.h
    Orvel/integration/OrvelProcessMonitor.h
    DESTINATION ${headerFolder}/Orvel/integration COMPONENT Development)
install(DIRECTORY ${PROJECT_BINARY_DIR}/generated/ DESTINATION ${headerFolder} COMPONENT Development
    FILES_MATCHING PATTERN "*_export.h")

install(EXPORT OrvelTargets NAMESPACE Orvel:: DESTINATION ${packageFolder} COMPONENT Development)
configure_package_config_file(cmake/OrvelConfig.cmake.in ${generatedFolder}/OrvelConfig.cmake
    INSTALL_DESTINATION ${packageFolder})
write_basic_package_version_file(${generatedFolder}/OrvelConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${generatedFolder}/OrvelConfig.cmake ${generatedFolder}/OrvelConfigVersion.cmake
    DESTINATION ${packageFolder} COMPONENT Development)

file(RELATIVE_PATH prefixFromPkgConfig /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
string(REGEX REPLACE "/$" "" prefixFromPkgConfig "${prefixFromPkgConfig}")
configure_file(cmake/orvel.pc.in ${generatedFolder}/orvel.pc @ONLY)
install(FILES ${generatedFolder}/orvel.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)

add_custom_target(uninstall
    COMMAND ${CMAKE_COMMAND} -DMANIFEST=${PROJECT_BINARY_DIR}/install_manifest.txt
        -P ${PROJECT_SOURCE_DIR}/cmake/uninstall.cmake
    COMMENT "Removing what was installed last"
    VERBATIM)
