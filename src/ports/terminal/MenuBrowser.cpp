// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/MenuBrowser.h"

#include <algorithm>
#include <utility>

#include "config/ConfigManager.h"
#include "text/Text.h"
#include "translation/translated.h"

namespace sprig::terminal {

using platform::Menu;
using platform::MenuItem;

namespace {

constexpr std::size_t numberColumns = 4;
constexpr std::size_t markColumns = 2;
constexpr std::size_t ruleColumns = 32;
constexpr const char* gap = "  ";
constexpr const char* hint =
    toTranslate("A number or the start of a name; Return: the menu again; Ctrl-D: leave.");

std::string rightAligned(std::string text, std::size_t columns) {
  if (text.size() < columns) text.insert(0, columns - text.size(), ' ');
  return text;
}

}  // namespace

MenuBrowser::MenuBrowser(platform::FIFinderSync& finderSync, platform::FIMenuKind menuKind,
                         std::string heading, LineReader& reader, const Screen& screen)
    : extension(finderSync), kind(menuKind), title(std::move(heading)), lines(reader), output(screen) {}

MenuBrowser::End MenuBrowser::pick() {
  path.clear();
  for (;;) {
    ConfigManager::shared().reloadIfChanged();
    menu = extension.menu(kind);
    if (!menu) return End::noMenu;
    const NumberedMenu rows(shownMenu());
    show(rows);
    const auto next = ask(rows);
    if (next == Next::leave) return End::cancelled;
    if (next == Next::take) return End::picked;
  }
}

/// The menu at the path, or as far down it as there is one.
const Menu& MenuBrowser::shownMenu() {
  const auto* shown = &entriesOf(*menu);
  for (std::size_t level = 0; level < path.size(); ++level) {
    const auto found = std::find_if(shown->items.begin(), shown->items.end(), [&](const MenuItem& item) {
      return item.submenu && text::isEqual(item.title, path[level]);
    });
    if (found == shown->items.end()) {
      path.resize(level);
      break;
    }
    shown = found->submenu.get();
  }
  return *shown;
}

void MenuBrowser::show(const NumberedMenu& rows) const {
  auto heading = title;
  for (const auto& step : path) heading += " › " + step;
  const auto width = output.columns() - 1;
  std::string shown =
      "\n" + output.styled(output.fittedText(heading, width, Cut::start), Style::bold) + "\n\n";
  for (const auto& row : rows.all()) shown += line(row) + "\n";
  if (!path.empty()) {
    shown += output.styled(rightAligned("0", numberColumns), Style::bold) + gap + translated("Back") + "\n";
  }
  shown += "\n" + output.styled(output.paragraphs(translated(hint), 0), Style::dim);
  static_cast<void>(output.write(shown));
}

std::string MenuBrowser::line(const NumberedMenu::Row& row) const {
  const auto& item = *row.item;
  const auto room = output.columns() - numberColumns - 3;
  if (item.kind == MenuItem::Kind::separator) {
    return std::string(numberColumns, ' ') + gap + output.rule(std::min(room, ruleColumns));
  }
  const std::string mark = item.submenu ? " ›" : "";
  const auto name =
      output.fittedText(item.title, item.submenu ? room - markColumns : room) + output.text(mark);
  if (row.number == 0) return std::string(numberColumns, ' ') + gap + output.styled(name, Style::dim);
  const auto number = rightAligned(std::to_string(row.number), numberColumns);
  return output.styled(number, Style::bold) + gap + name;
}

MenuBrowser::Next MenuBrowser::ask(const NumberedMenu& rows) {
  for (;;) {
    LineRequest request;
    request.prompt = "> ";
    const auto answer = lines.read(request);
    if (!answer) return Next::leave;
    const auto input = text::trimWhitespaceAndNewlines(*answer);
    if (input.empty()) return Next::showMenu;
    if (input == "0" && !path.empty()) {
      path.pop_back();
      return Next::showMenu;
    }
    const auto candidates = rows.matches(input);
    if (candidates.size() == 1) return take(*candidates.front().item);
    showCandidates(candidates, input);
    if (candidates.empty()) return Next::showMenu;
  }
}

MenuBrowser::Next MenuBrowser::take(const MenuItem& item) {
  if (item.submenu) {
    path.push_back(item.title);
    return Next::showMenu;
  }
  pickedItem = &item;
  return Next::take;
}

void MenuBrowser::showCandidates(const std::vector<NumberedMenu::Row>& candidates,
                                 std::string_view input) const {
  if (candidates.empty())
    return output.printError(translated("nothing in the menu is called “%1%”", {input}));
  std::string shown = output.paragraphs(translated("“%1%” could be any of these:", {input}), 0);
  for (const auto& row : candidates) shown += line(row) + "\n";
  static_cast<void>(output.write(shown));
}

}  // namespace sprig::terminal
