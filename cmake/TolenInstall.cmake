# What `cmake --install` puts where: versioned libraries with their headers, a CMake package, files
# for pkg-config, the shader libraries, files for editors, examples and documents. Programs install
# themselves with tolen_install_program.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(TOLEN_PACKAGE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/TolenEffects)
set(TOLEN_SHARE_FOLDER ${CMAKE_INSTALL_DATADIR}/tolen-effects)
set(TOLEN_DOCUMENT_FOLDER ${CMAKE_INSTALL_DATADIR}/doc/tolen-effects)

# Installs a library of ours with the headers below its include/. A shared one shows what its
# exports.map says.
#
# tolen_install_library(TARGET COMPONENT [REQUIRES PKGCONFIG_MODULE...])
#   COMPONENT  its name within the CMake package: TolenEffects::COMPONENT
#   REQUIRES   modules of pkg-config that its headers need
function(tolen_install_library target component)
  cmake_parse_arguments(PARSE_ARGV 2 library "" "DESCRIPTION" "REQUIRES")
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${component})
  add_library(TolenEffects::${component} ALIAS ${target})
  install(TARGETS ${target} EXPORT TolenEffects
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

  get_target_property(type ${target} TYPE)
  set(flags "")
  if(type STREQUAL "SHARED_LIBRARY")
    # Before 1.0 every minor version may break what was built against the one before.
    # The libraries find each other, wherever they are put.
    set_target_properties(${target} PROPERTIES
      INSTALL_RPATH $ORIGIN
      VERSION ${PROJECT_VERSION}
      SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
    set(exports ${CMAKE_CURRENT_SOURCE_DIR}/exports.map)
    target_link_options(${target} PRIVATE LINKER:--version-script=${exports})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${exports})
    set(flags "-L\${libdir} -l${target}")
  endif()
  string(REGEX REPLACE "([a-z])([A-Z])" "\\1-\\2" module ${target})
  string(TOLOWER ${module} module)
  string(REPLACE "open-kl" "openkl-" module ${module})
  string(REGEX REPLACE "-$" "" module ${module})
  list(JOIN library_REQUIRES " " requires)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/library.pc.in
    ${PROJECT_BINARY_DIR}/pkgconfig/${module}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/pkgconfig/${module}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

# Installs a program, which finds the libraries beside its own folder, with its manual page and what
# bash needs to complete its options, which are those of the page.
#
# tolen_install_program(TARGET [COMMANDS COMMAND...])
function(tolen_install_program target)
  cmake_parse_arguments(PARSE_ARGV 1 program "" "" "COMMANDS")
  file(RELATIVE_PATH toLibraries /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${toLibraries}")
  install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

  set(page ${PROJECT_SOURCE_DIR}/docs/man/${target}.1)
  install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${page})
  file(READ ${page} text)
  string(REGEX MATCHALL "\\\\-\\\\-[a-z-]+(\\\\-[a-z-]+)*" options "${text}")
  list(TRANSFORM options REPLACE "\\\\" "")
  list(REMOVE_DUPLICATES options)
  list(JOIN options " " options)
  list(JOIN program_COMMANDS " " commands)
  string(MAKE_C_IDENTIFIER ${target} function)
  configure_file(${PROJECT_SOURCE_DIR}/tools/completions/complete.bash.in
    ${PROJECT_BINARY_DIR}/completions/${target} @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/completions/${target}
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
endfunction()

# The CMake package, once all libraries are known.
function(tolen_install_package)
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/TolenEffectsConfig.cmake.in
    ${PROJECT_BINARY_DIR}/cmake/TolenEffectsConfig.cmake
    INSTALL_DESTINATION ${TOLEN_PACKAGE_FOLDER}
    PATH_VARS TOLEN_SHARE_FOLDER)
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/cmake/TolenEffectsConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
  install(EXPORT TolenEffects NAMESPACE TolenEffects:: FILE TolenEffectsTargets.cmake
    DESTINATION ${TOLEN_PACKAGE_FOLDER})
  install(FILES ${PROJECT_BINARY_DIR}/cmake/TolenEffectsConfig.cmake
    ${PROJECT_BINARY_DIR}/cmake/TolenEffectsConfigVersion.cmake
    DESTINATION ${TOLEN_PACKAGE_FOLDER})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/shaders DESTINATION ${TOLEN_SHARE_FOLDER}
    FILES_MATCHING PATTERN *.klsl)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/editors DESTINATION ${TOLEN_SHARE_FOLDER}
    FILES_MATCHING PATTERN *.json)
  # Beside the shaders, which the scenes find by ../../shaders.
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION ${TOLEN_SHARE_FOLDER}
    PATTERN examples/CMakeLists.txt EXCLUDE)
  install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
    ${PROJECT_SOURCE_DIR}/CONTRIBUTING.md DESTINATION ${TOLEN_DOCUMENT_FOLDER})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs DESTINATION ${TOLEN_DOCUMENT_FOLDER}
    PATTERN docs/man EXCLUDE PATTERN docs/Doxyfile.in EXCLUDE PATTERN docs/reference.sed EXCLUDE)
endfunction()
