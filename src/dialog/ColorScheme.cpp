// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialog/ColorScheme.h"

#include <gtk/gtk.h>

namespace sprig::dialog {

namespace {

constexpr const char* desktopSchema = "org.gnome.desktop.interface";
constexpr const char* colorSchemeKey = "color-scheme";

/// Null on a desktop without such a setting.
wire::ObjectPointer<GSettings> openSettings() {
  auto* source = g_settings_schema_source_get_default();
  if (source == nullptr) return nullptr;
  const std::unique_ptr<GSettingsSchema, wire::Releaser<g_settings_schema_unref>> schema(
      g_settings_schema_source_lookup(source, desktopSchema, TRUE));
  if (!schema || g_settings_schema_has_key(schema.get(), colorSchemeKey) == FALSE) return nullptr;
  return wire::ObjectPointer<GSettings>(g_settings_new(desktopSchema));
}

}  // namespace

// Where no thread can be had, `follow` opens it.
ColorScheme::ColorScheme() : opened(std::async(std::launch::async | std::launch::deferred, openSettings)) {}

void ColorScheme::follow() {
  settings = opened.get();
  if (!settings) return;
  apply();
  g_signal_connect(settings.get(), "changed::color-scheme",
                   G_CALLBACK(+[](GSettings*, const char*, ColorScheme* self) { self->apply(); }), this);
}

/// Only where it makes a difference: each change has GTK read its whole theme again.
void ColorScheme::apply() {
  const wire::TextPointer scheme(g_settings_get_string(settings.get(), colorSchemeKey));
  const bool isDark = g_str_equal(scheme.get(), "prefer-dark") != FALSE;
  if (isDark == isForced) return;
  isForced = isDark;
  auto* looks = gtk_settings_get_default();
  if (isDark) {
    g_object_set(looks, "gtk-application-prefer-dark-theme", TRUE, nullptr);
  } else {
    // The theme's own setting holds, as users of other desktops make it.
    gtk_settings_reset_property(looks, "gtk-application-prefer-dark-theme");
  }
}

}  // namespace sprig::dialog
