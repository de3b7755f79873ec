# One Debian package of all that is installed, made by scripts/package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tolen-effects)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "The developers of TolenEffects <developers@tolen-effects.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "running ray-tracing programs from shading-language source")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"A C++ library that composes shaders written in KLSL to programs, keeps their
 values current and compiles again only when their structure changes; with an
 embedded ray tracer that runs them, shader libraries and programs for scenes.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS graphviz)
set(CPACK_STRIP_FILES ON)
# The programs and the library of the ray tracer look for what was built here first.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
include(CPack)
