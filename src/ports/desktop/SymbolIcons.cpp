#include "ports/desktop/SymbolIcons.h"

#include <algorithm>
#include <array>

namespace sprig::desktop {

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

bool canBeInTheme(char character) {
  return (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9') || character == '-';
}

}  // namespace

std::optional<std::string> iconName(std::string_view symbolName) {
  std::string name(symbolName);
  if (std::find(drawnSymbols.begin(), drawnSymbols.end(), symbolName) != drawnSymbols.end()) {
    std::replace(name.begin(), name.end(), '.', '-');
    return "sprig-" + name + "-symbolic";
  }
  if (name.empty() || !std::all_of(name.begin(), name.end(), canBeInTheme)) return std::nullopt;
  return name;
}

}  // namespace sprig::desktop
