# cmake -DPROGRAM=<executable> -DFOLDER=<folder> -P PortableLibraries.cmake
# Fills the folder `lib` beside a portable executable for Linux: FOLDER gets the shared libraries that
# are always used, FOLDER/spare those that serve where a desktop has none of its own, FOLDER/LICENSES
# the licences of both. The executable looks for them in this order (see CMakeLists.txt).
cmake_minimum_required(VERSION 3.20)

# Never packed: of these, only the system's own work.
set(system
  "^ld-linux" "^lib(c|m|dl|rt|pthread|resolv|util)\\.so"  # the C library goes with its loader
  "^lib(GL|GLX|GLdispatch|OpenGL|EGL|GLESv2|drm|gbm)\\."  # they belong to the graphics driver
  "^lib(X11|X11-xcb|Xext|Xfixes|Xau|Xdmcp|xcb|xcb-.*)\\.so"  # the driver draws through them
)
# Spare, and so is what only they need: older ones than the desktop's could fail it.
set(desktop
  "^lib(pulse|asound)"  # follow the settings of the sound server that runs, and load its plugins
  "^lib(wayland-|xkbcommon|X)"  # share what they hold with drivers and the keyboard's tables
  "^lib(decor|glib)"  # load the desktop's window frames, with their toolkit
  "^lib(z|zstd|lzma|expat|ffi|bsd|stdc\\+\\+|gcc_s)\\."  # drivers and plugins load them as well
)

# needed(<variable> <expression>...): the files of all libraries that PROGRAM needs, directly or not,
# without those whose names match and what only they need.
function(needed variable)
  file(GET_RUNTIME_DEPENDENCIES EXECUTABLES ${PROGRAM}
    RESOLVED_DEPENDENCIES_VAR found UNRESOLVED_DEPENDENCIES_VAR missing PRE_EXCLUDE_REGEXES ${ARGN})
  if(missing)
    message(FATAL_ERROR "${PROGRAM} needs libraries that are not there: ${missing}")
  endif()
  set(${variable} ${found} PARENT_SCOPE)
endfunction()

# The search path of a library's own would hide the executable's from what it needs.
function(pack_library library folder)
  get_filename_component(name ${library} NAME)
  configure_file(${library} ${folder}/${name} COPYONLY)
  file(RPATH_REMOVE FILE ${folder}/${name})
endfunction()

# package_of(<variable> <library>): the name of its Debian package, or nothing.
function(package_of variable library)
  file(REAL_PATH ${library} file)
  set(package)
  find_program(DPKG_QUERY dpkg-query)
  if(DPKG_QUERY)
    # Packages may still name the folders from before /lib became a link.
    string(REGEX REPLACE "^/usr" "" short ${file})
    foreach(path IN ITEMS ${file} ${short})
      execute_process(COMMAND ${DPKG_QUERY} -S ${path} OUTPUT_VARIABLE found ERROR_QUIET)
      if(found MATCHES "^([^:, ]+)")
        set(package ${CMAKE_MATCH_1})
        break()
      endif()
    endforeach()
  endif()
  set(${variable} "${package}" PARENT_SCOPE)
endfunction()

# The licence of each library's package, the common ones that it refers to, and what came from where.
function(pack_licences)
  set(list "")
  foreach(library IN LISTS ARGN)
    package_of(package ${library})
    get_filename_component(name ${library} NAME)
    set(licence /usr/share/doc/${package}/copyright)
    if(NOT package OR NOT EXISTS ${licence})
      message(WARNING "No licence of ${library} was found: add it before you pass the package on.")
      continue()
    endif()
    execute_process(COMMAND ${DPKG_QUERY} -W
      "-f=\${Package} \${Version} (source: \${source:Package})\n" ${package}
      OUTPUT_VARIABLE origin)
    string(REGEX MATCH "[^\n]*" origin "${origin}")
    string(APPEND list "${name}: ${origin}\n")
    configure_file(${licence} ${FOLDER}/LICENSES/${package}.txt COPYONLY)
    file(STRINGS ${licence} lines REGEX "/usr/share/common-licenses/")
    string(REGEX MATCHALL "/usr/share/common-licenses/[A-Za-z0-9.-]*[A-Za-z0-9]" texts "${lines}")
    foreach(text IN LISTS texts)
      get_filename_component(title ${text} NAME)
      if(EXISTS ${text})
        configure_file(${text} ${FOLDER}/LICENSES/common/${title}.txt COPYONLY)
      endif()
    endforeach()
  endforeach()
  file(WRITE ${FOLDER}/LICENSES/LIST.txt "${list}")
endfunction()

needed(own ${system} ${desktop})
needed(all ${system})
set(spare ${all})
list(REMOVE_ITEM spare ${own})
foreach(library IN LISTS own)
  pack_library(${library} ${FOLDER})
endforeach()
foreach(library IN LISTS spare)
  pack_library(${library} ${FOLDER}/spare)
endforeach()
pack_licences(${all})
