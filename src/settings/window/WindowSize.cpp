// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/WindowSize.h"

#include <memory>
#include <string>

#include "platform/Platform.h"
#include "wire/Pointers.h"

namespace sprig::settings {

namespace {

constexpr const char* group = "Settings";
constexpr int smallest = 200;
constexpr int largest = 20'000;

using KeyFile = std::unique_ptr<GKeyFile, wire::Releaser<g_key_file_unref>>;

std::string folder() { return platform::current().files.stateDirectory().path(); }
std::string file() { return folder() + "/window.ini"; }

}  // namespace

void restoreSize(GtkWindow* window, int width, int height) {
  const KeyFile known(g_key_file_new());
  g_key_file_load_from_file(known.get(), file().c_str(), G_KEY_FILE_NONE, nullptr);
  const auto length = [&](const char* key, int otherwise) {
    const int pixels = g_key_file_get_integer(known.get(), group, key, nullptr);
    return pixels >= smallest && pixels <= largest ? pixels : otherwise;
  };
  gtk_window_set_default_size(window, length("Width", width), length("Height", height));
  if (g_key_file_get_boolean(known.get(), group, "Maximized", nullptr) != FALSE) gtk_window_maximize(window);
}

void rememberSize(GtkWindow* window) {
  int width = 0;
  int height = 0;
  gtk_window_get_default_size(window, &width, &height);
  const KeyFile known(g_key_file_new());
  g_key_file_set_integer(known.get(), group, "Width", width);
  g_key_file_set_integer(known.get(), group, "Height", height);
  g_key_file_set_boolean(known.get(), group, "Maximized", gtk_window_is_maximized(window));
  constexpr int ownerOnly = 0700;
  g_mkdir_with_parents(folder().c_str(), ownerOnly);
  g_key_file_save_to_file(known.get(), file().c_str(), nullptr);
}

}  // namespace sprig::settings
