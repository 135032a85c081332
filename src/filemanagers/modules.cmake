# SPDX-License-Identifier: GPL-3.0-or-later
# The modules that file managers load, for those of SPRIG_MANAGERS. Each needs the development package of its own file
# manager only, and stands in a folder of its own, so that one can be put in the place of a manager's folder of modules.
sprig_layer(filemanagers/client
  SOURCES Bus.cpp ClickOrigin.cpp ExtensionClient.cpp FileManagerService.cpp LocationUri.cpp MenuEntry.cpp MenuItems.cpp
          ProviderType.cpp ServedFolders.cpp
  LAYERS wire)

# What goes into modules.
function(sprig_module_parts)
  foreach(part ${ARGN})
    set_target_properties(${part} PROPERTIES POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden)
    target_compile_definitions(${part} PRIVATE G_LOG_DOMAIN="Sprig")
  endforeach()
endfunction()
sprig_module_parts(sprig_filemanagers_client)

# A file manager must not find what it does not know in a module, nor the module miss anything (a sanitizer's
# functions come with the program); and the types that a module registers live as long as the process.
function(sprig_module manager)
  set(module sprig-${manager})
  add_library(${module} MODULE filemanagers/${manager}/module.cpp)
  target_link_libraries(${module} PRIVATE ${ARGN} sprig_filemanagers_client)
  target_link_options(${module} PRIVATE
    -Wl,-z,nodelete -Wl,--version-script=${CMAKE_CURRENT_SOURCE_DIR}/filemanagers/module.map)
  if(NOT SPRIG_SANITIZE)
    target_link_options(${module} PRIVATE -Wl,-z,defs)
  endif()
  sprig_module_parts(${module})
  set_target_properties(${module} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/modules/${manager})
endfunction()

# What the modules of GTK 3 share.
if("thunar" IN_LIST SPRIG_MANAGERS OR "caja" IN_LIST SPRIG_MANAGERS OR "nemo" IN_LIST SPRIG_MANAGERS)
  pkg_check_modules(GTK3 REQUIRED IMPORTED_TARGET GLOBAL gtk+-3.0 gtk+-x11-3.0)
  sprig_layer(filemanagers/gtk3
    SOURCES ClickOrigin.cpp GtkMenus.cpp GtkViews.cpp IconContainer.cpp ViewSelection.cpp WindowFacts.cpp beforeNextMenu.cpp
            endOldMenuWidgets.cpp themedIcon.cpp
    LAYERS filemanagers_client wire)
  target_link_libraries(sprig_filemanagers_gtk3 PUBLIC PkgConfig::GTK3)
  sprig_module_parts(sprig_filemanagers_gtk3)
endif()

if("thunar" IN_LIST SPRIG_MANAGERS)
  pkg_check_modules(THUNARX REQUIRED IMPORTED_TARGET thunarx-3)
  sprig_layer(filemanagers/thunar SOURCES ThunarMenus.cpp LAYERS filemanagers_gtk3 filemanagers_client wire)
  target_link_libraries(sprig_filemanagers_thunar PUBLIC PkgConfig::THUNARX)
  sprig_module_parts(sprig_filemanagers_thunar)
  sprig_module(thunar sprig_filemanagers_thunar)
endif()

if("caja" IN_LIST SPRIG_MANAGERS)
  pkg_check_modules(CAJA REQUIRED IMPORTED_TARGET libcaja-extension)
  sprig_module(caja sprig_filemanagers_gtk3 PkgConfig::CAJA)
endif()

if("nemo" IN_LIST SPRIG_MANAGERS)
  pkg_check_modules(NEMO REQUIRED IMPORTED_TARGET libnemo-extension)
  set_target_properties(sprig_translation PROPERTIES POSITION_INDEPENDENT_CODE ON)
  sprig_module(nemo sprig_filemanagers_gtk3 sprig_translation PkgConfig::NEMO)
endif()

if("nautilus" IN_LIST SPRIG_MANAGERS)
  pkg_check_modules(NAUTILUS REQUIRED IMPORTED_TARGET libnautilus-extension-4)
  sprig_layer(filemanagers/gtk4 SOURCES ClickOrigin.cpp LAYERS filemanagers_client wire)
  target_link_libraries(sprig_filemanagers_gtk4 PRIVATE PkgConfig::GTK)
  sprig_module_parts(sprig_filemanagers_gtk4)
  sprig_module(nautilus sprig_filemanagers_gtk4 PkgConfig::NAUTILUS)
endif()

if("dolphin" IN_LIST SPRIG_MANAGERS)
  # Dolphin loads modules of its own generation of Qt and KDE Frameworks only: the newest that is there.
  find_package(KF6KIO QUIET)
  if(KF6KIO_FOUND)
    set(SPRIG_QT 6)
    find_package(Qt6 REQUIRED COMPONENTS DBus Widgets)
  else()
    set(SPRIG_QT 5)
    find_package(Qt5 5.15 REQUIRED COMPONENTS DBus Widgets)
    find_package(KF5KIO 5.103 REQUIRED)
  endif()
  set(SPRIG_QT ${SPRIG_QT} PARENT_SCOPE)
  sprig_layer(filemanagers/dolphin
    SOURCES ClickOrigin.cpp DolphinItems.cpp FileManagerObject.cpp menuRequestFor.cpp recordCreation.cpp selectInWindow.cpp
            sendPick.cpp
    LAYERS filemanagers_client wire)
  target_link_libraries(sprig_filemanagers_dolphin PUBLIC
    KF${SPRIG_QT}::KIOWidgets KF${SPRIG_QT}::KIOFileWidgets KF${SPRIG_QT}::WindowSystem Qt${SPRIG_QT}::DBus)
  # "signals" is a name in GLib's headers.
  target_compile_definitions(sprig_filemanagers_dolphin PUBLIC QT_NO_KEYWORDS)
  sprig_module_parts(sprig_filemanagers_dolphin)
  sprig_module(dolphin sprig_filemanagers_dolphin)
  # KDE names a module after its file.
  set_target_properties(sprig-dolphin PROPERTIES PREFIX "")
  # Qt's generator writes what its macros declare.
  foreach(target sprig-dolphin sprig_filemanagers_dolphin)
    set_target_properties(${target} PROPERTIES AUTOMOC ON AUTOGEN_ORIGIN_DEPENDS OFF
                                               AUTOGEN_BUILD_DIR ${PROJECT_BINARY_DIR}/moc/${target})
  endforeach()
endif()
