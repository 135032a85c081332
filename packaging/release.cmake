# SPDX-License-Identifier: GPL-3.0-or-later
# What NEWS says of the newest release, as AppStream wants it: RELEASE_DATE, and RELEASE_CHANGES, its items as XML.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/NEWS)
file(READ ${PROJECT_SOURCE_DIR}/NEWS RELEASE_CHANGES)
if(NOT RELEASE_CHANGES MATCHES "^Version ([0-9.]+)\n~+\nReleased: ([0-9]+-[0-9]+-[0-9]+)\n")
  message(FATAL_ERROR "NEWS does not begin with a release: \"Version …\", a line below it, \"Released: …\"")
endif()
set(RELEASE_DATE ${CMAKE_MATCH_2})
if(NOT CMAKE_MATCH_1 VERSION_EQUAL PROJECT_VERSION)
  message(FATAL_ERROR "The newest release in NEWS is ${CMAKE_MATCH_1}, but the project's version ${PROJECT_VERSION}")
endif()
string(REGEX REPLACE "\nVersion .*" "\n" RELEASE_CHANGES "${RELEASE_CHANGES}")  # earlier releases
string(REPLACE "\n   " " " RELEASE_CHANGES "${RELEASE_CHANGES}")  # items of several lines
string(REPLACE "&" "&amp;" RELEASE_CHANGES "${RELEASE_CHANGES}")
string(REPLACE "<" "&lt;" RELEASE_CHANGES "${RELEASE_CHANGES}")
string(FIND "${RELEASE_CHANGES}" "\n * " first_item)
string(SUBSTRING "${RELEASE_CHANGES}" ${first_item} -1 RELEASE_CHANGES)
string(REGEX REPLACE "\n \\* ([^\n]+)" "\n          <li>\\1</li>" RELEASE_CHANGES "${RELEASE_CHANGES}")
string(STRIP "${RELEASE_CHANGES}" RELEASE_CHANGES)
