# Install rules: headers, the library, the CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

set(STRUCTMATH_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/structmath")

install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/structmath"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
  FILES_MATCHING PATTERN "*.hpp")
install(FILES "${STRUCTMATH_GENERATED_INCLUDE_DIR}/structmath/export.hpp"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/structmath")
if(TARGET structmath_io)
  install(FILES "${STRUCTMATH_GENERATED_INCLUDE_DIR}/structmath/io/export.hpp"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/structmath/io")
endif()

set(STRUCTMATH_INSTALL_TARGETS structmath)
if(TARGET structmath_io)
  list(APPEND STRUCTMATH_INSTALL_TARGETS structmath_io)
endif()
install(TARGETS ${STRUCTMATH_INSTALL_TARGETS}
  EXPORT structmathTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
if(TARGET structmath_tool)
  install(TARGETS structmath_tool RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()

install(EXPORT structmathTargets
  NAMESPACE structmath::
  DESTINATION "${STRUCTMATH_CMAKE_DIR}")

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/structmathConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/structmathConfig.cmake"
  INSTALL_DESTINATION "${STRUCTMATH_CMAKE_DIR}")
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/structmathConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/structmathConfig.cmake"
  "${PROJECT_BINARY_DIR}/structmathConfigVersion.cmake"
  DESTINATION "${STRUCTMATH_CMAKE_DIR}")

# The .pc file locates the prefix from its own place, so installing with
# --prefix at install time gives a correct file too.
file(RELATIVE_PATH STRUCTMATH_PC_TO_PREFIX "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
string(REGEX REPLACE "/$" "" STRUCTMATH_PC_TO_PREFIX "${STRUCTMATH_PC_TO_PREFIX}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/structmath.pc.in"
  "${PROJECT_BINARY_DIR}/structmath.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/structmath.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
if(TARGET structmath_io)
  configure_file("${PROJECT_SOURCE_DIR}/cmake/structmath-io.pc.in"
    "${PROJECT_BINARY_DIR}/structmath-io.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/structmath-io.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endif()
