include(${CMAKE_CURRENT_LIST_DIR}/../runtime/mingw-w64.cmake)
# What was built is run by Wine where there is one: the builder while the tests are built, and the tests.
find_program(WINE_PROGRAM NAMES wine64 wine PATHS /usr/lib/wine)
if(WINE_PROGRAM)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../tools/wine.sh)
endif()
