# Small games, converted by the real builder while the tests are built, for tests that link the
# runtime with their tables.

# tindrel_game_tables(<game>): <game>_port is the folder of the game's port, and the library
# <game>_tables holds its two tables.
function(tindrel_game_tables game)
  set(source ${PROJECT_SOURCE_DIR}/tests/games/${game})
  set(port ${CMAKE_CURRENT_BINARY_DIR}/${game})
  set(tables ${port}/runtime/generated/GeneratedCharacters.cpp
    ${port}/runtime/generated/GeneratedStages.cpp)
  file(GLOB_RECURSE files CONFIGURE_DEPENDS ${source}/*)
  add_custom_command(OUTPUT ${tables}
    COMMAND tindrel-builder convert ${source} ${port} > ${port}.log
    DEPENDS tindrel-builder ${files}
    COMMENT "Converting ${game}"
    VERBATIM)
  add_library(${game}_tables STATIC ${tables})
  set(${game}_port ${port} PARENT_SCOPE)
endfunction()
