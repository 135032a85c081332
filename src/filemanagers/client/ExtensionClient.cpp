// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/client/ExtensionClient.h"

#include <algorithm>
#include <utility>

#include "filemanagers/client/guardCallback.h"
#include "wire/FileUri.h"

namespace sprig::filemanagers {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using wire::ErrorPointer;
using wire::Kind;
using wire::VariantPointer;

namespace {

constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr const char* propertiesReply = "(a{sv})";
constexpr const char* menuReply = "(tay)";

GVariant* propertiesArguments() { return g_variant_new("(s)", wire::interfaceName); }

GVariant* textsVariant(const std::vector<std::string>& texts) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE_STRING_ARRAY);
  for (std::size_t index = 0; index < std::min(texts.size(), ExtensionClient::maxTargets); ++index) {
    g_variant_builder_add(&builder, "s", texts[index].c_str());
  }
  return g_variant_builder_end(&builder);
}

GVariant* menuArguments(Kind kind, const std::string& target) {
  return g_variant_new("(u@asa{sv})", static_cast<std::uint32_t>(kind), textsVariant({target}), nullptr);
}

GVariant* platformData(const PickedEntry& entry, const ClickOrigin& origin) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE_VARDICT);
  const auto add = [&](const char* key, const std::string& text) {
    if (!text.empty()) g_variant_builder_add(&builder, "{sv}", key, g_variant_new_string(text.c_str()));
  };
  add(wire::activationTokenKey, origin.activationToken);
  add(wire::parentWindowKey, origin.parentWindow);
  add(wire::titleKey, entry.title);
  return g_variant_builder_end(&builder);
}

/// For menus that are fetched before anybody has asked: a folder that is certainly there.
std::string anyTarget() { return wire::uriFromPath(g_get_home_dir()).value_or("file:///"); }

std::string textAt(GVariant* dictionary, const char* key) {
  const char* text = "";
  g_variant_lookup(dictionary, key, "&s", &text);
  return text;
}

std::vector<std::string> textsIn(GVariant* variant) {
  std::vector<std::string> texts;
  for (std::size_t index = 0; index < g_variant_n_children(variant); ++index) {
    const VariantPointer text(g_variant_get_child_value(variant, index));
    texts.emplace_back(g_variant_get_string(text.get(), nullptr));
  }
  return texts;
}

std::optional<ServedFolders> servedFoldersIn(GVariant* values) {
  const VariantPointer folders(g_variant_lookup_value(values, "ServedFolders", G_VARIANT_TYPE_STRING_ARRAY));
  if (!folders) return std::nullopt;
  return ServedFolders(textsIn(folders.get()));
}

}  // namespace

ExtensionClient::ExtensionClient(Settings chosen)
    : settings(std::move(chosen)),
      nextRetryDelay(settings.retryDelay),
      bus(settings.connection, {[this] { appeared(); },
                                [this] {
                                  for (auto& [kind, slot] : menus) slot.content.reset();
                                },
                                [this](std::uint64_t revision) { menuChanged(revision); },
                                [this](GVariant* values) { propertiesChanged(values); },
                                [this](GDBusConnection& connection) {
                                  if (settings.newSelection)
                                    service.emplace(connection, settings.newSelection);
                                }}) {
  for (const auto kind : settings.kinds) menus[kind] = {};
  fetchProperties();
  fetchMissingMenus();
}

ExtensionClient::~ExtensionClient() {
  if (retry != 0) g_source_remove(retry);
}

MenuEntries ExtensionClient::menu(Kind kind, const std::string& target) {
  // Not through `g_debug`, which Caja takes away.
  g_log_structured(G_LOG_DOMAIN, G_LOG_LEVEL_DEBUG, "MESSAGE", "asked for a menu of kind %u",
                   static_cast<unsigned>(kind));
  wasAsked = true;
  const auto slot = menus.find(kind);
  const auto end = endOfWait();
  if (slot == menus.end() || !serves(target, end)) return nullptr;
  auto& content = slot->second.content;
  if (!content && end) fetchMenuNow(kind, target, *end);
  if (!content) {
    fetchMenu(kind);
    slot->second.last = nullptr;
    return nullptr;
  }
  return content->entries;
}

