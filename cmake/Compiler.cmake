# Flags that every target is built with, and the one function that makes a library in its two forms.

if(WIN32)
  set(TUVO_SYSTEM windows)
else()
  set(TUVO_SYSTEM posix)
endif()

add_library(tuvo_flags INTERFACE)
target_compile_options(tuvo_flags INTERFACE
  -Wall -Wextra -Wshadow -Wconversion -Wold-style-cast -Werror
  -ffp-contract=off  # contraction changes truncated results
  -fno-semantic-interposition)
if(NOT WIN32)
  # Shared libraries alone: programs must show the sanitizers' own symbols.
  target_link_options(tuvo_flags INTERFACE
    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:-Wl,-Bsymbolic-functions;-Wl,--exclude-libs,ALL>)
endif()

set(TUVO_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")

# Hardening: an attacker, or a wild write, ends the process instead of taking it over. Windows images have their part of it
# from the linker by itself.
if(NOT WIN32)
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
  target_compile_options(tuvo_flags INTERFACE -fstack-protector-strong -fstack-clash-protection)
  # Checked forms of the C functions need optimisation, and are in the sanitizers' way.
  if(NOT TUVO_SANITIZE)
    target_compile_options(tuvo_flags INTERFACE
      $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
  endif()
  target_link_options(tuvo_flags INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
endif()

if(TUVO_SANITIZE)
  add_compile_options(-fsanitize=${TUVO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TUVO_SANITIZE})
  # Under the sanitizers gcc takes members of its own <regex> for uninitialized.
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

# Makes the shared library NAME and, for the tests of its internals, the archive NAME_static from the same objects.
# PREFIX is that of its export macro: PREFIX_BUILD exports, PREFIX_STATIC neither exports nor imports.
function(add_shared_and_static NAME SOURCES PREFIX VERSION)
  string(REGEX MATCH "^[0-9]+" MAJOR ${VERSION})
  add_library(${NAME}_objects OBJECT ${SOURCES})
  # BASUTL_STATIC: calls into basutl go through the import library's thunks, so that the objects fit both forms.
  target_compile_definitions(${NAME}_objects PRIVATE ${PREFIX}_BUILD BASUTL_STATIC)
  target_include_directories(${NAME}_objects PUBLIC ${PROJECT_SOURCE_DIR}/include PRIVATE ${PROJECT_SOURCE_DIR})
  target_link_libraries(${NAME}_objects PRIVATE tuvo_flags pugixml::pugixml)

  add_library(${NAME} SHARED $<TARGET_OBJECTS:${NAME}_objects>)
  set_target_properties(${NAME} PROPERTIES VERSION ${VERSION} SOVERSION ${MAJOR} LINKER_LANGUAGE CXX)
  if(WIN32)
    set_target_properties(${NAME} PROPERTIES PREFIX "")
  else()
    set(VERSION_NODE ${PREFIX}_${MAJOR})
    configure_file(cmake/exports.map.in ${NAME}.map @ONLY)
    target_link_options(${NAME} PRIVATE -Wl,--version-script,${CMAKE_CURRENT_BINARY_DIR}/${NAME}.map)
    set_target_properties(${NAME} PROPERTIES LINK_DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/${NAME}.map)
  endif()
  target_compile_features(${NAME} PUBLIC cxx_std_20)
  target_include_directories(${NAME} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:include>)
  target_link_libraries(${NAME} PRIVATE tuvo_flags)

  add_library(${NAME}_static STATIC EXCLUDE_FROM_ALL $<TARGET_OBJECTS:${NAME}_objects>)
  set_target_properties(${NAME}_static PROPERTIES LINKER_LANGUAGE CXX)
  target_compile_definitions(${NAME}_static INTERFACE ${PREFIX}_STATIC)
  target_include_directories(${NAME}_static PUBLIC ${PROJECT_SOURCE_DIR}/include)
endfunction()
