# Installs the library, its headers, the CMake package and the .pc file under
# the names of the Qt major built against: OrvacatQt and orvacat-qt for Qt 5,
# OrvacatQt6 and orvacat-qt6 for Qt 6.
include(CMakePackageConfigHelpers)

set(ORVACAT_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/${ORVACAT_PACKAGE})

install(TARGETS orvacat-qt EXPORT ${ORVACAT_PACKAGE}Targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    INCLUDES DESTINATION ${ORVACAT_INSTALL_INCLUDEDIR})

install(FILES ${ORVACAT_PUBLIC_HEADERS} ${PROJECT_BINARY_DIR}/include/orvacat/orvacat_export.h
    ${PROJECT_BINARY_DIR}/include/orvacat/orvacat_version.h
    ${PROJECT_SOURCE_DIR}/include/orvacat/QtSingleApplication
    DESTINATION ${ORVACAT_INSTALL_INCLUDEDIR}/orvacat)

install(EXPORT ${ORVACAT_PACKAGE}Targets
    NAMESPACE ${ORVACAT_PACKAGE}::
    FILE ${ORVACAT_PACKAGE}Targets.cmake
    DESTINATION ${ORVACAT_CMAKE_DIR})

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/OrvacatConfig.cmake.in
    ${PROJECT_BINARY_DIR}/${ORVACAT_PACKAGE}Config.cmake
    INSTALL_DESTINATION ${ORVACAT_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/${ORVACAT_PACKAGE}ConfigVersion.cmake
    VERSION ${PROJECT_VERSION}
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/${ORVACAT_PACKAGE}Config.cmake
    ${PROJECT_BINARY_DIR}/${ORVACAT_PACKAGE}ConfigVersion.cmake
    DESTINATION ${ORVACAT_CMAKE_DIR})

# The .pc file finds its prefix from where it lies, so that an install moved
# elsewhere (or made with cmake --install --prefix) still describes itself.
set(ORVACAT_PC_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(IS_ABSOLUTE "${ORVACAT_PC_DIR}")
    set(ORVACAT_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
    file(RELATIVE_PATH ORVACAT_PC_TO_PREFIX "/prefix/${ORVACAT_PC_DIR}" "/prefix")
    set(ORVACAT_PC_PREFIX "\${pcfiledir}/${ORVACAT_PC_TO_PREFIX}")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/orvacat.pc.in ${PROJECT_BINARY_DIR}/${ORVACAT_NAME}.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/${ORVACAT_NAME}.pc DESTINATION ${ORVACAT_PC_DIR})
