// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "filemanagers/client/Bus.h"
#include "filemanagers/client/ClickOrigin.h"
#include "filemanagers/client/FileManagerService.h"
#include "filemanagers/client/MenuEntry.h"
#include "filemanagers/client/ServedFolders.h"
#include "wire/Interface.h"

namespace sprig::filemanagers {

/// What the file manager's toolbar shows of Sprig.
struct ToolbarButton {
  std::string name;
  std::string toolTip;
  /// A name of the icon theme; empty for none.
  std::string icon;

  bool operator==(const ToolbarButton&) const = default;
};

/// What a menu was asked for, kept with its items until one is picked.
struct MenuRequest {
  wire::Kind kind = wire::Kind::items;
  /// URIs: the folder, or the selected items.
  std::vector<std::string> targets;
  /// Called when an item is picked; may be empty.
  std::function<ClickOrigin()> origin;
};

/// Sprig's extension as a file manager's module sees it. Whatever the extension does, the file manager goes
/// on: menus are the same for all targets of a kind, so they are fetched ahead in the background and kept
/// until the extension says that they have changed or goes away. When one is needed that is not there, the
/// file manager waits for it for a moment at most, and then not again while the extension is silent.
///
/// Failure: no menu, and one line in the log until it is well again.
///
/// Threads: main thread; works in the main loop that is there anyway and never runs one.
class ExtensionClient {
 public:
  struct Settings {
    /// The kinds of menu that the file manager can show.
    std::vector<wire::Kind> kinds;
    /// Menus that were asked for before are there now, or have changed. May be empty.
    std::function<void()> menusUpdated = nullptr;
    /// How the file manager selects a new file; empty where another way of showing it does as well.
    NewFileSelection newSelection = nullptr;
    /// Null for the file manager's own one.
    GDBusConnection* connection = nullptr;
    /// How long the file manager may be kept waiting.
    std::chrono::milliseconds syncTimeout{150};
    /// For how long it is not kept waiting again after the extension has failed.
    std::chrono::milliseconds cooldown{5000};
    /// After a failure, how long nothing is asked in the background. Then it is, if menus are wanted, as most
    /// file managers do not ask again by themselves; and after each failure in a row only after twice the
    /// time.
    std::chrono::milliseconds retryDelay{1000};
    std::chrono::milliseconds longestRetryDelay{std::chrono::minutes(5)};
    /// Microseconds of a clock that only goes forward.
    std::function<std::int64_t()> now = g_get_monotonic_time;
  };

  /// How many targets of a selection go over the bus. The first one decides; the others may be huge in
  /// number, or in places that nobody can make a file in.
  static constexpr std::size_t maxTargets = 1;

  explicit ExtensionClient(Settings chosen);
  ~ExtensionClient();
  ExtensionClient(const ExtensionClient&) = delete;
  ExtensionClient& operator=(const ExtensionClient&) = delete;

  /// The menu for a target: the folder or the first selected item. Null or empty: none.
  MenuEntries menu(wire::Kind kind, const std::string& target);

  /// The button to show while a folder is shown; nothing where there is no menu.
  std::optional<ToolbarButton> toolbarButton(const std::string& folder);

  /// Tells the extension of a pick, without waiting for what comes of it.
  void activate(const PickedEntry& entry, const MenuRequest& request);

 private:
  using Time = std::chrono::microseconds;

  /// What is fetched from the extension as one piece.
  template <typename Content>
  struct Slot {
    std::optional<Content> content;
    /// Since when an answer is due, if one is.
    std::optional<Time> askedAt;
  };
  struct FetchedMenu {
    std::uint64_t revision = 0;
    MenuEntries entries;
  };
  struct MenuSlot : Slot<FetchedMenu> {
    /// What was fetched before, and may still be shown; null when somebody got nothing instead.
    MenuEntries last;
  };
  struct Properties {
    ServedFolders servedFolders;
    ToolbarButton toolbarButton;

    bool operator==(const Properties&) const = default;
  };

  Time now() const { return Time(settings.now()); }
  void appeared();
  void menuChanged(std::uint64_t revision);
  void propertiesChanged(GVariant* values);

  // In the background.
  void fetchProperties();
  void fetchMenu(wire::Kind kind);
  void fetchMissingMenus();
  bool canAsk(const std::optional<Time>& askedAt) const;
  /// An empty fault is none.
  void answered(const std::string& fault);
  void askAgainLater();
  static gboolean askAgain(void* self) noexcept;

  // While the file manager waits.
  /// When a wait that begins now has to end; nothing when there may be none.
  std::optional<Time> endOfWait() const;
  bool serves(const std::string& target, std::optional<Time> end);
  void fetchPropertiesNow(Time end);
  void fetchMenuNow(wire::Kind kind, const std::string& target, Time end);
  /// Takes floating `arguments`. Null when there is no answer.
  wire::VariantPointer askNow(const char* interface, const char* method, GVariant* arguments,
                              const char* replyType, Time end);

  // Both return what is wrong; nothing is taken then.
  std::string takeProperties(GVariant* reply);
  std::string takeMenu(wire::Kind kind, GVariant* reply);
  void failed(const std::string& reason);

  Settings settings;
  Slot<Properties> properties;
  std::map<wire::Kind, MenuSlot> menus;
  /// Before that, no waiting.
  Time cooldownEndsAt{0};
  /// Before that, nothing is asked in the background.
  Time askAgainAt{0};
  /// The timer that asks again; 0 when none runs.
  guint retry = 0;
  std::chrono::milliseconds nextRetryDelay;
  bool hasWarned = false;
  /// Whether anybody may hold a menu, or wait for one.
  bool wasAsked = false;
  /// Something has come that `menusUpdated` has not told yet.
  bool hasNews = false;
  std::optional<FileManagerService> service;
  /// Last, so that nothing comes from it when the rest has gone.
  Bus bus;
};

}  // namespace sprig::filemanagers
