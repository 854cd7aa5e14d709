find_package(Threads REQUIRED)
find_package(EXPAT REQUIRED)
find_package(ZLIB REQUIRED)
find_package(PNG REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(XXHASH REQUIRED IMPORTED_TARGET libxxhash)
# The vector library's headers are all that is needed of it: its binary measures the clock for
# three milliseconds whenever a program is loaded.
find_path(OV_HWY_INCLUDE hwy/highway.h REQUIRED)
find_package(CLI11 CONFIG REQUIRED)
find_package(nlohmann_json CONFIG REQUIRED)

# Zipped descriptions are read with miniz where the system has it, else with
# libzip; the parser sees only its own small reader.
find_package(miniz CONFIG QUIET)
if(TARGET miniz::miniz)
  set(OV_ZIP_LIBRARY miniz::miniz)
  set(OV_ZIP_DEFINITION OV_HAVE_MINIZ=1)
else()
  pkg_check_modules(MINIZ QUIET IMPORTED_TARGET miniz)
  if(TARGET PkgConfig::MINIZ)
    set(OV_ZIP_LIBRARY PkgConfig::MINIZ)
    set(OV_ZIP_DEFINITION OV_HAVE_MINIZ=1)
  else()
    # Loaded by its name when an archive is to be read, so its headers are enough here.
    pkg_check_modules(LIBZIP REQUIRED libzip)
    execute_process(COMMAND ${CMAKE_READELF} -d ${LIBZIP_LINK_LIBRARIES}
      OUTPUT_VARIABLE libzip_tags COMMAND_ERROR_IS_FATAL ANY)
    if(NOT libzip_tags MATCHES "soname: \\[([^]]+)\\]")
      message(FATAL_ERROR "${LIBZIP_LINK_LIBRARIES} has no name that programs load it by")
    endif()
    set(OV_LIBZIP_FILE ${CMAKE_MATCH_1})
    add_library(ov_zip INTERFACE)
    target_include_directories(ov_zip SYSTEM INTERFACE ${LIBZIP_INCLUDE_DIRS})
    set(OV_ZIP_LIBRARY ov_zip ${CMAKE_DL_LIBS})
    set(OV_ZIP_DEFINITION OV_HAVE_MINIZ=0 OV_LIBZIP_FILE="${OV_LIBZIP_FILE}")
  endif()
endif()
