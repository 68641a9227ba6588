# Run when pages have been installed: their links to headers and to the catalogue lead to where those are installed.

set(ROOT $ENV{DESTDIR}${CMAKE_INSTALL_PREFIX})
file(GLOB_RECURSE PAGES ${ROOT}/${DOCS}/*.md)
foreach(PAGE ${PAGES})
  cmake_path(GET PAGE PARENT_PATH FOLDER)
  file(READ ${PAGE} TEXT)
  foreach(PLACE HEADERS DATA)
    file(RELATIVE_PATH ${PLACE}_FROM_PAGE ${FOLDER} ${ROOT}/${${PLACE}})
  endforeach()
  string(REGEX REPLACE "\\]\\(([.][.]/)*include/" "](${HEADERS_FROM_PAGE}/" TEXT "${TEXT}")
  string(REGEX REPLACE "\\]\\(([.][.]/)*data/" "](${DATA_FROM_PAGE}/" TEXT "${TEXT}")
  file(WRITE ${PAGE} "${TEXT}")
endforeach()
