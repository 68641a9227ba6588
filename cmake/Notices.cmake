# What becomes part of our binaries and wants its copyright notice in all copies: TUVO_NOTICES is a text with the notices of
# what is found on this system.

set(TUVO_NOTICES "${PROJECT_DESCRIPTION}.

Copyright ${CPACK_PACKAGE_VENDOR}

The binaries hold parts of what follows, each under its own terms.
")

# Adds the notice of a file, or the part of it that matches an expression.
function(add_notice NAME FILE)
  set(NOTICE "")
  if(EXISTS "${FILE}")
    file(READ "${FILE}" NOTICE)
  endif()
  if(ARGC GREATER 2)
    string(REGEX MATCH "${ARGV2}" NOTICE "${NOTICE}")
  endif()
  if(NOTICE STREQUAL "")
    message(STATUS "packages cannot be made here: no notice of ${NAME} in ${FILE}")
  endif()
  string(APPEND TUVO_NOTICES "\n======== ${NAME} ========\n\n${NOTICE}\n")
  set(TUVO_NOTICES "${TUVO_NOTICES}" PARENT_SCOPE)
endfunction()

add_notice("CLI11, in tuvo" /usr/share/doc/libcli11-dev/copyright)
add_notice("stb_image, in libTuvoUtil" /usr/share/doc/libstb-dev/copyright)
if(WIN32)
  add_notice("pugixml, in basutl" ${PUGIXML_SOURCE}/LICENSE.md)
  add_notice("mingw-w64, in all" /usr/share/doc/mingw-w64-common/copyright)
else()
  add_notice("libbacktrace, in both libraries" ${BACKTRACE_INCLUDE}/backtrace.h "^/[*].*SUCH DAMAGE")
endif()
