# Installs the library for find_package(ZQTVINScanComponent) and pkg-config.
include(CMakePackageConfigHelpers)

install(TARGETS ZQTVINScanComponent EXPORT ZQTVINScanComponentTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

foreach(header IN LISTS zqt_public_headers)
  get_filename_component(header_dir "${header}" DIRECTORY)
  install(FILES ${CMAKE_CURRENT_SOURCE_DIR}/${header}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/ZQTVINScanComponent/${header_dir})
endforeach()

set(zqt_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZQTVINScanComponent)
install(EXPORT ZQTVINScanComponentTargets
  NAMESPACE ZQTVINScanComponent::
  DESTINATION ${zqt_cmake_dir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/ZQTVINScanComponentConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/ZQTVINScanComponentConfig.cmake
  INSTALL_DESTINATION ${zqt_cmake_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/ZQTVINScanComponentConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/ZQTVINScanComponentConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/ZQTVINScanComponentConfigVersion.cmake
  DESTINATION ${zqt_cmake_dir})

configure_file(${PROJECT_SOURCE_DIR}/cmake/ZQTVINScanComponent.pc.in
  ${CMAKE_CURRENT_BINARY_DIR}/ZQTVINScanComponent.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ZQTVINScanComponent.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
