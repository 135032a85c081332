// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sprig {

/// The configuration document as records: plain values, copied freely. An absent optional field and an empty
/// one are different values. Texts are Unicode, which the decoder sees to. `docs/config-format.md` describes
/// the document for its writers.

/// The project types a template is meant for. Carried for other programs; the menu does not apply it.
struct TemplateScope {
  /// Names as `ProjectDetector` gives them; absent is not the same as an empty list.
  std::optional<std::vector<std::string>> projectTypes;

  friend bool operator==(const TemplateScope&, const TemplateScope&) = default;
};

/// One template. Nothing promises that ids are unique.
struct TemplateItem {
  std::string id;
  /// The title in menus.
  std::string name;
  /// With its leading dot as a rule (".md"); the document calls it "extension".
  std::string extensionName;
  /// File name with placeholders.
  std::string filenamePattern;
  /// Text of the file, with placeholders.
  std::string content;
  /// The bytes of the file in Base64, written instead of `content` when present.
  std::optional<std::string> contentBase64;
  /// Name of a symbol image.
  std::string icon;
  /// Decides the section under "More Templates".
  std::string category;
  /// Only enabled templates are offered.
  bool enabled = false;
  /// Carried for other programs; the menu keeps the document's order.
  bool favorite = false;
  /// Always asks for a name before the file is created.
  bool requiresInput = false;
  bool isBuiltin = false;
  /// Absent: meant for every folder.
  std::optional<TemplateScope> scope;

  friend bool operator==(const TemplateItem&, const TemplateItem&) = default;
};

/// The settings. Each is optional, and whoever reads one applies the default given here.
struct AppSettingsItem {
  /// For the settings program.
  std::optional<bool> launchAtLogin = std::nullopt;
  /// Whether menus are offered at all; absent is true.
  std::optional<bool> showInFinder = std::nullopt;
  /// "prompt" (the default) asks for a name each time; any other text only where a template requires it.
  std::optional<std::string> defaultBehavior = std::nullopt;
  /// For the settings program.
  std::optional<bool> showFavoritesFirst = std::nullopt;
  /// Whether "More Templates" has sections; absent is true.
  std::optional<bool> showCategories = std::nullopt;
  /// How many templates stand in the menu itself; absent (or negative) is 10.
  std::optional<std::int64_t> maxVisibleTemplates = std::nullopt;
  /// For the settings program, as are the two below.
  std::optional<bool> projectDetection = std::nullopt;
  std::optional<bool> notificationsEnabled = std::nullopt;
  std::optional<bool> anonymousAnalytics = std::nullopt;

  friend bool operator==(const AppSettingsItem&, const AppSettingsItem&) = default;
};

/// The whole document.
struct AppConfigItem {
  /// Kept, not interpreted.
  std::int64_t version = 0;
  AppSettingsItem settings;
  /// In the document's order, which is the menu's.
  std::vector<TemplateItem> templates;

  friend bool operator==(const AppConfigItem&, const AppConfigItem&) = default;
};

}  // namespace sprig
