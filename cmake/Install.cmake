# Installation: the shared library, its headers under include/qvx, an exported CMake
# package (find_package(qvx) gives qvx::qvx) and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS qvx EXPORT qvxTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY platform utils icore io
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qvx
  FILES_MATCHING PATTERN "*.h")

set(QVX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/qvx)
install(EXPORT qvxTargets NAMESPACE qvx:: DESTINATION ${QVX_CMAKE_DIR})
configure_package_config_file(cmake/qvxConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/qvxConfig.cmake INSTALL_DESTINATION ${QVX_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/qvxConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qvxConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/qvxConfigVersion.cmake
        DESTINATION ${QVX_CMAKE_DIR})

configure_file(cmake/qvx.pc.in ${CMAKE_CURRENT_BINARY_DIR}/qvx.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/qvx.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
