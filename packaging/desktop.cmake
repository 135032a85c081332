# SPDX-License-Identifier: GPL-3.0-or-later
# What the desktop's packages hold.
sprig_package(sprig-desktop "new files from templates, in file managers"
"This package has what all file managers need: the process that they ask for
the menu, its dialogs, and the window for templates and settings. Each file
manager has a package of its own."
  "sprig ${same_version}" "default-dbus-session-bus | dbus-session-bus" hicolor-icon-theme)
# What loads the icons, and what tells whether the desktop is dark.
set(CPACK_DEBIAN_SPRIG-DESKTOP_PACKAGE_RECOMMENDS "librsvg2-common, gsettings-desktop-schemas")
install(TARGETS sprig-extension sprig-dialog DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/sprig COMPONENT sprig-desktop)
set(service com.kestrel.Sprig.Extension.service)
configure_file(dbus/${service}.in dbus/${service} @ONLY)
install(FILES ${made}/dbus/${service} DESTINATION ${data}/dbus-1/services COMPONENT sprig-desktop)
set(settings_service com.kestrel.Sprig.service)
configure_file(dbus/${settings_service}.in dbus/${settings_service} @ONLY)
install(FILES ${made}/dbus/${settings_service} DESTINATION ${data}/dbus-1/services COMPONENT sprig-desktop)
configure_file(systemd/${service}.in systemd/${service} @ONLY)
install(FILES ${made}/systemd/${service} DESTINATION lib/systemd/user COMPONENT sprig-desktop)
install(TARGETS sprig-settings COMPONENT sprig-desktop)
include(translated.cmake)
sprig_translated(com.kestrel.Sprig.desktop com.kestrel.Sprig.desktop --desktop)
install(FILES ${made}/com.kestrel.Sprig.desktop DESTINATION ${data}/applications COMPONENT sprig-desktop)
sprig_translated(mime/com.kestrel.Sprig.xml com.kestrel.Sprig.xml --xml)
install(FILES ${made}/com.kestrel.Sprig.xml DESTINATION ${data}/mime/packages COMPONENT sprig-desktop)
include(release.cmake)
sprig_metainfo(com.kestrel.Sprig.metainfo.xml.in com.kestrel.Sprig.metainfo.xml)
install(FILES ${made}/com.kestrel.Sprig.metainfo.xml DESTINATION ${data}/metainfo COMPONENT sprig-desktop)
install(FILES icons/scalable/com.kestrel.Sprig.svg DESTINATION ${data}/icons/hicolor/scalable/apps COMPONENT sprig-desktop)
sprig_compressed(man/sprig-extension.1 sprig-extension.1.gz)
sprig_compressed(man/sprig-settings.1 sprig-settings.1.gz)
install(FILES ${made}/sprig-extension.1.gz ${made}/sprig-settings.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT sprig-desktop)
install(DIRECTORY icons/symbolic/ DESTINATION ${data}/icons/hicolor/symbolic/apps COMPONENT sprig-desktop)

# sprig_manager_package(MANAGER TITLE EXTENDS FOLDER): the package with a file manager's module. EXTENDS is what
# software centres know the file manager as, FOLDER the one where it looks for modules.
macro(sprig_manager_package manager title extends folder)
  sprig_package(sprig-${manager} "new files from templates, in ${title}"
    "This package adds its menu to the context menus of ${title}."
    "sprig-desktop ${same_version}" ${manager})
  install(TARGETS sprig-${manager} DESTINATION ${folder} COMPONENT sprig-${manager})
  set(metainfo com.kestrel.Sprig.${manager}.metainfo.xml)
  set(MANAGER ${manager})
  set(TITLE ${title})
  set(EXTENDS ${extends})
  sprig_metainfo(manager.metainfo.xml.in ${metainfo})
  install(FILES ${made}/${metainfo} DESTINATION ${data}/metainfo COMPONENT sprig-${manager})
endmacro()

# sprig_gobject_manager_package(MANAGER TITLE EXTENDS INTERFACE VARIABLE): the same where the variable of a development
# package tells the folder; what is used of it goes from the prefix on.
macro(sprig_gobject_manager_package manager title extends interface variable)
  if(TARGET sprig-${manager})
    pkg_get_variable(prefix ${interface} prefix)
    pkg_get_variable(folder ${interface} ${variable})
    file(RELATIVE_PATH folder ${prefix} ${folder})
    sprig_manager_package(${manager} ${title} ${extends} ${folder})
  endif()
endmacro()

sprig_gobject_manager_package(thunar "Thunar" org.xfce.Thunar thunarx-3 extensionsdir)
sprig_gobject_manager_package(caja "Caja" caja.desktop libcaja-extension extensiondir)
if(TARGET sprig-caja)
  # What Caja shows in its list of extensions.
  sprig_translated(caja/libsprig-caja.caja-extension libsprig-caja.caja-extension --desktop --keyword --keyword=Description)
  install(FILES ${made}/libsprig-caja.caja-extension DESTINATION ${data}/caja/extensions COMPONENT sprig-caja)
endif()
sprig_gobject_manager_package(nemo "Nemo" nemo.desktop libnemo-extension extensiondir)
sprig_gobject_manager_package(nautilus "GNOME Files" org.gnome.Nautilus libnautilus-extension-4 extensiondir)
if(TARGET sprig-dolphin)
  sprig_manager_package(dolphin "Dolphin" org.kde.dolphin
    ${CMAKE_INSTALL_LIBDIR}/qt${SPRIG_QT}/plugins/kf${SPRIG_QT}/kfileitemaction)
endif()
