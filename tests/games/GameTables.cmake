# Games that the real builder converts while the tests are built, and the runtime on their tables:
# the same port that a player gets, but with the flags of this build, so under its sanitizers too.

# tindrel_game_tables(<game> <folder of the game>): the library <game>_tables, and the variable
# <game>_port_folder.
function(tindrel_game_tables game source)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/${game})
  set(tables ${folder}/runtime/generated/GeneratedCharacters.cpp
    ${folder}/runtime/generated/GeneratedStages.cpp)
  file(GLOB_RECURSE files CONFIGURE_DEPENDS ${source}/*)
  add_custom_command(OUTPUT ${tables}
    COMMAND tindrel-builder convert ${source} ${folder} > ${folder}.log
    DEPENDS tindrel-builder ${files}
    COMMENT "Converting ${game}"
    VERBATIM)
  # As in a port: tables are data alone.
  set_source_files_properties(${tables} PROPERTIES COMPILE_OPTIONS "-O0;-g0")
  # Objects: a linker passes an archive over that nothing in front of it asks for.
  add_library(${game}_tables OBJECT ${tables})
  set(${game}_port_folder ${folder} PARENT_SCOPE)
endfunction()

# The same, and the program <game>_port.
macro(tindrel_game_port game source)
  tindrel_game_tables(${game} ${source})
  port_program(${game}_port ${PROJECT_SOURCE_DIR}/runtime)
  target_link_libraries(${game}_port PRIVATE ${game}_tables tindrel_warnings)
endmacro()
