# What is installed, in three components that become packages: `library` is what programs need to run, `development` what
# is needed to build them, `tool` the program tuvo. The installed tree may be moved as a whole.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(TUVO_DATA ${CMAKE_INSTALL_DATADIR}/tuvoutil)
set(TUVO_CMAKE ${CMAKE_INSTALL_LIBDIR}/cmake/TuvoUtil)
set(TUVO_PKGCONFIG ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# In a system's own folders nothing has to say where the libraries are.
if(NOT WIN32 AND NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
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
get_target_property(BASUTL_VERSION basutl VERSION)
foreach(NAME basutl TuvoUtil)
  configure_file(cmake/${NAME}.pc.in ${NAME}.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/${NAME}.pc DESTINATION ${TUVO_PKGCONFIG} COMPONENT development)
endforeach()

install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT development FILES_MATCHING PATTERN *.md)

# ---- Debuggers -----------------------------------------------------------------------------------------------------

# gdb reads what is named after a library when it loads that, from its own folder of such files or, when it may (see
# docs/debugging.md), from beside the library.
if(NOT WIN32)
  set(GDB_FOLDER ${CMAKE_INSTALL_LIBDIR})
  if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set(GDB_FOLDER ${CMAKE_INSTALL_DATADIR}/gdb/auto-load${CMAKE_INSTALL_FULL_LIBDIR})
  endif()
  install(FILES tools/debugger/printers.py RENAME $<TARGET_FILE_NAME:basutl>-gdb.py DESTINATION ${GDB_FOLDER}
    COMPONENT development)
endif()
install(FILES tools/debugger/TuvoUtil.natvis DESTINATION ${TUVO_DATA} COMPONENT development)

# ---- The program ---------------------------------------------------------------------------------------------------

install(TARGETS tuvo RUNTIME COMPONENT tool)
if(NOT WIN32)
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  # The manual page is made from what the program itself says about its commands.
  add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/tuvo.1
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tools/manual.py $<TARGET_FILE:tuvo> ${CMAKE_BINARY_DIR}/tuvo.1
    DEPENDS tuvo tools/manual.py VERBATIM)
  add_custom_target(manual ALL DEPENDS ${CMAKE_BINARY_DIR}/tuvo.1)
  install(FILES ${CMAKE_BINARY_DIR}/tuvo.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
  install(FILES tools/completion/tuvo.bash RENAME tuvo DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    COMPONENT tool)
endif()