std::optional<ToolbarButton> ExtensionClient::toolbarButton(const std::string& folder) {
  if (!serves(folder, endOfWait())) return std::nullopt;
  return properties.content->toolbarButton;
}

void ExtensionClient::activate(const PickedEntry& entry, const MenuRequest& request) {
  const auto origin = request.origin ? request.origin() : ClickOrigin{};
  auto* arguments =
      g_variant_new("(su@as@a{sv})", entry.action.c_str(), static_cast<std::uint32_t>(request.kind),
                    textsVariant(request.targets), platformData(entry, origin));
  bus.ask(wire::interfaceName, "Activate", arguments, nullptr, [](GVariant* /*reply*/, const GError* error) {
    if (error) g_warning("Sprig did not take the pick: %s", error->message);
  });
}

void ExtensionClient::appeared() {
  askAgainAt = Time(0);
  fetchProperties();
  fetchMissingMenus();
}

void ExtensionClient::menuChanged(std::uint64_t revision) {
  for (auto& [kind, slot] : menus) {
    if (slot.content && slot.content->revision < revision) slot.content.reset();
  }
  fetchMissingMenus();
}

void ExtensionClient::propertiesChanged(GVariant* values) {
  const auto folders = servedFoldersIn(values);
  // What has not come yet comes as it is now.
  if (!folders || !properties.content) return;
  properties.content->servedFolders = *folders;
  if (wasAsked && settings.menusUpdated) settings.menusUpdated();
}

void ExtensionClient::fetchMissingMenus() {
  for (const auto& [kind, slot] : menus) {
    if (!slot.content) fetchMenu(kind);
  }
}

bool ExtensionClient::canAsk(const std::optional<Time>& askedAt) const {
  return !askedAt && now() >= askAgainAt;
}

void ExtensionClient::fetchProperties() {
  if (!canAsk(properties.askedAt)) return;
  properties.askedAt = now();
  bus.ask(propertiesInterface, "GetAll", propertiesArguments(), propertiesReply,
          [this](GVariant* reply, const GError* error) {
            properties.askedAt.reset();
            answered(error ? error->message : takeProperties(reply));
          });
}

void ExtensionClient::fetchMenu(Kind kind) {
  auto& slot = menus[kind];
  if (!canAsk(slot.askedAt)) return;
  slot.askedAt = now();
  bus.ask(wire::interfaceName, "GetMenu", menuArguments(kind, anyTarget()), menuReply,
          [this, kind](GVariant* reply, const GError* error) {
            menus[kind].askedAt.reset();
            answered(error ? error->message : takeMenu(kind, reply));
          });
}

void ExtensionClient::answered(const std::string& fault) {
  if (fault.empty()) {
    hasWarned = false;
    nextRetryDelay = settings.retryDelay;
  } else {
    failed(fault);
    askAgainAt = now() + settings.retryDelay;
    askAgainLater();
  }
  const bool isMoreDue = properties.askedAt || std::any_of(menus.begin(), menus.end(), [](const auto& entry) {
                           return entry.second.askedAt.has_value();
                         });
  if (isMoreDue || !std::exchange(hasNews, false)) return;
  if (wasAsked && settings.menusUpdated) settings.menusUpdated();
}

void ExtensionClient::askAgainLater() {
  if (retry != 0 || !wasAsked) return;
  retry = g_timeout_add(static_cast<guint>(nextRetryDelay.count()), askAgain, this);
  nextRetryDelay = std::min(2 * nextRetryDelay, settings.longestRetryDelay);
}

gboolean ExtensionClient::askAgain(void* self) noexcept {
  auto& client = *static_cast<ExtensionClient*>(self);
  client.retry = 0;
  client.askAgainAt = Time(0);
  guardCallback([&] {
    if (!client.properties.content) client.fetchProperties();
    client.fetchMissingMenus();
  });
  return G_SOURCE_REMOVE;
}

