# tindrel_embed_text(<source> HEADER <header> FUNCTION <name> FILES <tree path>|<carried path>...)
# Makes <source> a C++ source, written at build time, whose function tindrel::<name>() gives the
# files byte for byte in that order. <header> declares EmbeddedFile. Tree paths are relative to the
# project's root. No compiled tool takes part, so that it works while cross-compiling.
function(tindrel_embed_text source)
  cmake_parse_arguments(arg "" "HEADER;FUNCTION" "FILES" ${ARGN})
  set(manifest "${arg_HEADER}\n${arg_FUNCTION}\n")
  set(inputs)
  foreach(entry IN LISTS arg_FILES)
    string(APPEND manifest "${entry}\n")
    string(REGEX REPLACE "\\|.*" "" input "${entry}")
    list(APPEND inputs ${PROJECT_SOURCE_DIR}/${input})
  endforeach()
  # Written only when it differs: a changed list embeds anew, a mere configure run does not.
  file(CONFIGURE OUTPUT ${source}.list CONTENT "${manifest}" @ONLY)
  set(script ${PROJECT_SOURCE_DIR}/cmake/EmbedTextScript.cmake)
  add_custom_command(
    OUTPUT ${source}
    COMMAND ${CMAKE_COMMAND} -DROOT=${PROJECT_SOURCE_DIR} -DLIST=${source}.list -DSOURCE=${source}
      -P ${script}
    DEPENDS ${script} ${source}.list ${inputs}
    COMMENT "Embedding the files of ${arg_FUNCTION}()"
    VERBATIM)
  # Each of them names its bytes alike.
  set_source_files_properties(${source} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()
