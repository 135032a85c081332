// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialog/ColorScheme.h"

#include <gtk/gtk.h>

#include "wire/Pointers.h"

namespace sprig::dialog {

namespace {

constexpr const char* desktopSchema = "org.gnome.desktop.interface";
constexpr const char* colorSchemeKey = "color-scheme";

void apply(GSettings* settings) {
  const wire::TextPointer scheme(g_settings_get_string(settings, colorSchemeKey));
  auto* looks = gtk_settings_get_default();
  if (g_str_equal(scheme.get(), "prefer-dark") != FALSE) {
    g_object_set(looks, "gtk-application-prefer-dark-theme", TRUE, nullptr);
  } else {
    // The theme's own setting holds, as users of other desktops make it.
    gtk_settings_reset_property(looks, "gtk-application-prefer-dark-theme");
  }
}

}  // namespace

void followColorScheme() {
  auto* source = g_settings_schema_source_get_default();
  if (source == nullptr) return;
  const std::unique_ptr<GSettingsSchema, wire::Releaser<g_settings_schema_unref>> schema(
      g_settings_schema_source_lookup(source, desktopSchema, TRUE));
  if (!schema || g_settings_schema_has_key(schema.get(), colorSchemeKey) == FALSE) return;
  auto* settings = g_settings_new(desktopSchema);  // lives as long as the program
  apply(settings);
  g_signal_connect(settings, "changed::color-scheme",
                   G_CALLBACK(+[](GSettings* changed, const char*, void*) { apply(changed); }), nullptr);
}

}  // namespace sprig::dialog
