# Where built files go and how programs find their libraries, in the build tree and when installed. Both trees can be
# moved: every path between them is relative.
if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_BINDIR})
  set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR})
  set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
  set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

  if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Debug or Release" FORCE)
  endif()

  find_program(QUILLET_CCACHE ccache)
  if(QUILLET_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # What it has to be told of headers that are compiled once.
    set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${QUILLET_CCACHE})
  endif()
endif()

# In the build tree as when installed: a path to rewrite would be padded with empty ones, each a folder to look in.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
if(NOT APPLE)
  file(RELATIVE_PATH quilletLibrariesFromPrograms
    ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set(CMAKE_INSTALL_RPATH "$ORIGIN/${quilletLibrariesFromPrograms}")
endif()

# What is read at run time lies where the libraries look for it: under share, beside their own directory.
if(EXISTS ${PROJECT_SOURCE_DIR}/resources)
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/share)
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/resources ${PROJECT_BINARY_DIR}/share/quillet SYMBOLIC)
  install(DIRECTORY resources/ DESTINATION ${CMAKE_INSTALL_DATADIR}/quillet)
endif()
