// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/MenuListing.h"

#include <algorithm>
#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>

#include "text/Text.h"

namespace sprig::terminal {

using platform::Menu;
using platform::MenuItem;

namespace {

namespace json = boost::json;

constexpr std::size_t widestTitle = 40;
constexpr std::size_t indentation = 2;

/// One line of the listing for people.
struct Line {
  std::size_t depth = 0;
  const MenuItem* item = nullptr;
  std::string title;
};

/// The settings are not listed: they are no template.
bool isListed(const MenuItem& item) {
  return item.kind == MenuItem::Kind::entry && (item.identifier || item.submenu || !item.isEnabled);
}

void collect(const Menu& menu, std::size_t depth, const Screen& screen, std::vector<Line>& lines) {
  for (const auto& item : menu.items) {
    if (!isListed(item)) continue;
    lines.push_back({depth, &item, screen.fittedText(item.title, widestTitle)});
    if (item.submenu) collect(*item.submenu, depth + 1, screen, lines);
  }
}

json::object asJson(const MenuItem& item);

json::array asJson(const Menu& menu) {
  json::array items;
  for (const auto& item : menu.items) items.push_back(asJson(item));
  return items;
}

json::object asJson(const MenuItem& item) {
  if (item.kind == MenuItem::Kind::separator) return {{"separator", true}};
  json::object result{{"title", text::toValidUTF8(item.title)}};
  if (item.identifier) result["id"] = text::toValidUTF8(*item.identifier);
  result["enabled"] = item.isEnabled;
  if (item.image) result["icon"] = text::toValidUTF8(item.image->symbolName);
  if (item.submenu) result["items"] = asJson(*item.submenu);
  return result;
}

}  // namespace

std::string listingForPeople(const Menu& entries, const Screen& screen) {
  std::vector<Line> lines;
  collect(entries, 0, screen, lines);
  std::size_t idColumn = 0;
  for (const auto& line : lines) {
    const auto end = indentation * line.depth + columnsOf(line.title, screen.charset());
    if (line.item->identifier) idColumn = std::max(idColumn, end + indentation);
  }
  std::string result;
  for (const auto& [depth, item, title] : lines) {
    const auto begin = indentation * depth;
    result.append(begin, ' ');
    if (item->identifier) {
      const auto end = begin + columnsOf(title, screen.charset());
      const auto room = std::max(screen.columns(), idColumn + indentation) - idColumn - 1;
      result.append(title).append(idColumn - end, ' ');
      result += screen.styled(screen.fittedText(*item->identifier, room), Style::dim);
    } else {
      result += screen.styled(title, item->isEnabled ? Style::bold : Style::dim);
    }
    result += '\n';
  }
  return result;
}

std::string listingAsJson(const platform::FileURL& folder, const Menu& entries) {
  const json::object listing{{"folder", text::toValidUTF8(folder.path())}, {"items", asJson(entries)}};
  return json::serialize(listing) + "\n";
}

std::string templateTitles(const Menu& entries) {
  std::string result;
  for (const auto& item : entries.items) {
    if (item.submenu) result += templateTitles(*item.submenu);
    if (item.identifier && item.title.find('\n') == std::string::npos) result += item.title + "\n";
  }
  return result;
}

}  // namespace sprig::terminal
