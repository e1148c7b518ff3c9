# Warnings are errors for everything that this project compiles itself.
add_library(tindrel_warnings INTERFACE)
if(MSVC)
  target_compile_options(tindrel_warnings INTERFACE /W4 /WX /utf-8 /permissive-)
else()
  target_compile_options(tindrel_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # This compiler sees overlapping copies in its own std::string, and uninitialised members in
    # std::variants that are moved, where there are none.
    target_compile_options(tindrel_warnings INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
  endif()
endif()

# tindrel_library(<name> SOURCES <file>... LINK <library>...)
# One library a folder of builder/; headers are included as "folder/Name.hpp".
function(tindrel_library name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${arg_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/builder)
  target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE tindrel_warnings)
  # The platform's sources include what systems define as macros.
  if(TINDREL_UNITY AND NOT name STREQUAL "tindrel_platform")
    set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 0)
  endif()
endfunction()
