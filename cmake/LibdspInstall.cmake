# Install rules: headers, library, CMake package (libdsp::dsp) and pkg-config.
include(CMakePackageConfigHelpers)

install(TARGETS ${LIBDSP_INSTALL_TARGETS} EXPORT libdspTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")

set(LIBDSP_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/libdsp)
install(EXPORT libdspTargets NAMESPACE libdsp:: DESTINATION ${LIBDSP_CMAKE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/libdspConfig.cmake.in
  ${PROJECT_BINARY_DIR}/libdspConfig.cmake INSTALL_DESTINATION ${LIBDSP_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/libdspConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/libdspConfig.cmake ${PROJECT_BINARY_DIR}/libdspConfigVersion.cmake
  DESTINATION ${LIBDSP_CMAKE_DIR})

# The pkg-config file finds its prefix relative to itself, so an installed
# tree can be moved (or installed with cmake --install --prefix).
file(RELATIVE_PATH LIBDSP_PC_TO_PREFIX "/p/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/p")
configure_file(${PROJECT_SOURCE_DIR}/cmake/libdsp.pc.in ${PROJECT_BINARY_DIR}/libdsp.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/libdsp.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
