# What `cmake --install` copies, by component: library, development, tools, and one for
# each producer, so that nobody gets a virtual camera by accident.
# Tests and measurements need not be built to install what is.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(headers ${CMAKE_INSTALL_INCLUDEDIR}/oviapi)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/oviapi)

# Programs include "OvIAPI.h", or <oviapi/OvIAPI.h> where names could clash.
target_include_directories(oviapi INTERFACE
  $<INSTALL_INTERFACE:${headers}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
install(TARGETS oviapi EXPORT oviapiTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)

install(FILES OvIAPI/OvIAPI.h OvIAPI/OvIDef.h OvIAPI/OvIFeatureTable.h OvIAPI/OvINodes.h
  ImageProc/QyImageProc.h
  DESTINATION ${headers} COMPONENT development)
# The node templates below GenApi/impl are the engine's own.
install(DIRECTORY inc/Genicam/Base inc/Genicam/NodeMapData inc/Genicam/GenApi
  DESTINATION ${headers} COMPONENT development
  FILES_MATCHING PATTERN "*.h" PATTERN impl EXCLUDE)

install(EXPORT oviapiTargets NAMESPACE oviapi:: DESTINATION ${package} COMPONENT development)
configure_package_config_file(cmake/oviapiConfig.cmake.in
  ${PROJECT_BINARY_DIR}/package/oviapiConfig.cmake INSTALL_DESTINATION ${package})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/oviapiConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/package/oviapiConfig.cmake
  ${PROJECT_BINARY_DIR}/package/oviapiConfigVersion.cmake
  DESTINATION ${package} COMPONENT development)

# The prefix is told from the place of the file, so that an installed tree can be moved.
file(RELATIVE_PATH OV_PREFIX_FROM_PC
  /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/oviapi.pc.in ${PROJECT_BINARY_DIR}/package/oviapi.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/package/oviapi.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# The library looks for producers beside its real file.
install(TARGETS OvGVTL LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT producer_gige)
install(TARGETS KwTL LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT producer_virtual)

file(RELATIVE_PATH library_from_tool
  /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${CMAKE_INSTALL_LIBDIR})
set_target_properties(ovtool ovtool-simulate PROPERTIES INSTALL_RPATH "$ORIGIN/${library_from_tool}")
install(TARGETS ovtool ovtool-simulate RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
install(FILES tools/ovtool/completion/ovtool.bash RENAME ovtool
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)

# All that is installed. The manual page is made of what the tool says of itself, which a
# tool for another machine can't.
add_custom_target(product DEPENDS oviapi OvGVTL KwTL ovtool ovtool-simulate)
if(NOT CMAKE_CROSSCOMPILING)
  set(page ${PROJECT_BINARY_DIR}/package/ovtool.1)
  add_custom_command(OUTPUT ${page}.gz
    COMMAND ${PROJECT_SOURCE_DIR}/scripts/generate-man-page $<TARGET_FILE:ovtool> > ${page}
    COMMAND gzip -9nf ${page}
    DEPENDS ovtool ovtool-simulate ${PROJECT_SOURCE_DIR}/scripts/generate-man-page)
  add_custom_target(man_page ALL DEPENDS ${page}.gz)
  add_dependencies(product man_page)
  install(FILES ${page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
endif()

install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/liboviapi-dev
  COMPONENT development)
