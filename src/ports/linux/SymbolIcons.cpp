// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/linux/SymbolIcons.h"

#include <algorithm>
#include <array>

namespace sprig::ports {

namespace {

constexpr std::array<std::string_view, 12> drawnSymbols = {
    "doc.text",
    "doc.plaintext",
    "note.text",
    "checklist",
    "chevron.left.forwardslash.chevron.right",
    "terminal",
    "curlybraces",
    "tablecells",
    "slider.horizontal.3",
    "doc.badge.plus",
    "gearshape",
    "ellipsis.circle",
};

struct ThemeName {
  std::string_view symbol;
  std::string_view icon;
};

/// What people are likely to write in a configuration, and themes have under another name.
constexpr std::array<ThemeName, 18> themeNames = {{
    {"book", "accessories-dictionary-symbolic"},
    {"calendar", "x-office-calendar-symbolic"},
    {"clock", "document-open-recent-symbolic"},
    {"doc", "text-x-generic-symbolic"},
    {"doc.richtext", "x-office-document-symbolic"},
    {"envelope", "mail-unread-symbolic"},
    {"film", "video-x-generic-symbolic"},
    {"folder", "folder-symbolic"},
    {"globe", "web-browser-symbolic"},
    {"link", "insert-link-symbolic"},
    {"list.bullet", "view-list-bullet-symbolic"},
    {"lock", "changes-prevent-symbolic"},
    {"music.note", "audio-x-generic-symbolic"},
    {"paintbrush", "applications-graphics-symbolic"},
    {"pencil", "document-edit-symbolic"},
    {"person", "avatar-default-symbolic"},
    {"photo", "image-x-generic-symbolic"},
    {"star", "starred-symbolic"},
}};

bool canBeInTheme(char character) {
  return (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9') || character == '-';
}

bool isDrawn(std::string_view symbol) {
  return std::find(drawnSymbols.begin(), drawnSymbols.end(), symbol) != drawnSymbols.end();
}

/// Empty for a symbol that is not in the table.
std::string_view themeName(std::string_view symbol) {
  const auto* row = std::find_if(themeNames.begin(), themeNames.end(),
                                 [&](const ThemeName& candidate) { return candidate.symbol == symbol; });
  return row == themeNames.end() ? std::string_view() : row->icon;
}

}  // namespace

bool isKnownSymbol(std::string_view symbolName) {
  return isDrawn(symbolName) || !themeName(symbolName).empty();
}

std::optional<std::string> iconName(std::string_view symbolName) {
  std::string name(symbolName);
  if (isDrawn(symbolName)) {
    std::replace(name.begin(), name.end(), '.', '-');
    return "sprig-" + name + "-symbolic";
  }
  if (const auto known = themeName(symbolName); !known.empty()) return std::string(known);
  if (name.empty() || !std::all_of(name.begin(), name.end(), canBeInTheme)) return std::nullopt;
  return name;
}

std::vector<std::string_view> knownSymbols() {
  std::vector<std::string_view> symbols(drawnSymbols.begin(), drawnSymbols.end());
  for (const auto& row : themeNames) symbols.push_back(row.symbol);
  return symbols;
}

}  // namespace sprig::ports
