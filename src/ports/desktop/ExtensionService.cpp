// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/ExtensionService.h"

#include <glib-unix.h>
#include <malloc.h>

#include <csignal>
#include <exception>
#include <utility>

#include "diag/logSprig.h"
#include "platform/Platform.h"
#include "ports/desktop/ProgramFile.h"
#include "ports/linux/SymbolIcons.h"
#include "wire/FileUri.h"
#include "wire/Interface.h"
#include "wire/InterfaceXml.h"
#include "wire/Rows.h"

namespace sprig::desktop {

using wire::VariantPointer;

namespace {

VariantPointer child(GVariant* parameters, std::size_t index) {
  return VariantPointer(g_variant_get_child_value(parameters, index));
}

std::string textAt(GVariant* parameters, std::size_t index) {
  return g_variant_get_string(child(parameters, index).get(), nullptr);
}

/// A text of the platform data; empty when there is none. Longer ones than any that makes sense are none.
std::string hint(GVariant* platformData, const char* key) {
  constexpr std::size_t longest = wire::maxTextBytes;
  const char* value = nullptr;
  if (g_variant_lookup(platformData, key, "&s", &value) == FALSE) return {};
  std::string text(value);
  return text.size() <= longest ? text : std::string();
}

gboolean ignored(void*) noexcept { return G_SOURCE_CONTINUE; }

VariantPointer nothing() { return VariantPointer(g_variant_ref_sink(g_variant_new_tuple(nullptr, 0))); }

void returnError(GDBusMethodInvocation* invocation, GDBusError code, const std::exception& error) {
  g_dbus_method_invocation_return_error_literal(invocation, G_DBUS_ERROR, code, error.what());
}

}  // namespace

ExtensionService::ExtensionService(ServiceDependencies serviceDependencies,
                                   platform::FIFinderSync& finderSync, Times chosen)
    : dependencies(std::move(serviceDependencies)),
      extension(finderSync),
      menus(finderSync, dependencies.controller),
      clients(dependencies.connection, [this] { watchIdleness(); }),
      idleTimer(chosen.idle, [this] { isOver = true; }),
      times(chosen) {}

ExtensionService::~ExtensionService() {
  if (object != 0) g_dbus_connection_unregister_object(&dependencies.connection, object);
}

void ExtensionService::run() {
  // The object is there before the name, so that the call which started this process finds it.
  exportObject();
  const guint name =
      g_bus_own_name_on_connection(&dependencies.connection, wire::busName,
                                   G_BUS_NAME_OWNER_FLAGS_DO_NOT_QUEUE, nullptr, nameLost, this, nullptr);
  const guint looking = g_timeout_add(static_cast<guint>(times.look.count()), lookAtProgram, this);
  watchIdleness();
  while (!isOver) {
    g_main_context_iteration(nullptr, TRUE);
    performPicks();
  }
  g_source_remove(looking);
  // When the name goes, the service manager asks the process to end, which it is about to.
  const guint termination = g_unix_signal_add(SIGTERM, ignored, nullptr);
  g_bus_unown_name(name);
  leave();
  g_source_remove(termination);
}

void ExtensionService::leave() {
  // Whatever was sent to the name while it was ours has come in by now. Later calls start a new process.
  do {
    performPicks();
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) continue;
  } while (!picks.empty());
  g_dbus_connection_flush_sync(&dependencies.connection, nullptr, nullptr);
}

void ExtensionService::announceMenus() {
  ++revision;
  menus.configurationChanged();
  g_dbus_connection_emit_signal(&dependencies.connection, nullptr, wire::objectPath, wire::interfaceName,
                                "MenuChanged", g_variant_new("(t)", revision), nullptr);
}

void ExtensionService::announceServedFolders() {
  GVariantBuilder changed;
  g_variant_builder_init(&changed, G_VARIANT_TYPE_VARDICT);
  g_variant_builder_add(&changed, "{sv}", "ServedFolders", servedFolders());
  g_dbus_connection_emit_signal(&dependencies.connection, nullptr, wire::objectPath,
                                "org.freedesktop.DBus.Properties", "PropertiesChanged",
                                g_variant_new("(sa{sv}as)", wire::interfaceName, &changed, nullptr), nullptr);
}

void ExtensionService::watchIdleness() {
  if (clients.areGone() && !isPerforming) {
    idleTimer.start();
  } else {
    idleTimer.stop();
  }
}

// Picks run here, outside of every callback, so that none runs inside the modal session of another.
void ExtensionService::performPicks() {
  while (!picks.empty()) {
    const auto pick = std::move(picks.front());
    picks.pop_front();
    perform(pick);
  }
}

void ExtensionService::perform(const Pick& pick) {
  isPerforming = hasPerformed = true;
  watchIdleness();
  dependencies.setClick(pick.click);
  menus.perform(pick.action, pick.title, pick.context);
  // What the pick has left to do, a reveal or an alert, belongs to the same click.
  dependencies.mainQueue.runPending();
  dependencies.setClick({});
  isPerforming = false;
  watchIdleness();
}

gboolean ExtensionService::lookAtProgram(void* self) noexcept {
  auto& service = *static_cast<ExtensionService*>(self);
  // What large messages and documents have left between blocks that stay.
  ::malloc_trim(0);
  const bool isAtRest = !std::exchange(service.hasPerformed, service.isPerforming);
  if (!isAtRest || service.isPerforming || !isProgramFileGone()) return G_SOURCE_CONTINUE;
  platform::current().systemLog.log(std::string(systemLogPrefix) +
                                    "The program has been upgraded or removed, so this process ends");
  service.isOver = true;
  return G_SOURCE_CONTINUE;
}

