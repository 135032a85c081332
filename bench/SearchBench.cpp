// SPDX-License-Identifier: GPL-3.0-or-later

// Types and deletes in the search of the settings window, and prints the nanoseconds of the processor that
// each key takes until its result is drawn.
//
// Usage: sprig-bench-search KEYS

#include <gtk/gtk.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>

#include "ports/desktop/DesktopApplication.h"
#include "ports/desktop/DesktopPlatform.h"
#include "ports/linux/LinuxSystemLog.h"
#include "settings/SettingsModel.h"
#include "settings/window/SettingsWindow.h"
#include "settings/window/Widgets.h"
#include "wire/Pointers.h"

namespace {

using sprig::settings::SettingsModel;
using sprig::settings::SettingsWindow;
using sprig::wire::ObjectPointer;

/// Words that many, some and no templates have.
constexpr std::string_view typed = "template 77x";

long long processorTime() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return now.tv_sec * 1'000'000'000LL + now.tv_nsec;
}

GtkWidget* findSearch(GtkWidget* widget) {
  if (GTK_IS_SEARCH_ENTRY(widget)) return widget;
  for (auto* child = gtk_widget_get_first_child(widget); child != nullptr;
       child = gtk_widget_get_next_sibling(child)) {
    if (auto* search = findSearch(child)) return search;
  }
  return nullptr;
}

/// Until the window has drawn itself once more.
void drawFrame(GtkWidget* window) {
  bool isDrawn = false;
  auto* clock = gtk_widget_get_frame_clock(window);
  const auto handler = g_signal_connect(
      clock, "after-paint", G_CALLBACK(+[](GdkFrameClock*, bool* drawn) { *drawn = true; }), &isDrawn);
  gtk_widget_queue_draw(window);
  while (!isDrawn) g_main_context_iteration(nullptr, TRUE);
  g_signal_handler_disconnect(clock, handler);
}

void measure(GtkWidget* window, int keys) {
  auto* search = findSearch(window);
  gtk_search_bar_set_search_mode(GTK_SEARCH_BAR(gtk_widget_get_ancestor(search, GTK_TYPE_SEARCH_BAR)), TRUE);
  constexpr int settlingFrames = 60;
  for (int frame = 0; frame < settlingFrames; ++frame) drawFrame(window);
  const auto length = static_cast<int>(typed.size());
  for (int key = 0; key < keys; ++key) {
    const int step = key % (2 * length);
    const int characters = step < length ? step + 1 : 2 * length - step - 1;
    const auto begin = processorTime();
    gtk_editable_set_text(GTK_EDITABLE(search),
                          std::string(typed.substr(0, static_cast<std::size_t>(characters))).c_str());
    drawFrame(window);
    std::printf("%lld\n", processorTime() - begin);
  }
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2) return 2;
  g_setenv("GSK_RENDERER", "cairo", FALSE);
  gtk_init();
  const ObjectPointer<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  if (!bus) return 1;
  sprig::ports::LinuxSystemLog log("sprig-bench-search", sprig::ports::SystemLogFallback::standardError);
  sprig::desktop::DesktopApplication alerts(log);
  sprig::desktop::DesktopPlatform desktop(*bus, log, alerts);
  sprig::settings::addStyle();
  SettingsModel model;
  SettingsWindow window(model, [] {});
  window.present("");
  const ObjectPointer<GtkWidget> shown(GTK_WIDGET(g_list_model_get_item(gtk_window_get_toplevels(), 0)));
  measure(shown.get(), std::atoi(arguments[1]));
}