std::optional<ExtensionClient::Time> ExtensionClient::endOfWait() const {
  const auto begin = now();
  const auto isOverdue = [&](const std::optional<Time>& askedAt) {
    return askedAt && begin - *askedAt > settings.syncTimeout;
  };
  const bool isSilent = isOverdue(properties.askedAt) ||
                        std::any_of(menus.begin(), menus.end(),
                                    [&](const auto& entry) { return isOverdue(entry.second.askedAt); });
  if (!bus.isConnected() || isSilent || begin < cooldownEndsAt) return std::nullopt;
  return begin + settings.syncTimeout;
}

bool ExtensionClient::serves(const std::string& target, std::optional<Time> end) {
  if (!wire::pathFromUri(target)) return false;
  if (!properties.content && end) fetchPropertiesNow(*end);
  if (!properties.content) fetchProperties();
  return properties.content && properties.content->servedFolders.contain(target);
}

void ExtensionClient::fetchPropertiesNow(Time end) {
  const auto reply = askNow(propertiesInterface, "GetAll", propertiesArguments(), propertiesReply, end);
  if (!reply) return;
  const auto fault = takeProperties(reply.get());
  if (!fault.empty()) failed(fault);
}

void ExtensionClient::fetchMenuNow(Kind kind, const std::string& target, Time end) {
  const auto reply = askNow(wire::interfaceName, "GetMenu", menuArguments(kind, target), menuReply, end);
  if (!reply) return;
  const auto fault = takeMenu(kind, reply.get());
  if (!fault.empty()) failed(fault);
}

VariantPointer ExtensionClient::askNow(const char* interface, const char* method, GVariant* arguments,
                                       const char* replyType, Time end) {
  const auto limit = duration_cast<milliseconds>(end - now());
  if (limit <= milliseconds(0)) {
    g_variant_unref(g_variant_ref_sink(arguments));
    return nullptr;
  }
  GError* error = nullptr;
  auto reply = bus.askNow(interface, method, arguments, replyType, limit, &error);
  const ErrorPointer failure(error);
  if (failure) {
    failed(failure->message);
    // One that is only late gets asked again at once, in the background.
    if (!g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT)) askAgainAt = now() + settings.retryDelay;
  }
  return reply;
}

std::string ExtensionClient::takeProperties(GVariant* reply) {
  const VariantPointer values(g_variant_get_child_value(reply, 0));
  const auto folders = servedFoldersIn(values.get());
  if (!folders) return "it does not say which folders it serves";
  Properties fetched{*folders,
                     {textAt(values.get(), "ToolbarName"), textAt(values.get(), "ToolbarToolTip"),
                      textAt(values.get(), "ToolbarIcon")}};
  if (properties.content == fetched) return {};
  properties.content = std::move(fetched);
  hasNews = true;
  return {};
}

std::string ExtensionClient::takeMenu(Kind kind, GVariant* reply) {
  std::uint64_t revision = 0;
  GVariant* rowsVariant = nullptr;
  g_variant_get(reply, "(t@ay)", &revision, &rowsVariant);
  const VariantPointer owned(rowsVariant);
  const auto rows = wire::rowsFromVariant(rowsVariant);
  if (!rows) return "its menu is not in order: " + rows.error();
  auto& slot = menus[kind];
  auto entries = entriesFromRows(*rows);
  if (!slot.last || *slot.last != *entries) {
    slot.last = std::move(entries);
    hasNews = true;
  }
  slot.content = FetchedMenu{revision, slot.last};
  return {};
}

void ExtensionClient::failed(const std::string& reason) {
  cooldownEndsAt = now() + settings.cooldown;
  if (!std::exchange(hasWarned, true)) g_warning("Sprig gives no menus: %s", reason.c_str());
}

}  // namespace sprig::filemanagers
