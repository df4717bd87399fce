# The entry of software catalogues before its translation, with the releases of the changelog. The packager's
# addresses are left out unless they are given.
set(TIDEWELL_HOMEPAGE "" CACHE STRING "Address of the project's page, for software catalogues")
set(TIDEWELL_PICTURES "" CACHE STRING "Address below which docs/images is on the web, for software catalogues")

set(template ${CMAKE_CURRENT_LIST_DIR}/com.halden.Tidewell.metainfo.xml.in)
set(changelog ${CMAKE_CURRENT_LIST_DIR}/../CHANGELOG.md)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${template} ${changelog})

file(STRINGS ${changelog} headings REGEX "^## [0-9.]+ - [0-9-]+$")
if(NOT headings MATCHES "## ${PROJECT_VERSION} - ")
  string(TIMESTAMP today "%Y-%m-%d" UTC) # of SOURCE_DATE_EPOCH, if that is set
  list(PREPEND headings "## ${PROJECT_VERSION} - ${today}") # a package of what is not released yet
endif()
set(TIDEWELL_RELEASES "")
foreach(heading ${headings})
  string(REGEX MATCH "^## (.+) - (.+)$" heading ${heading})
  string(APPEND TIDEWELL_RELEASES "    <release version=\"${CMAKE_MATCH_1}\" date=\"${CMAKE_MATCH_2}\"/>\n")
endforeach()

file(READ ${template} entry)
if(NOT TIDEWELL_HOMEPAGE)
  string(REGEX REPLACE "  <url type=\"homepage\">[^\n]*\n" "" entry "${entry}")
endif()
if(NOT TIDEWELL_PICTURES)
  string(REGEX REPLACE "  <screenshots>.*</screenshots>\n" "" entry "${entry}")
endif()
file(CONFIGURE OUTPUT com.halden.Tidewell.metainfo.xml.in CONTENT "${entry}" @ONLY)
