# Installs the library, its headers, the CMake package and, where they are built, the programs.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tooldb)

install(TARGETS tooldb EXPORT tooldbTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT tooldbTargets NAMESPACE tooldb:: DESTINATION ${package_dir})

configure_package_config_file(cmake/tooldbConfig.cmake.in ${PROJECT_BINARY_DIR}/tooldbConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/tooldbConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/tooldbConfig.cmake ${PROJECT_BINARY_DIR}/tooldbConfigVersion.cmake
  DESTINATION ${package_dir})
