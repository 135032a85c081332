// SPDX-License-Identifier: GPL-3.0-or-later

// A program on the bus that does nothing: it owns a name and answers empty calls. What any service costs,
// and, built once more with the extension's libraries, what these cost at its start.

#include <gio/gio.h>

namespace {

constexpr const char* interfaceXml =
    "<node><interface name='com.kestrel.Sprig.Bare'><method name='Nothing'/></interface></node>";

// NOLINTNEXTLINE(readability-function-size): the parameters are what the bus library passes.
void methodCalled(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
                  GDBusMethodInvocation* invocation, void*) {
  g_dbus_method_invocation_return_value(invocation, nullptr);
}

}  // namespace

int main() {
  GDBusConnection* connection = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  if (connection == nullptr) return 1;
  static constexpr GDBusInterfaceVTable table = {methodCalled, nullptr, nullptr, {}};
  GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(interfaceXml, nullptr);
  g_dbus_connection_register_object(connection, "/com/kestrel/Sprig/Bare", node->interfaces[0], &table,
                                    nullptr, nullptr, nullptr);
  g_bus_own_name_on_connection(connection, SPRIG_BARE_NAME, G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr,
                               nullptr, nullptr);
  for (;;) g_main_context_iteration(nullptr, TRUE);
}
