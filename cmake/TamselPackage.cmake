# What makes an installed tree usable: the exported targets with a package for find_package(), a pkg-config
# file, and the documentation.

include(CMakePackageConfigHelpers)

set(_tamsel_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/TamselPackageManager")

set(_tamsel_libraries TamselPackageManager)
set(TAMSEL_PLATFORM_DEPENDENCY "")
if(TAMSEL_PLATFORM STREQUAL "external")
    set(TAMSEL_PLATFORM_DEPENDENCY "find_dependency(TamselPlatform)")
else()
    list(APPEND _tamsel_libraries Tamsel TamselAccount TamselCrypto TamselDataCore TamselNetwork TamselUtil)
endif()

# Installed libraries stand side by side, and find each other there wherever the tree is moved to.
set_target_properties(${_tamsel_libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")

install(EXPORT TamselPackageManagerTargets
    NAMESPACE Tamsel::
    DESTINATION "${_tamsel_package_dir}"
    COMPONENT Development)

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/TamselPackageManagerConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/package/TamselPackageManagerConfig.cmake"
    INSTALL_DESTINATION "${_tamsel_package_dir}"
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/package/TamselPackageManagerConfigVersion.cmake"
    VERSION "${PROJECT_VERSION}"
    COMPATIBILITY SameMajorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/package/TamselPackageManagerConfig.cmake"
    "${PROJECT_BINARY_DIR}/package/TamselPackageManagerConfigVersion.cmake"
    DESTINATION "${_tamsel_package_dir}"
    COMPONENT Development)

# The prefix is told from the place of the file itself, so that the tree can be moved. A directory that was
# configured as an absolute path does not move with it.
set(_tamsel_pkgconfig_dir "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH _tamsel_prefix "${_tamsel_pkgconfig_dir}" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" _tamsel_prefix "${_tamsel_prefix}")
set(TAMSEL_PC_PREFIX "\${pcfiledir}/${_tamsel_prefix}")
foreach(directory INCLUDEDIR LIBDIR)
    set(TAMSEL_PC_${directory} "${CMAKE_INSTALL_${directory}}")
    if(NOT IS_ABSOLUTE "${TAMSEL_PC_${directory}}")
        string(PREPEND TAMSEL_PC_${directory} "\${prefix}/")
    endif()
endforeach()
list(TRANSFORM _tamsel_libraries PREPEND "-l" OUTPUT_VARIABLE TAMSEL_PC_LIBS)
list(JOIN TAMSEL_PC_LIBS " " TAMSEL_PC_LIBS)
configure_file(
    "${PROJECT_SOURCE_DIR}/cmake/TamselPackageManager.pc.in"
    "${PROJECT_BINARY_DIR}/package/TamselPackageManager.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/package/TamselPackageManager.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
    COMPONENT Development)

# In a sub-project the directory is that of the project above, and may have a README of its own.
if(PROJECT_IS_TOP_LEVEL)
    install(FILES README.md CHANGELOG.md DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT Documentation)
    install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT Documentation)
endif()
