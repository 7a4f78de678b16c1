# One storey of the house: a shared library that sees only its own headers and those of the storeys it names.
# quillet_storey(NAME SOURCES file... HEADERS directory [BELOW target...] [PRIVATE library...])
#
# HEADERS is the directory whose headers are installed beside the library, under their own directory's name: it is
# included as <directory/File.h> in this tree and by hosts alike.
function(quillet_storey name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "HEADERS" "SOURCES;BELOW;PRIVATE")
  if(NOT arg_SOURCES)
    message(WARNING "The storey ${name} has no source")
    file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${name}Empty.cpp CONTENT "")
    set(arg_SOURCES ${CMAKE_CURRENT_BINARY_DIR}/${name}Empty.cpp)
  endif()
  add_library(${name} SHARED ${arg_SOURCES})
  add_library(Quillet::${name} ALIAS ${name})
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_link_libraries(${name} PUBLIC ${arg_BELOW} PRIVATE ${arg_PRIVATE} quillet_options)
  cmake_path(GET arg_HEADERS PARENT_PATH includeDirectory)
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${includeDirectory}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/quillet>)
  # Nothing may be left for a higher storey to provide. The sanitizers' own symbols come with the program.
  if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT QUILLET_SANITIZE)
    target_link_options(${name} PRIVATE LINKER:-z,defs)
  endif()

  # "libKernel.so" would be anybody's.
  string(TOLOWER ${name} file)
  if(NOT file STREQUAL "quillet")
    set(file quillet-${file})
  endif()
  set_target_properties(${name} PROPERTIES
    OUTPUT_NAME ${file}
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})

  set_property(GLOBAL APPEND PROPERTY QUILLET_STOREY_FILES ${file})
  install(TARGETS ${name} EXPORT QuilletTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(DIRECTORY ${arg_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quillet
    FILES_MATCHING PATTERN "*.h")
endfunction()

# What every target of the project is compiled with, and no host.
add_library(quillet_options INTERFACE)
target_compile_options(quillet_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

set(QUILLET_SANITIZE "" CACHE STRING "Sanitizers for every target, as -fsanitize takes them")
if(QUILLET_SANITIZE)
  target_compile_options(quillet_options INTERFACE
    -fsanitize=${QUILLET_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(quillet_options INTERFACE -fsanitize=${QUILLET_SANITIZE})
endif()
