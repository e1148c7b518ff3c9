# What a port takes from the system's libraries where they are found. Without them it still builds:
# pictures are then white, and compressed music is silent.

# port_libraries(<target> <folder of the runtime>)
# Adds the sources that stand on libraries, or the ones that stand in for them.
function(port_libraries target folder)
  set(platform ${folder}/src/platform)

  set(images None)
  if(NOT WIN32)
    find_package(GIF 5 QUIET)
    find_package(PNG QUIET)
    if(GIF_FOUND AND PNG_FOUND)
      set(images Libraries)
      target_include_directories(${target} SYSTEM PRIVATE ${GIF_INCLUDE_DIRS})
      target_link_libraries(${target} PRIVATE ${GIF_LIBRARIES} PNG::PNG)
    endif()
  endif()
  target_sources(${target} PRIVATE ${platform}/ImageDecoder${images}.cpp)

  set(audio None)
  if(NOT WIN32)
    find_path(SNDFILE_INCLUDE_DIR sndfile.h)
    find_library(SNDFILE_LIBRARY sndfile)
    mark_as_advanced(SNDFILE_INCLUDE_DIR SNDFILE_LIBRARY)
    if(SNDFILE_INCLUDE_DIR AND SNDFILE_LIBRARY)
      set(audio Sndfile)
      target_include_directories(${target} SYSTEM PRIVATE ${SNDFILE_INCLUDE_DIR})
      target_link_libraries(${target} PRIVATE ${SNDFILE_LIBRARY})
    endif()
  endif()
  target_sources(${target} PRIVATE ${platform}/CompressedAudio${audio}.cpp)
  message(STATUS "${target}: pictures ${images}, compressed audio ${audio}")
endfunction()
