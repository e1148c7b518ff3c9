# The rooms of the runtime, from the lowest to the highest: a library each. A room sees the headers
# of include/ and of the rooms that it may use, so that an include that reaches higher finds
# nothing. Units are named without ending: <room>/<unit>.hpp, and <room>/<unit>.cpp or src/<unit>.cpp;
# a table that others include besides ends in .def.
# This is the only list of them.

# text, paths, files, settings
set(port_core_units
  AssetPaths ConfinedPath ExitCodes Fields FileBytes Keys Log PathEncoding RuntimeConfig ScriptHandles
  StartupLog TextFields TickInput)
# the tables that the builder writes
set(port_generated_units
  GeneratedCharacters GeneratedStages)
# pictures as plain values
set(port_pixels_uses core)
set(port_pixels_units
  AnimationScreen BmpImage DecodedImage PcxImage ScreenLayout ShaderParams SpriteImage)
# the seam to the system and its devices; a unit of several systems has a source for each
set(port_platform_uses core pixels)
set(port_platform_units
  AudioDevice AudioOutput Clock ComApartment CompressedAudio CrashHandler D3d11PostProcessor D3d11Screen
  Devices Entry ImageDecoder ImageEncoder Input PostProcessor Presentation Process
  TextFace VirtualKeys)
# the machine that runs scripts
set(port_script_uses core)
set(port_script_units
  ScriptBuiltins ScriptCalls ScriptCheck ScriptCode ScriptCompiler ScriptExec ScriptExpressions
  ScriptLexer ScriptLibrary ScriptLimits ScriptLocals ScriptMacros ScriptMemory ScriptMends ScriptOperators
  ScriptPaths ScriptPreprocessor ScriptProgram ScriptSources Scripts ScriptStatements ScriptText ScriptValue
  ScriptVM UnansweredNames)
# loading, colouring and drawing pictures
set(port_picture_uses core generated pixels platform)
set(port_picture_units
  BitmapFont BitmapGlyphs DrawList FrameCapture Painter Palette Renderer ScriptPictures ScriptSurface
  SpriteBlit SpriteCache SpriteCompositor SpriteLoading SpriteTransform TextRuns WaterSurface)
# decoding and playing sound
set(port_sound_uses core platform)
set(port_sound_units
  AudioDecoder AudioSystem EffectCache FileStamp MusicPreview SoundEffects TrackDecoder
  VolumeKeys)
# everything that changes while a game is played, as data
set(port_world_uses core generated script)
set(port_world_units
  Actor AnimationPlayer EntityList Projectile ScriptDrawing ScriptFiles ScriptState StageRun World WorldHash)
# pure functions over the world's values
set(port_rules_uses core generated world)
set(port_rules_units
  AnimationEnergy AnimationLookup AttackChains BindingOrder Boxes CameraRules Chip Commands Counter
  Defence EntityRules Factions Ground Knockdown KnownAnimations ModelFacts Movement Pixels
  Platforms PlayerSpawn RosterScan Shadows StageReach StageRules TableDerived TargetSearch WeaponItems
  Wayfinding)
# the steps of a tick
set(port_play_uses core generated rules script world)
set(port_play_units
  Bindings Blocking ChildFollowing Combat CombatStages CoopPlayers Crowd Damage Entities
  EntityAttack EntityEnd EntityFall EntityMind EntityStrikes FallingActors Flash Frames GlobalScripts Grabs Joins
  Player1 Player1Moves PlayerInput PlayerMotion Players PlayerStrikes ProjectileHits Projectiles
  Roster Spawning StageCamera StageFlow StageQueue StageSpawns Strikes Terrain Tick Weapons)
# what scripts may call
set(port_host_uses core generated picture pixels platform play rules script sound world)
set(port_host_units
  Host HostActions HostBindings HostCall HostConstants HostDrawing HostEntities HostFiles HostFunctions HostMath
  HostModels HostPlayers HostProperties HostScreens HostSound HostSpawning HostStage HostTerrain HostVariables
  KeyTable)
# from the world to what is drawn
set(port_view_uses core generated picture rules world)
set(port_view_units
  Hud Scenery StageScene)
# what a run goes through: menus, loading, the pass of play
set(port_screens_uses core generated host picture platform play rules script sound view world)
set(port_screens_units
  Autoplay Bot Campaigns CharacterSelect ControlsScreen FrontendScreens Game GameStart MainMenus MenuInput
  MenuScreens MenuText OptionsScreens Pilot PlayScreen Playtest PlaytestReport Progress Recording
  Replay SavedGame ScriptPreparation Settings SmokeRun StageLoading StageShows TimedShow)
# the loop over the screens, and the program around it
set(port_engine_uses
  core generated host picture platform play rules screens script sound view world)
set(port_engine_units
  Engine Startup)

set(port_rooms core generated pixels platform script picture sound world rules play host view
  screens engine)

