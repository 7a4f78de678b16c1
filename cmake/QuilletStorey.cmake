# One storey of the house: objects that see only their own headers and those of the storeys they name.
# quillet_storey(NAME SOURCES file... HEADERS directory [BELOW target...] [PRIVATE library...])
#
# HEADERS is the directory whose headers are installed, under their own directory's name: it is included as
# <directory/File.h> in this tree and by hosts alike.
function(quillet_storey name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "HEADERS" "SOURCES;BELOW;PRIVATE")
  add_library(${name} OBJECT ${arg_SOURCES})
  target_compile_features(${name} PUBLIC cxx_std_20)
  set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_link_libraries(${name} PUBLIC ${arg_BELOW} PRIVATE ${arg_PRIVATE} quillet_options)
  cmake_path(GET arg_HEADERS PARENT_PATH includeDirectory)
  target_include_directories(${name} PUBLIC ${includeDirectory})
  quillet_precompile(${name})
  set_property(GLOBAL APPEND PROPERTY QUILLET_STOREYS ${name})
  set_property(GLOBAL APPEND PROPERTY QUILLET_INCLUDES ${includeDirectory})
  install(DIRECTORY ${arg_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quillet
    FILES_MATCHING PATTERN "*.h")

  # A library of this storey and of those below: nothing may be left for a higher one to provide.
  if(QUILLET_CHECK_STOREYS)
    list(TRANSFORM arg_BELOW APPEND "UpToHere")
    add_library(${name}UpToHere SHARED $<TARGET_OBJECTS:${name}>)
    target_link_libraries(${name}UpToHere PUBLIC ${arg_BELOW} PRIVATE ${arg_PRIVATE} quillet_options)
    target_link_options(${name}UpToHere PRIVATE LINKER:-z,defs)
  endif()
endfunction()

# The library of all storeys: one, since a process pays for each that it loads.
function(quillet_library name)
  get_property(storeys GLOBAL PROPERTY QUILLET_STOREYS)
  get_property(includes GLOBAL PROPERTY QUILLET_INCLUDES)
  list(REMOVE_DUPLICATES includes)
  add_library(${name} SHARED)
  add_library(Quillet::${name} ALIAS ${name})
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_link_libraries(${name} PRIVATE ${storeys})
  foreach(directory IN LISTS includes)
    target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${directory}>)
  endforeach()
  target_include_directories(${name} PUBLIC $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/quillet>)
  # Its own functions are not looked up by name when it is loaded, and what only moves with it is packed.
  foreach(flag -Bsymbolic-functions -z,pack-relative-relocs)
    string(MAKE_C_IDENTIFIER "QUILLET_LINKS_${flag}" variable)
    check_linker_flag(CXX LINKER:${flag} ${variable})
    if(${variable})
      target_link_options(${name} PRIVATE LINKER:${flag})
    endif()
  endforeach()
  string(TOLOWER ${name} file)
  set_target_properties(${name} PROPERTIES
    OUTPUT_NAME ${file}
    LINKER_LANGUAGE CXX
    INSTALL_RPATH ""
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
  install(TARGETS ${name} EXPORT QuilletTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()

# What every target of the project is compiled with, and no host.
add_library(quillet_options INTERFACE)
target_compile_options(quillet_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# quillet_precompile(TARGET header...): for builds that only check. A build without it says which include is missing.
function(quillet_precompile name)
  if(QUILLET_PRECOMPILE)
    target_precompile_headers(${name} PRIVATE <algorithm> <array> <cmath> <cstdint> <functional> <map> <memory>
      <optional> <span> <string> <string_view> <unordered_map> <utility> <vector> ${ARGN})
    # Else the compiler's cache would take each build's header for another one.
    target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>)
  endif()
endfunction()

set(QUILLET_SANITIZE "" CACHE STRING "Sanitizers for every target, as -fsanitize takes them")
if(QUILLET_SANITIZE)
  target_compile_options(quillet_options INTERFACE
    -fsanitize=${QUILLET_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(quillet_options INTERFACE -fsanitize=${QUILLET_SANITIZE})
endif()
