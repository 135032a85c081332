// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/SingleInstance.h"

#include <utility>

namespace sprig::settings {

namespace {

/// As org.freedesktop.Application has it.
constexpr const char* tokenKey = "activation-token";
/// The same of older senders.
constexpr const char* startupKey = "desktop-startup-id";

struct TokenApplication {
  GApplication parent;
  /// Belongs to the `SingleInstance`; null when that is gone.
  std::string* token;
};

struct TokenApplicationClass {
  GApplicationClass parent;
};

G_DEFINE_TYPE(TokenApplication, token_application, G_TYPE_APPLICATION)

TokenApplication* asTokenApplication(GApplication* application) {
  return reinterpret_cast<TokenApplication*>(application);
}

/// In an instance that another one is there before.
void addToken(GApplication* application, GVariantBuilder* data) {
  const auto* token = asTokenApplication(application)->token;
  if (token == nullptr || token->empty() || !g_utf8_validate(token->c_str(), -1, nullptr)) return;
  for (const auto* key : {tokenKey, startupKey})
    g_variant_builder_add(data, "{sv}", key, g_variant_new_string(token->c_str()));
}

/// In the first one, when it hears of another start.
void readToken(GApplication* application, GVariant* data) {
  auto* token = asTokenApplication(application)->token;
  if (token == nullptr) return;
  token->clear();
  const char* sent = nullptr;
  for (const auto* key : {tokenKey, startupKey})
    if (token->empty() && g_variant_lookup(data, key, "&s", &sent)) *token = sent;
}

void token_application_init(TokenApplication*) {}

void token_application_class_init(TokenApplicationClass* type) {
  type->parent.add_platform_data = addToken;
  type->parent.before_emit = readToken;
}

}  // namespace

SingleInstance::SingleInstance(const char* applicationId, std::string activationToken)
    : token(std::move(activationToken)),
      application(G_APPLICATION(g_object_new(token_application_get_type(), "application-id", applicationId,
                                             "flags", G_APPLICATION_HANDLES_OPEN, nullptr))) {
  asTokenApplication(application.get())->token = &token;
}

SingleInstance::~SingleInstance() { asTokenApplication(application.get())->token = nullptr; }

std::string SingleInstance::takeToken() { return std::exchange(token, {}); }

}  // namespace sprig::settings
