# Installs the library, its headers, the CMake package OrvacatQt and orvacat-qt.pc.
include(CMakePackageConfigHelpers)

set(ORVACAT_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/OrvacatQt)

install(TARGETS orvacat-qt EXPORT OrvacatQtTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(FILES ${ORVACAT_PUBLIC_HEADERS} ${PROJECT_BINARY_DIR}/include/orvacat/orvacat_export.h
    ${PROJECT_BINARY_DIR}/include/orvacat/orvacat_version.h
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

# The .pc file finds its prefix from where it lies, so that an install moved
# elsewhere (or made with cmake --install --prefix) still describes itself.
set(ORVACAT_PC_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(IS_ABSOLUTE "${ORVACAT_PC_DIR}")
    set(ORVACAT_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
    file(RELATIVE_PATH ORVACAT_PC_TO_PREFIX "/prefix/${ORVACAT_PC_DIR}" "/prefix")
    set(ORVACAT_PC_PREFIX "\${pcfiledir}/${ORVACAT_PC_TO_PREFIX}")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/orvacat-qt.pc.in ${PROJECT_BINARY_DIR}/orvacat-qt.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orvacat-qt.pc DESTINATION ${ORVACAT_PC_DIR})
