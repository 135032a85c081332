// SPDX-License-Identifier: GPL-3.0-or-later

#include "import/TemplateLayout.h"

#include <algorithm>

namespace sprig {

std::string indentationOf(const std::string& text) {
  const auto last = text.rfind('\n');
  if (last == std::string::npos) return {};
  const auto end = std::min(text.find_first_not_of(" \t", last + 1), text.size());
  auto indentation = text.substr(last + 1, end - last - 1);
  for (auto at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
    if (text.compare(at + 1, indentation.size(), indentation) != 0) return {};
  }
  return indentation;
}

std::string reindented(const std::string& text, std::string_view before, std::string_view now) {
  std::string result;
  std::size_t begin = 0;
  for (auto end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin)) {
    result.append(text, begin, end + 1 - begin).append(now);
    begin = end + 1 + before.size();
  }
  return result.append(text, begin);
}

}  // namespace sprig
