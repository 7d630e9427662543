# Installs the libraries, their headers (flat), the CMake package and the pkg-config file.

include(CMakePackageConfigHelpers)

set(header_folder "${CMAKE_INSTALL_INCLUDEDIR}/caeutils")
set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/CaeUtils")

install(
  TARGETS TVXUTI_CoreUtils caeutils_cow TVXUTI_BasicUtils TVXUTI_CaeUtils
  EXPORT CaeUtilsTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET HEADERS DESTINATION "${header_folder}")

install(
  EXPORT CaeUtilsTargets
  NAMESPACE CaeUtils::
  DESTINATION "${package_folder}")

configure_package_config_file(
  "${CMAKE_CURRENT_LIST_DIR}/CaeUtilsConfig.cmake.in" "${PROJECT_BINARY_DIR}/CaeUtilsConfig.cmake"
  INSTALL_DESTINATION "${package_folder}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/CaeUtilsConfigVersion.cmake"
                                 COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/CaeUtilsConfig.cmake"
              "${PROJECT_BINARY_DIR}/CaeUtilsConfigVersion.cmake" DESTINATION "${package_folder}")

# The prefix is worked out from where the .pc file lies, so that an installed tree can be moved.
file(RELATIVE_PATH pc_prefix "/p/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/p")
configure_file("${CMAKE_CURRENT_LIST_DIR}/caeutils.pc.in" "${PROJECT_BINARY_DIR}/caeutils.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/caeutils.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

file(GLOB gdb_scripts CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/tools/gdb/*.py")
if(gdb_scripts)
  install(FILES ${gdb_scripts} DESTINATION "${CMAKE_INSTALL_DATADIR}/caeutils/gdb")
endif()
