# Debian packages: `cpack --config build/library/CPackConfig.cmake` makes one for each
# component.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "The oviapi developers <oviapi@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The library is in no package yet when dependencies are looked for.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(same_version "(= ${PROJECT_VERSION})")

# ov_package(<component> <package> <section> <summary> <description>...)
# The lines of the description are joined.
macro(ov_package component package section summary)
  string(TOUPPER ${component} upper)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
  string(JOIN "\n" CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}" ${ARGN})
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE RENAME copyright
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component})
endmacro()

ov_package(library liboviapi1 libs
  "Library for industrial cameras"
  "liboviapi finds GigE Vision, USB3 Vision and other cameras, reads and writes their"
  "features, receives their frames and makes pictures of raw sensor data."
  "Cameras are reached through producers (.cti), which lie beside the library.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS liboviapi-producer-gige)
# What is loaded late isn't found among what the library needs.
if(OV_LIBZIP_FILE)
  get_filename_component(libzip_folder ${LIBZIP_LINK_LIBRARIES} DIRECTORY)
  execute_process(COMMAND dpkg-query -S ${libzip_folder}/${OV_LIBZIP_FILE}
    OUTPUT_VARIABLE libzip_owner ERROR_QUIET)
  if(libzip_owner MATCHES "^([^:]+):")
    set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS ${CMAKE_MATCH_1})
  endif()
endif()
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SUGGESTS liboviapi-producer-virtual)

ov_package(development liboviapi-dev libdevel
  "Library for industrial cameras: development files"
  "Headers of liboviapi, and what CMake and pkg-config need to build with it.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "liboviapi1 ${same_version}")

ov_package(tools oviapi-tools utils
  "Industrial cameras on the command line"
  "ovtool lists cameras, reads and writes their features, and grabs frames.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "liboviapi1 ${same_version}")

ov_package(producer_gige liboviapi-producer-gige libs
  "GigE Vision cameras for liboviapi"
  "The producer by which liboviapi finds, controls and configures GigE Vision cameras,"
  "and receives their frames.")
set(CPACK_DEBIAN_PRODUCER_GIGE_PACKAGE_DEPENDS "liboviapi1 ${same_version}")

ov_package(producer_virtual liboviapi-producer-virtual libs
  "Virtual cameras for liboviapi"
  "Two cameras that need no hardware. Every program that uses liboviapi finds them"
  "once this package is installed.")
set(CPACK_DEBIAN_PRODUCER_VIRTUAL_PACKAGE_DEPENDS "liboviapi1 ${same_version}")

include(CPack)
