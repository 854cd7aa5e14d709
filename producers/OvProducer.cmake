# ov_embed_file(<target> <file> <symbol>)
# Compiles a text file into the target, as a string view of that name.
function(ov_embed_file target file symbol)
  set(input ${CMAKE_CURRENT_SOURCE_DIR}/${file})
  set(output ${CMAKE_CURRENT_BINARY_DIR}/${symbol}.cpp)
  set(script ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/EmbedFile.cmake)
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DINPUT=${input} -DOUTPUT=${output} -DSYMBOL=${symbol} -P ${script}
    DEPENDS ${input} ${script}
    COMMENT "Embedding ${file}")
  target_sources(${target} PRIVATE ${output})
  set_source_files_properties(${output} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# Patterns for the names of the standard's functions.
set(OV_GENTL_EXPORTS "GC[A-Z]*" "Event[A-Z]*" "TL[A-Z]*" "IF[A-Z]*" "Dev[A-Z]*" "DS[A-Z]*")

# ov_producer(<target> NAME <file name without .cti> EXPORTS <pattern>... SOURCES
# <file>...) Builds a producer file on the framework. It exports only the functions that
# the patterns name, so that several producers can be loaded into one process.
function(ov_producer target)
  cmake_parse_arguments(ARG "" "NAME" "EXPORTS;SOURCES" ${ARGN})
  file(GLOB exports CONFIGURE_DEPENDS ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/framework/exports/*.cpp)
  add_library(${target} MODULE ${ARG_SOURCES} ${exports})
  target_link_libraries(${target} PRIVATE ov_producer_framework)
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.map)
  list(JOIN ARG_EXPORTS "; " patterns)
  file(CONFIGURE OUTPUT ${script} CONTENT "{ global: ${patterns}; local: *; };\n" @ONLY)
  target_link_options(${target} PRIVATE -Wl,--version-script=${script} -Wl,-Bsymbolic)
  if(NOT OV_SANITIZE)
    # A missing function is an error of the link, not of the load.
    target_link_options(${target} PRIVATE -Wl,-z,defs)
  endif()
  set_target_properties(${target} PROPERTIES
    PREFIX "" SUFFIX ".cti" OUTPUT_NAME ${ARG_NAME} LINK_DEPENDS ${script})
endfunction()
