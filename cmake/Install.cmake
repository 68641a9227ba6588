# What is installed, in three components that become packages: `library` is what programs need to run, `development` what
# is needed to build them, `tool` the program tuvo. The installed tree may be moved as a whole.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(TUVO_DATA ${CMAKE_INSTALL_DATADIR}/tuvoutil)
set(TUVO_CMAKE ${CMAKE_INSTALL_LIBDIR}/cmake/TuvoUtil)
set(TUVO_PKGCONFIG ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(TUVO_DOCS ${CMAKE_INSTALL_DOCDIR})

# In a system's own folders nothing has to say where the libraries are, and a distribution has its own rules.
set(TUVO_IN_SYSTEM OFF)
if(NOT WIN32 AND CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  set(TUVO_IN_SYSTEM ON)
  set(TUVO_DOCS ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME})
elseif(NOT WIN32)
  file(RELATIVE_PATH LIBRARIES_FROM_PROGRAMS /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(TuvoUtil PROPERTIES INSTALL_RPATH "$ORIGIN")
  set_target_properties(tuvo PROPERTIES INSTALL_RPATH "$ORIGIN/${LIBRARIES_FROM_PROGRAMS}")
endif()

# ---- The library ---------------------------------------------------------------------------------------------------

install(TARGETS TuvoUtil basutl EXPORT TuvoUtilTargets
  RUNTIME COMPONENT library
  LIBRARY COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(FILES data/unit.xml DESTINATION ${TUVO_DATA} COMPONENT library)

# ---- Building with it ----------------------------------------------------------------------------------------------

install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development FILES_MATCHING PATTERN *.h)

install(EXPORT TuvoUtilTargets NAMESPACE TuvoUtil:: DESTINATION ${TUVO_CMAKE} COMPONENT development)
configure_package_config_file(cmake/TuvoUtilConfig.cmake.in TuvoUtilConfig.cmake
  INSTALL_DESTINATION ${TUVO_CMAKE} PATH_VARS TUVO_DATA NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(TuvoUtilConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/TuvoUtilConfig.cmake ${CMAKE_BINARY_DIR}/TuvoUtilConfigVersion.cmake
  DESTINATION ${TUVO_CMAKE} COMPONENT development)

file(RELATIVE_PATH PREFIX_FROM_PKGCONFIG /${TUVO_PKGCONFIG} /)
string(REGEX REPLACE "/$" "" PREFIX_FROM_PKGCONFIG "${PREFIX_FROM_PKGCONFIG}")
get_target_property(BASUTL_VERSION basutl VERSION)
foreach(NAME basutl TuvoUtil)
  configure_file(cmake/${NAME}.pc.in ${NAME}.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/${NAME}.pc DESTINATION ${TUVO_PKGCONFIG} COMPONENT development)
endforeach()

# ---- Documentation -------------------------------------------------------------------------------------------------

# The pages, with the programs and pictures that they show.
install(FILES README.md CHANGELOG.md CONTRIBUTING.md DESTINATION ${TUVO_DOCS} COMPONENT development)
install(DIRECTORY docs/ DESTINATION ${TUVO_DOCS}/docs COMPONENT development
  FILES_MATCHING PATTERN *.md PATTERN *.png PATTERN reference EXCLUDE)
install(DIRECTORY examples DESTINATION ${TUVO_DOCS} COMPONENT development
  FILES_MATCHING PATTERN *.cpp PATTERN *.txt PATTERN CMakeLists.txt EXCLUDE)
install(DIRECTORY tests/consumer DESTINATION ${TUVO_DOCS}/tests COMPONENT development)
install(CODE "set(DOCS ${TUVO_DOCS})\nset(HEADERS ${CMAKE_INSTALL_INCLUDEDIR})\nset(DATA ${TUVO_DATA})" COMPONENT development)
install(SCRIPT cmake/InstalledLinks.cmake COMPONENT development)

# Debian wants the notices and a changelog of its own form in each package, and what is long compressed.
include(cmake/Notices.cmake)
file(WRITE ${CMAKE_BINARY_DIR}/copyright "${TUVO_NOTICES}")
if(TUVO_IN_SYSTEM)
  string(TIMESTAMP TODAY "%a, %d %b %Y %H:%M:%S +0000" UTC)
  configure_file(cmake/changelog.in changelog @ONLY)
  execute_process(COMMAND gzip -9nf ${CMAKE_BINARY_DIR}/changelog COMMAND_ERROR_IS_FATAL ANY)
  foreach(COMPONENT ${CPACK_COMPONENTS_ALL})
    string(TOUPPER ${COMPONENT} NAME)
    install(FILES ${CMAKE_BINARY_DIR}/copyright ${CMAKE_BINARY_DIR}/changelog.gz
      DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${NAME}_PACKAGE_NAME} COMPONENT ${COMPONENT})
  endforeach()
else()
  install(FILES ${CMAKE_BINARY_DIR}/copyright DESTINATION ${TUVO_DOCS} COMPONENT library)
endif()

# ---- Debuggers -----------------------------------------------------------------------------------------------------

# gdb reads what is named after a library when it loads that, from its own folder of such files or, when it may (see
# docs/debugging.md), from beside the library.
set(GDB_FOLDER ${CMAKE_INSTALL_LIBDIR})
if(WIN32)
  set(GDB_FOLDER ${CMAKE_INSTALL_BINDIR})
elseif(TUVO_IN_SYSTEM)
  set(GDB_FOLDER ${CMAKE_INSTALL_DATADIR}/gdb/auto-load${CMAKE_INSTALL_FULL_LIBDIR})
endif()
install(FILES tools/debugger/printers.py RENAME $<TARGET_FILE_NAME:basutl>-gdb.py DESTINATION ${GDB_FOLDER}
  COMPONENT development)
install(FILES tools/debugger/TuvoUtil.natvis DESTINATION ${TUVO_DATA} COMPONENT development)

# ---- The program ---------------------------------------------------------------------------------------------------

install(TARGETS tuvo RUNTIME COMPONENT tool)
if(NOT WIN32)
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  # The manual page is made from what the program itself says about its commands.
  add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/tuvo.1
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tools/manual.py $<TARGET_FILE:tuvo> ${CMAKE_BINARY_DIR}/tuvo.1
    DEPENDS tuvo tools/manual.py VERBATIM)
  set(MANUAL ${CMAKE_BINARY_DIR}/tuvo.1)
  if(TUVO_IN_SYSTEM)
    add_custom_command(OUTPUT ${MANUAL}.gz COMMAND gzip -9nkf ${MANUAL} DEPENDS ${MANUAL} VERBATIM)
    string(APPEND MANUAL .gz)
  endif()
  add_custom_target(manual ALL DEPENDS ${MANUAL})
  install(FILES ${MANUAL} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
  install(FILES tools/completion/tuvo.bash RENAME tuvo DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    COMPONENT tool)
endif()
