// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <tuple>

#include "config/AppConfigItem.h"

namespace sprig {

/// A field of a record and its key in the document.
template <typename Record, typename Value>
struct Field {
  using Member = Value Record::*;
  const char* key;
  Member member;
};
template <typename Record, typename Value>
Field(const char*, Value Record::*) -> Field<Record, Value>;

/// The fields of each record, in the order in which the document is checked and written. Reading and writing
/// both follow these tables, so they cannot disagree.
template <typename Record>
struct FieldsOf;

template <>
struct FieldsOf<TemplateScope> {
  static constexpr std::tuple fields{Field{"projectTypes", &TemplateScope::projectTypes}};
};

template <>
struct FieldsOf<TemplateItem> {
  static constexpr std::tuple fields{
      Field{"id", &TemplateItem::id},
      Field{"name", &TemplateItem::name},
      Field{"extension", &TemplateItem::extensionName},
      Field{"filenamePattern", &TemplateItem::filenamePattern},
      Field{"content", &TemplateItem::content},
      Field{"contentBase64", &TemplateItem::contentBase64},
      Field{"icon", &TemplateItem::icon},
      Field{"category", &TemplateItem::category},
      Field{"enabled", &TemplateItem::enabled},
      Field{"favorite", &TemplateItem::favorite},
      Field{"requiresInput", &TemplateItem::requiresInput},
      Field{"isBuiltin", &TemplateItem::isBuiltin},
      Field{"scope", &TemplateItem::scope},
  };
};

template <>
struct FieldsOf<AppSettingsItem> {
  static constexpr std::tuple fields{
      Field{"launchAtLogin", &AppSettingsItem::launchAtLogin},
      Field{"showInFinder", &AppSettingsItem::showInFinder},
      Field{"defaultBehavior", &AppSettingsItem::defaultBehavior},
      Field{"showFavoritesFirst", &AppSettingsItem::showFavoritesFirst},
      Field{"showCategories", &AppSettingsItem::showCategories},
      Field{"maxVisibleTemplates", &AppSettingsItem::maxVisibleTemplates},
      Field{"projectDetection", &AppSettingsItem::projectDetection},
      Field{"notificationsEnabled", &AppSettingsItem::notificationsEnabled},
      Field{"anonymousAnalytics", &AppSettingsItem::anonymousAnalytics},
  };
};

template <>
struct FieldsOf<AppConfigItem> {
  static constexpr std::tuple fields{
      Field{"version", &AppConfigItem::version},
      Field{"settings", &AppConfigItem::settings},
      Field{"templates", &AppConfigItem::templates},
  };
};

/// Calls `visit` with each field of a record, in order.
template <typename Record, typename Visit>
void forEachField(Visit visit) {
  std::apply([&](const auto&... field) { (visit(field), ...); }, FieldsOf<Record>::fields);
}

}  // namespace sprig
