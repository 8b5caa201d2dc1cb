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

# The installed headers are the public API: what a host needs to run a session (its state,
# configuration, clock, the reporter, user-interaction and transmit-wait services with their
# implementations, connections, schema) and the classes it drives. Every other header is
# the library's own. A header listed here includes only listed headers: check-packaging
# compiles them all from the installed tree. Headers keep their folder, so that
# "session/runtime/Session.h" reads the same inside and outside.
set(TVRX_PUBLIC_HEADERS
  session/runtime/AppConfig.h
  session/runtime/BusyPointer.h
  session/runtime/Clock.h
  session/runtime/ComponentFactory.h
  session/runtime/ConsoleUserInteraction.h
  session/runtime/ErrorNumbers.h
  session/runtime/ErrorReporter.h
  session/runtime/Failure.h
  session/runtime/FileErrorReporter.h
  session/runtime/KeyedCollection.h
  session/runtime/LibraryFiles.h
  session/runtime/RecordingErrorReporter.h
  session/runtime/ScriptedUserInteraction.h
  session/runtime/Session.h
  session/runtime/UserInteraction.h
  session/data/Connections.h
  session/data/DbConnection.h
  session/data/EmbeddedFiles.h
  session/data/Dialect.h
  session/data/RecordSet.h
  session/data/Schema.h
  session/text/Currency.h
  session/text/ZeroDate.h
  claims/ClaimExchange.h
  claims/ConsoleTransmitFace.h
  claims/PlanRows.h
  claims/ScriptedTransmitFace.h
  claims/Wrapper.h
  claims/colRX.h
  claims/frmTransmit.h
  prescription/ClinicalScreening.h
  prescription/ConsoleFindRefillFace.h
  prescription/RXImage.h
  prescription/RXImageFolder.h
  prescription/ScriptedFindRefillFace.h
  prescription/clsPrescription.h
  prescription/frmFindRefill.h
  responses/DUR.h
  responses/PlainTree.h
  responses/Reject.h
  responses/ResponseValues.h
  responses/TreeControl.h
  responses/clsClaimResponse.h
  responses/colResponse.h
  records/Facility.h
  records/PATINS.h
  records/clsDoc.h
  records/clsDrug.h
  records/clsINSURANCE.h
  records/clsPatient.h
  reports/ConsolePreviewFace.h
  reports/DocumentTable.h
  reports/LaidOutDocument.h
  reports/PageDocument.h
  reports/RecordingDocument.h
  reports/ScriptedPreviewFace.h
  reports/frmPrint.h
  eligibility/frmEligibility.h)
foreach(header IN LISTS TVRX_PUBLIC_HEADERS)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tvrx/${folder})
endforeach()
# The desktop library's headers are all its public API, and go with it.
if(TVRX_PACKAGE_HAS_QT)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/ui/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tvrx/ui
    FILES_MATCHING PATTERN "*.h")
endif()

install(EXPORT TvrxTargets NAMESPACE tvrx:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Tvrx)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/TvrxConfig.cmake.in
  ${PROJECT_BINARY_DIR}/TvrxConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Tvrx)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TvrxConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TvrxConfig.cmake ${PROJECT_BINARY_DIR}/TvrxConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Tvrx)
