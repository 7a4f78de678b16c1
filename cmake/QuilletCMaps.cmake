# The predefined CMaps of ISO 32000-2, 9.7.5.2, in the form that the library reads: written at build time into the
# folder of what is read at run time, from the data of the package poppler-data. The build goes on without them.
find_package(Python3 QUIET COMPONENTS Interpreter)
pkg_get_variable(quilletPopplerData poppler-data poppler_datadir)
if(quilletPopplerData)
  find_path(QUILLET_CMAP_DATA Adobe-Japan1/H PATHS ${quilletPopplerData}/cMap NO_DEFAULT_PATH
    DOC "The folder whose subfolders, one a character collection, hold the predefined CMaps")
endif()

set(quilletCMapsMiss "")
if(NOT QUILLET_CMAP_DATA)
  list(APPEND quilletCMapsMiss "The data are missing: install the package poppler-data or set QUILLET_CMAP_DATA.")
elseif(NOT EXISTS ${QUILLET_CMAP_DATA}/Adobe-Japan1/H)
  list(APPEND quilletCMapsMiss "QUILLET_CMAP_DATA, ${QUILLET_CMAP_DATA}, has no Adobe-Japan1/H.")
endif()
if(NOT Python3_Interpreter_FOUND)
  list(APPEND quilletCMapsMiss "Python 3, which writes them, is missing: install the package python3.")
endif()
if(quilletCMapsMiss)
  list(JOIN quilletCMapsMiss " " quilletCMapsMiss)
  message(WARNING "The predefined CMaps will not be there. ${quilletCMapsMiss} "
    "Without them, the characters of Chinese, Japanese and Korean fonts that name one of them are not known.")
  return()
endif()

set(quilletCMaps "${PROJECT_BINARY_DIR}/share/quillet/Standard CMaps")
set(quilletCMapsStamp ${PROJECT_BINARY_DIR}/CMakeFiles/quillet_cmaps.stamp)
add_custom_command(OUTPUT ${quilletCMapsStamp}
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${quilletCMaps}
  COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tools/make-cmaps ${QUILLET_CMAP_DATA} ${quilletCMaps}
  COMMAND ${CMAKE_COMMAND} -E touch ${quilletCMapsStamp}
  DEPENDS ${PROJECT_SOURCE_DIR}/tools/make-cmaps # The data keep their dates when their package is updated.
  COMMENT "Writing the predefined CMaps"
  VERBATIM)
add_custom_target(quillet_cmaps ALL DEPENDS ${quilletCMapsStamp})
# Whoever builds one program only has them too.
add_dependencies(Quillet quillet_cmaps)
install(DIRECTORY ${quilletCMaps} DESTINATION ${CMAKE_INSTALL_DATADIR}/quillet)