# port_room_files(<variable> <folder of the runtime>): the headers and sources of all rooms, of every
# system, relative to the folder.
function(port_room_files variable folder)
  set(files)
  foreach(room IN LISTS port_rooms)
    foreach(unit IN LISTS port_${room}_units)
      file(GLOB found RELATIVE ${folder}
        ${folder}/${room}/${unit}.hpp ${folder}/include/${unit}.hpp
        ${folder}/${room}/${unit}.cpp ${folder}/src/${unit}.cpp ${folder}/${room}/${unit}.def)
      if(room STREQUAL "platform")
        file(GLOB backends RELATIVE ${folder} ${folder}/platform/${unit}[A-Z]*.cpp)
        list(APPEND found ${backends})
      endif()
      if(NOT found)
        message(FATAL_ERROR "The unit ${unit} of the room ${room} has no file.")
      endif()
      list(APPEND files ${found})
    endforeach()
  endforeach()
  list(REMOVE_DUPLICATES files)
  set(${variable} ${files} PARENT_SCOPE)
endfunction()

# What a program on Windows has beside its code: icon, manifest, version.
set(port_resource_files platform/windows.ico platform/windows.manifest platform/windows.rc)

# port_resources(<target> <folder of the runtime> <name> <file> <version, numbers with commas>): does
# nothing for other systems.
function(port_resources target folder name file version)
  if(NOT WIN32)
    return()
  endif()
  enable_language(RC)
  set(copy ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  set(PROGRAM_NAME "${name}")
  set(PROGRAM_FILE "${file}")
  set(PROGRAM_VERSION "${version}")
  configure_file(${folder}/platform/windows.rc ${copy} @ONLY)
  set_source_files_properties(${copy} PROPERTIES OBJECT_DEPENDS
    "${folder}/platform/windows.ico;${folder}/platform/windows.manifest")
  target_sources(${target} PRIVATE ${copy})
  # As much stack as other systems give: compilers disagree, and all give less.
  if(MSVC)
    target_link_options(${target} PRIVATE /STACK:8388608 /MANIFEST:NO)  # there is one already
  else()
    target_link_options(${target} PRIVATE LINKER:--stack,8388608)
  endif()
endfunction()

# port_add_rooms(<folder of the runtime> [<library>...]): a library port_<room> for each, linked with
# the libraries given. The tables' sources and the entry belong to the program.
function(port_add_rooms folder)
  foreach(room IN LISTS port_rooms)
    set(sources)
    foreach(unit IN LISTS port_${room}_units)
      foreach(source IN ITEMS ${folder}/${room}/${unit}.cpp ${folder}/src/${unit}.cpp)
        if(EXISTS ${source} AND NOT room STREQUAL "generated")
          list(APPEND sources ${source})
        endif()
      endforeach()
    endforeach()
    set(uses)
    foreach(used IN LISTS port_${room}_uses)
      list(APPEND uses port_${used})
    endforeach()
    if(sources OR room STREQUAL "platform")
      set(scope PUBLIC)
      add_library(port_${room} STATIC ${sources})
      target_link_libraries(port_${room} PRIVATE ${ARGN})
    else()
      set(scope INTERFACE)
      add_library(port_${room} INTERFACE)
    endif()
    # Worlds agree across processors only without fused multiplications, also where another source
    # compiles an inline function of the room.
    if(MSVC)
      target_compile_options(port_${room} ${scope} /utf-8 /fp:precise /Zc:preprocessor)
    else()
      target_compile_options(port_${room} ${scope} -ffp-contract=off)
    endif()
    target_include_directories(port_${room} ${scope} ${folder}/include ${folder}/${room})
    target_link_libraries(port_${room} ${scope} ${uses})
  endforeach()
  port_platform_sources(port_platform ${folder}/platform)
endfunction()

# One unit a room: that takes a third of the compiler's work, and the largest unit is a quarter of it.
# All names in the anonymous namespaces of a room are therefore different. System headers stay apart,
# since their macros would reach the next source.
function(port_unite_rooms)
  foreach(room IN LISTS port_rooms)
    get_target_property(type port_${room} TYPE)
    if(NOT room STREQUAL "platform" AND NOT type STREQUAL "INTERFACE_LIBRARY")
      set_target_properties(port_${room} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 0)
    endif()
  endforeach()
endfunction()

# What a port takes from the system and from libraries where they are found. Without them it still
# builds: without a window it runs headless, pictures are white, and compressed music is silent.

function(port_backend target folder unit backend)
  target_sources(${target} PRIVATE ${folder}/${unit}${backend}.cpp)
  message(STATUS "${unit}: ${backend}")
endfunction()

function(port_image_backends target folder)
  set(decoder None)
  set(encoder None)
  if(WIN32)
    set(decoder Wic)
    set(encoder Wic)
    target_link_libraries(${target} PRIVATE windowscodecs ole32)
  else()
    find_package(GIF 5 QUIET)
    find_package(PNG 1.6 QUIET)
    if(GIF_FOUND AND PNG_FOUND)
      set(decoder Libraries)
      target_include_directories(${target} SYSTEM PRIVATE ${GIF_INCLUDE_DIRS})
      target_link_libraries(${target} PRIVATE ${GIF_LIBRARIES})
    endif()
    if(PNG_FOUND)
      set(encoder Png)
      target_link_libraries(${target} PRIVATE PNG::PNG)
    endif()
  endif()
  port_backend(${target} ${folder} ImageDecoder ${decoder})
  port_backend(${target} ${folder} ImageEncoder ${encoder})
endfunction()

function(port_sound_backends target folder)
  # Music is decoded beside the game.
  find_package(Threads REQUIRED)
  target_link_libraries(${target} PUBLIC Threads::Threads)
  set(decoder None)
  set(output None)
  if(WIN32)
    set(decoder MediaFoundation)
    set(output XAudio2)
    target_link_libraries(${target} PRIVATE mfuuid
      $<IF:$<BOOL:${MINGW}>,xaudio2_8,xaudio2> ole32)
  else()
    find_path(SNDFILE_INCLUDE_DIR sndfile.h)
    find_library(SNDFILE_LIBRARY sndfile)
    mark_as_advanced(SNDFILE_INCLUDE_DIR SNDFILE_LIBRARY)
    if(SNDFILE_INCLUDE_DIR AND SNDFILE_LIBRARY)
      set(decoder Sndfile)
      target_include_directories(${target} SYSTEM PRIVATE ${SNDFILE_INCLUDE_DIR})
      target_link_libraries(${target} PRIVATE ${SNDFILE_LIBRARY})
    endif()
    find_package(OpenAL QUIET)
    # OpenAL Soft's own extensions are needed.
    if(OPENAL_FOUND AND EXISTS ${OPENAL_INCLUDE_DIR}/alext.h)
      set(output OpenAl)
      target_include_directories(${target} SYSTEM PRIVATE ${OPENAL_INCLUDE_DIR})
      target_link_libraries(${target} PRIVATE ${OPENAL_LIBRARY})
    endif()
  endif()
  port_backend(${target} ${folder} CompressedAudio ${decoder})
  port_backend(${target} ${folder} AudioOutput ${output})
endfunction()

function(port_window_backends target folder)
  set(window None)
  set(text None)
  if(WIN32)
    set(window Windows)
    set(text DirectWrite)
    port_backend(${target} ${folder} D3d11PostProcessor Windows)
    port_backend(${target} ${folder} D3d11Screen Windows)
    # Of the versions of XInput this is the one that every system has.
    target_link_libraries(${target} PRIVATE
      d3d11 dxgi d3dcompiler dxguid d2d1 dwrite gdi32 user32 ole32 xinput9_1_0)
  else()
    find_package(SDL2 QUIET)
    find_package(SDL2_ttf 2.0.18 QUIET)
    find_package(Fontconfig QUIET)
    if(TARGET SDL2::SDL2)
      set(window Sdl)
      target_link_libraries(${target} PRIVATE SDL2::SDL2)
      port_backend(${target} ${folder} PostProcessor Gl)
      port_backend(${target} ${folder} VirtualKeys Sdl)
    endif()
    if(TARGET SDL2::SDL2 AND TARGET SDL2_ttf::SDL2_ttf AND TARGET Fontconfig::Fontconfig)
      set(text Sdl)
      target_link_libraries(${target} PRIVATE SDL2_ttf::SDL2_ttf Fontconfig::Fontconfig)
    endif()
  endif()
  port_backend(${target} ${folder} Input ${window})
  port_backend(${target} ${folder} Presentation ${window})
  port_backend(${target} ${folder} TextFace ${text})
endfunction()

function(port_platform_sources target folder)
  if(WIN32)
    set(system Windows)
    # Not every compiler keeps the system's macros from taking the place of std::min and std::max.
    target_compile_definitions(${target} PUBLIC NOMINMAX)
  else()
    set(system Posix)
  endif()
  foreach(unit IN ITEMS Clock CrashHandler Process)
    port_backend(${target} ${folder} ${unit} ${system})
  endforeach()
  port_window_backends(${target} ${folder})
  port_image_backends(${target} ${folder})
  port_sound_backends(${target} ${folder})
endfunction()

# port_program(<target> <folder of the runtime>): its entry; the caller brings the tables.
function(port_program target folder)
  add_executable(${target} WIN32 ${folder}/src/main.cpp
    ${folder}/platform/Entry$<IF:$<BOOL:${WIN32}>,Windows,Posix>.cpp)
  target_link_libraries(${target} PRIVATE port_engine)
  port_resources(${target} ${folder} "OpenBOR Port" "OpenBOR-Port.exe" "1,0,0,0")
  if(MINGW)
    target_link_options(${target} PRIVATE -static -static-libgcc -static-libstdc++ -municode)
  endif()
endfunction()
