# The API reference, by the target `reference` in reference/html. What was made of it is installed.

# Writes a Doxyfile that makes the reference in a folder.
#
# tolen_configure_reference(FOLDER)
function(tolen_configure_reference folder)
  set(TOLEN_REFERENCE_FOLDER ${folder})
  set(libraries core openklwrapper effects openkl)
  list(TRANSFORM libraries REPLACE "(.+)" "\"${PROJECT_SOURCE_DIR}/libraries/\\1/include\"")
  list(JOIN libraries " " TOLEN_REFERENCE_HEADERS)
  configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${folder}/Doxyfile @ONLY)
endfunction()

find_package(Doxygen QUIET)
if(DOXYGEN_FOUND)
  set(folder ${PROJECT_BINARY_DIR}/reference)
  tolen_configure_reference(${folder})
  add_custom_target(reference
    # Pages of classes that are no more would stay.
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${folder}/html
    COMMAND Doxygen::doxygen ${folder}/Doxyfile
    # The documents are where they are from the reference that is installed.
    COMMAND ${CMAKE_COMMAND} -E create_symlink ${PROJECT_SOURCE_DIR}/docs ${folder}/docs
    COMMENT "Making the API reference in ${folder}/html"
    VERBATIM)
  install(DIRECTORY ${folder}/html/ DESTINATION ${TOLEN_DOCUMENT_FOLDER}/reference OPTIONAL)
endif()
