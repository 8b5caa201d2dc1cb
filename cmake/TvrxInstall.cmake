include(CMakePackageConfigHelpers)

set(tvrx_install_targets tvrx)
set(TVRX_PACKAGE_HAS_QT OFF)
if(TARGET tvrx_qt)
  list(APPEND tvrx_install_targets tvrx_qt)
  set(TVRX_PACKAGE_HAS_QT ON)
endif()

# A library built with the sanitizers needs their runtime in every program that links it.
if(TVRX_SANITIZE)
  target_link_options(tvrx INTERFACE $<INSTALL_INTERFACE:-fsanitize=address,undefined>)
endif()

install(TARGETS ${tvrx_install_targets} EXPORT TvrxTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# Headers keep their folder, so that "session/runtime/Frame.h" reads the same inside and outside.
# Subsystems not written yet have no folder, and the desktop headers go with their library.
set(tvrx_header_dirs ${TVRX_SUBSYSTEMS})
if(TVRX_PACKAGE_HAS_QT)
  list(APPEND tvrx_header_dirs ui)
endif()
foreach(sub IN LISTS tvrx_header_dirs)
  if(IS_DIRECTORY ${PROJECT_SOURCE_DIR}/${sub})
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${sub}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tvrx/${sub}
      FILES_MATCHING PATTERN "*.h")
  endif()
endforeach()

install(EXPORT TvrxTargets NAMESPACE tvrx:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Tvrx)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/TvrxConfig.cmake.in
  ${PROJECT_BINARY_DIR}/TvrxConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Tvrx)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TvrxConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TvrxConfig.cmake ${PROJECT_BINARY_DIR}/TvrxConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Tvrx)
