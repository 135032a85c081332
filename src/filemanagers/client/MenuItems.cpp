// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/client/MenuItems.h"

#include "filemanagers/client/guardCallback.h"

namespace sprig::filemanagers {

namespace {

using SharedPick = std::shared_ptr<const Pick>;

void picked(GObject* /*item*/, void* data) {
  // The item, and what it holds, may go meanwhile.
  const auto pick = *static_cast<const SharedPick*>(data);
  guardCallback([&] { pick->client->activate(pick->entry, *pick->request); });
}

void forget(void* data, GClosure* /*closure*/) { delete static_cast<SharedPick*>(data); }

}  // namespace

void showEntry(void* item, const MenuEntry& entry, const char* icon) {
  g_object_set(item, "label", gtkLabel(entry).c_str(), "icon", icon, "sensitive",
               entry.isEnabled ? TRUE : FALSE, nullptr);
}

void activateOnPick(void* item, std::shared_ptr<const Pick> pick) {
  auto data = std::make_unique<SharedPick>(std::move(pick));
  g_signal_connect_data(item, "activate", G_CALLBACK(picked), data.release(), forget, GConnectFlags(0));
}

}  // namespace sprig::filemanagers
