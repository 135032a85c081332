// SPDX-License-Identifier: GPL-3.0-or-later

#include "import/DesktopEntry.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string_view>

#include "platform/Platform.h"
#include "text/Text.h"
#include "text/percentDecoded.h"

namespace sprig {

using platform::FileURL;

namespace {

using Keys = std::map<std::string, std::string, std::less<>>;

constexpr std::string_view group = "[Desktop Entry]";

/// The keys of the group that counts.
Keys keysIn(std::string_view text) {
  Keys keys;
  bool isInGroup = false;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    const auto line = text::trimWhitespaceAndNewlines(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.starts_with('[')) isInGroup = line == group;
    const auto equals = line.find('=');
    if (!isInGroup || line.starts_with('#') || equals == std::string_view::npos) continue;
    keys.emplace(text::trimWhitespaceAndNewlines(line.substr(0, equals)),
                 text::trimWhitespaceAndNewlines(line.substr(equals + 1)));
  }
  return keys;
}

std::string valueOf(const Keys& keys, std::string_view key) {
  const auto found = keys.find(key);
  return found == keys.end() ? "" : found->second;
}

/// That of the environment, "de_DE" for one.
std::string language() {
  for (const auto* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const auto value = platform::current().process.environment(variable).value_or("");
    if (!value.empty()) return value.substr(0, value.find_first_of(".@"));
  }
  return "";
}

std::string nameIn(const Keys& keys) {
  const auto locale = language();
  const auto withoutCountry = locale.substr(0, locale.find('_'));
  std::string name;
  for (const auto& key : {"Name[" + locale + "]", "Name[" + withoutCountry + "]", std::string("Name")}) {
    if (name.empty()) name = valueOf(keys, key);
  }
  for (const std::string_view dots : {"\u2026", "..."}) {
    if (name.ends_with(dots)) name.resize(name.size() - dots.size());
  }
  return name;
}

std::optional<FileURL> targetOf(const Keys& keys, const FileURL& folder) {
  constexpr std::string_view scheme = "file://";
  auto url = valueOf(keys, "URL");
  if (url.starts_with(scheme)) {
    url.erase(0, scheme.size());
    url = text::percentDecoded(url).value_or(url);
  }
  const bool isElsewhere = url.find("://") != std::string::npos || url.find('\0') != std::string::npos;
  if (valueOf(keys, "Type") != "Link" || url.empty() || isElsewhere) return std::nullopt;
  auto target = (url.starts_with('/') ? FileURL(url) : folder.appendingPath(url)).standardized();
  if (platform::current().files.entryKind(target) != platform::EntryKind::other) return std::nullopt;
  return target;
}

}  // namespace

std::optional<DesktopEntry> desktopEntryIn(const FileURL& file) {
  if (!file.path().ends_with(".desktop")) return std::nullopt;
  const auto text = platform::current().files.contentsOfFile(file);
  if (!text || !text::isValidUTF8(*text)) return DesktopEntry{};
  const auto keys = keysIn(*text);
  return DesktopEntry{nameIn(keys), targetOf(keys, file.deletingLastPathComponent())};
}

}  // namespace sprig
