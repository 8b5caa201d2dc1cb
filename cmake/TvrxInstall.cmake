include(CMakePackageConfigHelpers)

set(tvrx_install_targets tvrx)
if(TARGET tvrx_qt)
  list(APPEND tvrx_install_targets tvrx_qt)
endif()

install(TARGETS ${tvrx_install_targets} EXPORT TvrxTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

foreach(sub IN LISTS TVRX_SUBSYSTEMS ITEMS ui)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${sub}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tvrx/${sub}
    FILES_MATCHING PATTERN "*.h")
endforeach()

install(EXPORT TvrxTargets NAMESPACE tvrx:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Tvrx)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/TvrxConfig.cmake.in
  ${PROJECT_BINARY_DIR}/TvrxConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Tvrx)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TvrxConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TvrxConfig.cmake ${PROJECT_BINARY_DIR}/TvrxConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Tvrx)
