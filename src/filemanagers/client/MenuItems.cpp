// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/client/MenuItems.h"

#include "filemanagers/client/AtBorder.h"

namespace sprig::filemanagers {

namespace {

struct Pick {
  std::shared_ptr<ExtensionClient> client;
  std::shared_ptr<const MenuOccasion> occasion;
  PickedEntry entry;
};

void picked(GObject* /*item*/, void* data) {
  const auto& pick = *static_cast<const Pick*>(data);
  atBorder([&] { pick.client->activate(pick.entry, *pick.occasion); });
}

void forget(void* data, GClosure* /*closure*/) { delete static_cast<Pick*>(data); }

}  // namespace

void activateOnPick(void* item, std::shared_ptr<ExtensionClient> client,
                    std::shared_ptr<const MenuOccasion> occasion, PickedEntry entry) {
  auto pick = std::make_unique<Pick>(Pick{std::move(client), std::move(occasion), std::move(entry)});
  g_signal_connect_data(item, "activate", G_CALLBACK(picked), pick.release(), forget, GConnectFlags(0));
}

}  // namespace sprig::filemanagers
