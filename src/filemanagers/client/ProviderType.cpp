// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/client/ProviderType.h"

#include "filemanagers/client/guardCallback.h"

namespace sprig::filemanagers {

namespace {

/// Begins with what each GObject begins with. Zeroed memory, so what C++ owns stands behind a pointer.
struct Provider {
  GObject parent;
  std::shared_ptr<ExtensionClient>* client;
};

/// Under which a registered type keeps what describes it.
GQuark providerTypeKey() { return g_quark_from_static_string("sprig-provider-type"); }

GObjectClass* parentClass() { return static_cast<GObjectClass*>(g_type_class_peek(G_TYPE_OBJECT)); }

void finalize(GObject* object) {
  auto* provider = reinterpret_cast<Provider*>(object);
  guardCallback([&] { delete provider->client; });
  parentClass()->finalize(object);
}

void initializeClass(void* objectClass, void* /*type*/) {
  static_cast<GObjectClass*>(objectClass)->finalize = finalize;
}

void initialize(GTypeInstance* instance, void* /*objectClass*/) {
  auto* provider = reinterpret_cast<Provider*>(instance);
  guardCallback([&] {
    const auto& type = *static_cast<const ProviderType*>(
        g_type_get_qdata(G_TYPE_FROM_INSTANCE(instance), providerTypeKey()));
    ExtensionClient::Settings settings;
    settings.kinds = type.kinds;
    settings.newSelection = type.newSelection;
    if (type.menusUpdated) settings.menusUpdated = [provider, tell = type.menusUpdated] { tell(provider); };
    provider->client = new std::shared_ptr(std::make_shared<ExtensionClient>(std::move(settings)));
  });
}

}  // namespace

GType registerProviderType(const ProviderType& type) {
  if (const auto registered = g_type_from_name(type.name); registered != G_TYPE_INVALID) return registered;
  GTypeInfo info{};
  info.class_size = sizeof(GObjectClass);
  info.class_init = initializeClass;
  info.instance_size = sizeof(Provider);
  info.instance_init = initialize;
  const auto registered = g_type_register_static(G_TYPE_OBJECT, type.name, &info, GTypeFlags(0));
  g_type_set_qdata(registered, providerTypeKey(), new ProviderType(type));
  for (const auto& interface : type.interfaces) {
    const GInterfaceInfo functions{interface.fill, nullptr, nullptr};
    g_type_add_interface_static(registered, interface.type, &functions);
  }
  return registered;
}

std::shared_ptr<ExtensionClient> clientOf(void* provider) {
  const auto* client = static_cast<Provider*>(provider)->client;
  return client ? *client : nullptr;
}

}  // namespace sprig::filemanagers