void ExtensionService::exportObject() {
  static constexpr GDBusInterfaceVTable table = {methodCalled, propertyAsked, nullptr, {}};
  const std::unique_ptr<GDBusNodeInfo, wire::Releaser<g_dbus_node_info_unref>> node(
      g_dbus_node_info_new_for_xml(wire::interfaceXml, nullptr));
  auto* interface = g_dbus_node_info_lookup_interface(node.get(), wire::interfaceName);
  object = g_dbus_connection_register_object(&dependencies.connection, wire::objectPath, interface, &table,
                                             this, nullptr, nullptr);
}

void ExtensionService::nameLost(GDBusConnection*, const char*, void* self) noexcept {
  static_cast<ExtensionService*>(self)->isOver = true;
}

// The parameters are what the bus library passes.
// NOLINTNEXTLINE(readability-function-size)
void ExtensionService::methodCalled(GDBusConnection*, const char* sender, const char*, const char*,
                                    const char* method, GVariant* parameters,
                                    GDBusMethodInvocation* invocation, void* self) noexcept {
  auto& service = *static_cast<ExtensionService*>(self);
  try {
    service.clients.add(sender);
    const auto result = service.answer(method, parameters, sender);
    g_dbus_method_invocation_return_value(invocation, result.get());
  } catch (const CallError& error) {
    returnError(invocation, G_DBUS_ERROR_INVALID_ARGS, error);
  } catch (const std::exception& error) {
    returnError(invocation, G_DBUS_ERROR_FAILED, error);
  }
}

VariantPointer ExtensionService::answer(const std::string& method, GVariant* parameters,
                                        const std::string& sender) {
  if (method == "GetMenu") return getMenu(parameters);
  if (method == "Activate") return activate(parameters, sender);
  return observe(method, parameters);
}

VariantPointer ExtensionService::observe(const std::string& method, GVariant* parameters) {
  const auto location = locationOf(textAt(parameters, 0).c_str());
  if (!observations.allows()) throw std::runtime_error("too many folders at once");
  if (method == "BeginObserving") extension.beginObservingDirectory(location);
  if (method == "EndObserving") extension.endObservingDirectory(location);
  return nothing();
}

VariantPointer ExtensionService::getMenu(GVariant* parameters) {
  const auto context = MenuContext::from(child(parameters, 0).get(), child(parameters, 1).get());
  const auto rows = menus.rows(context);
  return VariantPointer(g_variant_ref_sink(g_variant_new("(t@ay)", revision, rows.get())));
}

VariantPointer ExtensionService::activate(GVariant* parameters, const std::string& sender) {
  constexpr std::size_t maxPicks = 100;
  Pick pick;
  pick.action = textAt(parameters, 0);
  pick.context = MenuContext::from(child(parameters, 1).get(), child(parameters, 2).get());
  if (pick.context.kind > platform::FIMenuKind::toolbarItemMenu)
    throw CallError("there is no such kind of menu");
  if (!OfferedMenus::isAction(pick.action)) throw CallError("no menu offers such an action");
  if (!pick.context.target || !dependencies.controller.serves(*pick.context.target))
    throw CallError("what was clicked is in no served folder");
  if (picks.size() >= maxPicks) throw std::runtime_error("too many picks are waiting");
  const auto platformData = child(parameters, 3);
  pick.title = hint(platformData.get(), wire::titleKey);
  pick.click = {sender, hint(platformData.get(), wire::activationTokenKey),
                hint(platformData.get(), wire::parentWindowKey), clients.programOf(sender)};
  if (isPerforming) dependencies.comeToFront(pick.click.activationToken);
  picks.push_back(std::move(pick));
  return nothing();
}

// NOLINTNEXTLINE(readability-function-size): the same.
GVariant* ExtensionService::propertyAsked(GDBusConnection*, const char* sender, const char*, const char*,
                                          const char* property, GError** error, void* self) noexcept {
  auto& service = *static_cast<ExtensionService*>(self);
  try {
    service.clients.add(sender);
    return service.property(property);
  } catch (const std::exception& failure) {
    g_set_error_literal(error, G_DBUS_ERROR, G_DBUS_ERROR_FAILED, failure.what());
    return nullptr;
  }
}

GVariant* ExtensionService::property(const std::string& name) const {
  if (name == "Revision") return g_variant_new_uint64(revision);
  if (name == "ServedFolders") return servedFolders();
  if (name == "ToolbarName") return g_variant_new_string(extension.toolbarItemName().c_str());
  if (name == "ToolbarToolTip") return g_variant_new_string(extension.toolbarItemToolTip().c_str());
  return g_variant_new_string(ports::iconName(extension.toolbarItemImage().symbolName).value_or("").c_str());
}

GVariant* ExtensionService::servedFolders() const {
  GVariantBuilder uris;
  g_variant_builder_init(&uris, G_VARIANT_TYPE_STRING_ARRAY);
  for (const auto& folder : dependencies.controller.servedFolders()) {
    if (const auto uri = wire::uriFromPath(folder.path())) g_variant_builder_add(&uris, "s", uri->c_str());
  }
  return g_variant_builder_end(&uris);
}

}  // namespace sprig::desktop
