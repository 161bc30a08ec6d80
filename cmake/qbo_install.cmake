# Installation: the library, its header, a CMake package and a pkg-config
# file, so a host can find_package(QuillonBufferOperaU) or
# pkg-config --cflags --libs QuillonBufferOperaU.
include(CMakePackageConfigHelpers)

install(TARGETS QuillonBufferOperaU EXPORT QuillonBufferOperaUTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  PUBLIC_HEADER DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT QuillonBufferOperaUTargets
  NAMESPACE QuillonBufferOperaU::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/QuillonBufferOperaU)

configure_package_config_file(cmake/QuillonBufferOperaUConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/QuillonBufferOperaUConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/QuillonBufferOperaU)
write_basic_package_version_file(
  ${CMAKE_CURRENT_BINARY_DIR}/QuillonBufferOperaUConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/QuillonBufferOperaUConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/QuillonBufferOperaUConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/QuillonBufferOperaU)

configure_file(cmake/QuillonBufferOperaU.pc.in
  ${CMAKE_CURRENT_BINARY_DIR}/QuillonBufferOperaU.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/QuillonBufferOperaU.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
