# What every target of the project is compiled with.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

find_program(OV_CCACHE ccache)
if(OV_CCACHE)
  set(CMAKE_C_COMPILER_LAUNCHER ${OV_CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${OV_CCACHE})
endif()

add_compile_options(-Wall -Wextra -Wshadow -Wconversion)
# A newer compiler warns of more: whoever only builds the project isn't stopped. The
# presets for work on it switch this on.
option(OV_WARNINGS_AS_ERRORS "Stop at the first warning" OFF)
if(OV_WARNINGS_AS_ERRORS)
  add_compile_options(-Werror)
endif()
# A class that copies itself hides the operator= by which values take a number;
# newer GCC warns of it for each class, Clang knows better.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 13)
  add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-overloaded-virtual>)
endif()
# GCC 13 alone takes a reference that a function returns for one to its argument.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 13
    AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 14)
  add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-dangling-reference>)
endif()
# GCC 12 sees overlapping copies in the string additions of its own library, and an empty
# optional's memory read.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  add_compile_options($<$<AND:$<CONFIG:Release>,$<COMPILE_LANGUAGE:CXX>>:-Wno-restrict>)
  add_compile_options($<$<AND:$<CONFIG:Release>,$<COMPILE_LANGUAGE:CXX>>:-Wno-maybe-uninitialized>)
endif()
# Line tables are all that a debugger and the sanitizers need to name a place;
# full debug information doubles the time of a build.
add_compile_options($<$<CONFIG:Debug>:-g1>)
if(OV_SANITIZE)
  add_compile_options(-fsanitize=${OV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -O1)
  add_link_options(-fsanitize=${OV_SANITIZE})
endif()

# The tables of virtual functions are a hundred thousand addresses to relocate, two megabytes of
# the library: packed they are a fiftieth, where the C library can read that.
include(CheckCSourceCompiles)
set(CMAKE_REQUIRED_LINK_OPTIONS LINKER:-z,pack-relative-relocs LINKER:--fatal-warnings)
check_c_source_compiles("
  #include <features.h>
  #if !__GLIBC_PREREQ(2, 36)
  #error relative relocations are read one by one
  #endif
  int main(void) { return 0; }" OV_PACKS_RELOCATIONS)
unset(CMAKE_REQUIRED_LINK_OPTIONS)
if(OV_PACKS_RELOCATIONS)
  add_link_options(LINKER:-z,pack-relative-relocs)
endif()

# ov_require_sources(<target> <folder> <source>...)
# Stops where a folder has no sources: it was moved, or its name is misspelt.
function(ov_require_sources target folder)
  if(NOT ARGN)
    message(FATAL_ERROR "${target}: no sources in ${folder}")
  endif()
endfunction()

# ov_object_library(<target> DIRS <dir>... LINK <target>...)
# One object target per layer, made of every source below the named folders.
# INCLUDE names what the layer gives to those above it.
function(ov_object_library target)
  cmake_parse_arguments(ARG "" "" "DIRS;INCLUDE;LINK" ${ARGN})
  set(sources "")
  foreach(dir IN LISTS ARG_DIRS)
    file(GLOB found CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${dir}/*.cpp)
    ov_require_sources(${target} ${CMAKE_CURRENT_SOURCE_DIR}/${dir} ${found})
    list(APPEND sources ${found})
  endforeach()
  add_library(${target} OBJECT ${sources})
  target_include_directories(${target} PUBLIC ${ARG_INCLUDE})
  target_link_libraries(${target} PUBLIC ${ARG_LINK})
endfunction()

# ov_compile_together(<target>...)
# Compiles the sources of each target in one batch where the library is built for delivery: most
# of the time of a batch goes to headers that the next one would read again.
function(ov_compile_together)
  if(CMAKE_BUILD_TYPE STREQUAL "Release")
    set_target_properties(${ARGV} PROPERTIES UNITY_BUILD_BATCH_SIZE 0)
  endif()
endfunction()
