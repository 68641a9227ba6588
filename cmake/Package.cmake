# What CPack is told about packages: three .deb for Linux (library, development files, program), one .zip for Windows.

set(CPACK_PACKAGE_NAME tuvoutil)
set(CPACK_PACKAGE_VENDOR "TuvoUtil developers")
set(CPACK_PACKAGE_CONTACT "TuvoUtil developers <tuvoutil@localhost>")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_VERBATIM_VARIABLES ON)

if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME TuvoUtil-${PROJECT_VERSION}-windows-x86_64)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
  set(CPACK_COMPONENTS_ALL library development tool)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
  # Programs that are packaged against the library get a dependency on it; ldconfig is told of it.
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)  # later libraries run what was built with this one
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

  set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libtuvoutil${PROJECT_VERSION_MAJOR})
  set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS bzip2)  # unpacks what is asked for; gzip is in every system
  set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "${PROJECT_DESCRIPTION}
Messages, tracked memory and leak checking, physical units, an evaluator,
texts and lists of ids, files, report tables.")

  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtuvoutil-dev)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
  set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
  set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Utility library for engineering simulation - development files
Headers, CMake and pkg-config files, documentation and debugger support.")

  set(CPACK_DEBIAN_TOOL_PACKAGE_NAME tuvo)
  set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION science)
  set(CPACK_COMPONENT_TOOL_DEPENDS library)
  set(CPACK_COMPONENT_TOOL_DESCRIPTION "Unit conversion and other services for engineering models
Shows what finite-element decks hold, converts models and quantities between
unit systems, expands lists of ids, evaluates expressions, computes checksums,
sums up leak reports and chronometers.")
endif()
