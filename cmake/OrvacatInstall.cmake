# Installs the library, its headers, the CMake package OrvacatQt and orvacat-qt.pc.
include(CMakePackageConfigHelpers)

set(ORVACAT_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/OrvacatQt)

install(TARGETS orvacat-qt EXPORT OrvacatQtTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(FILES ${ORVACAT_PUBLIC_HEADERS} ${PROJECT_BINARY_DIR}/include/orvacat/orvacat_export.h
    ${PROJECT_SOURCE_DIR}/include/orvacat/QtSingleApplication
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orvacat)

install(EXPORT OrvacatQtTargets
    NAMESPACE OrvacatQt::
    FILE OrvacatQtTargets.cmake
    DESTINATION ${ORVACAT_CMAKE_DIR})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/OrvacatQtConfig.cmake.in
    ${PROJECT_BINARY_DIR}/OrvacatQtConfig.cmake
    INSTALL_DESTINATION ${ORVACAT_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OrvacatQtConfigVersion.cmake
    VERSION ${PROJECT_VERSION}
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/OrvacatQtConfig.cmake
    ${PROJECT_BINARY_DIR}/OrvacatQtConfigVersion.cmake
    DESTINATION ${ORVACAT_CMAKE_DIR})

configure_file(${PROJECT_SOURCE_DIR}/cmake/orvacat-qt.pc.in ${PROJECT_BINARY_DIR}/orvacat-qt.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orvacat-qt.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
