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

# What can be said only where the project has an address: HOMEPAGE_ELEMENT, SCREENSHOTS_ELEMENT.
set(HOMEPAGE_ELEMENT)
set(SCREENSHOTS_ELEMENT)
# sprig_screenshot(FILE CAPTION [ATTRIBUTE]): adds a picture of docs/screenshots.
macro(sprig_screenshot file caption)
  if(NOT EXISTS ${PROJECT_SOURCE_DIR}/docs/screenshots/${file})
    message(FATAL_ERROR "There is no docs/screenshots/${file}")
  endif()
  string(APPEND SCREENSHOTS_ELEMENT "
    <screenshot${ARGN}>
      <caption>${caption}</caption>
      <image>${SPRIG_HOMEPAGE}/screenshots/${file}</image>
    </screenshot>")
endmacro()
if(SPRIG_HOMEPAGE)
  set(HOMEPAGE_ELEMENT "\n  <url type=\"homepage\">${SPRIG_HOMEPAGE}</url>")
  sprig_screenshot(nautilus-menu.png "The menu, in GNOME Files" " type=\"default\"")
  sprig_screenshot(thunar-prompt.png "The name of the new file, in Thunar")
  sprig_screenshot(nemo-more-templates.png "More templates, in sections, in Nemo")
  sprig_screenshot(settings-list.png "Templates in the order of the menu")
  sprig_screenshot(settings-editor.png "A template, with the name of the next file")
  set(SCREENSHOTS_ELEMENT "\n  <screenshots>${SCREENSHOTS_ELEMENT}\n  </screenshots>")
endif()
