# SPDX-License-Identifier: GPL-3.0-or-later
# Files for other programs that hold texts for people: the translations in po/ are put into them.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${SPRIG_TRANSLATIONS})

# sprig_translated(SOURCE RESULT OPTION…): with the options of msgfmt for that kind of file.
function(sprig_translated source result)
  get_filename_component(source ${source} ABSOLUTE)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source})
  # The folder tells where descriptions of MIME types have texts; for software centres' gettext itself knows.
  execute_process(
    COMMAND ${CMAKE_COMMAND} -E env GETTEXTDATADIRS=${PROJECT_SOURCE_DIR}/po
            ${MSGFMT} ${ARGN} --template=${source} -d ${PROJECT_SOURCE_DIR}/po --output-file=${made}/${result}
    COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# sprig_metainfo(SOURCE RESULT): what software centres are told. Addresses only where the project has one.
function(sprig_metainfo source result)
  sprig_translated(metainfo/${source} ${result}.in --xml)
  configure_file(${made}/${result}.in ${made}/${result} @ONLY)
  file(READ ${made}/${result} text)
  string(REGEX MATCHALL "/screenshots/[^<]*" pictures "${text}")
  foreach(picture ${pictures})
    if(NOT EXISTS ${PROJECT_SOURCE_DIR}/docs${picture})
      message(FATAL_ERROR "${source} names ${picture}, which is not in docs")
    endif()
  endforeach()
  if(NOT SPRIG_HOMEPAGE)
    string(REGEX REPLACE "\n *<(url|screenshots)[ >].*</(url|screenshots)>" "" text "${text}")
    file(WRITE ${made}/${result} "${text}")
  endif()
endfunction()
