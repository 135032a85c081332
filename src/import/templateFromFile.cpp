// SPDX-License-Identifier: GPL-3.0-or-later

#include "import/templateFromFile.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

#include "config/BuiltinTemplates.h"
#include "create/Base64.h"
#include "engine/TemplateEngine.h"
#include "platform/Platform.h"
#include "text/Text.h"
#include "translation/translated.h"

namespace sprig {

using platform::Error;
using platform::FileURL;

namespace {

constexpr const char* defaultIcon = "doc.text";
constexpr const char* defaultCategory = "general";

/// Symbol and section of the built-in template with the same extension.
void classify(TemplateItem& item) {
  item.icon = defaultIcon;
  item.category = defaultCategory;
  for (const auto& builtin : defaultFallbackConfig().templates) {
    if (item.extensionName.empty() || builtin.extensionName != item.extensionName) continue;
    item.icon = builtin.icon;
    item.category = builtin.category;
    return;
  }
}

bool hasPlaceholders(const TemplateItem& item) {
  return TemplateEngine::render(item, std::nullopt, std::nullopt, std::nullopt).content != item.content;
}

bool isTaken(const AppConfigItem& config, const std::string& text) {
  return std::any_of(config.templates.begin(), config.templates.end(), [&](const TemplateItem& item) {
    return text::isEqual(item.id, text) || text::isEqual(item.name, text);
  });
}

/// ASCII letters and digits in lower case, a hyphen for everything between them.
std::string slugOf(std::string_view name) {
  std::string slug;
  for (const char character : text::lowercased(name)) {
    const bool isPlain = (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9');
    if (isPlain) slug += character;
    if (!isPlain && !slug.empty() && slug.back() != '-') slug += '-';
  }
  if (slug.ends_with('-')) slug.pop_back();
  return slug.empty() ? "template" : slug;
}

}  // namespace

tl::expected<TemplateItem, Error> templateFromFile(const FileURL& file) {
  const auto& files = platform::current().files;
  const auto version = files.fileVersion(file);
  if (version && version->bytes > maxTemplateBytes) {
    return tl::unexpected(
        Error{platform::POSIXErrorDomain, EFBIG,
              translated("%1% is too large for a template: it has more than 16 MiB", {file.path()})});
  }
  auto content = files.contentsOfFile(file);
  if (!content) return tl::unexpected(std::move(content.error()));
  TemplateItem item;
  item.filenamePattern = text::toValidUTF8(file.lastPathComponent());
  auto [base, extension] = TemplateEngine::parseFilenameComponents(item.filenamePattern);
  item.name = std::move(base);
  item.extensionName = std::move(extension);
  item.enabled = true;
  classify(item);
  if (text::isValidUTF8(*content)) item.content = *content;
  if (item.content != *content || hasPlaceholders(item)) {
    item.content.clear();
    item.contentBase64 = encodeBase64(*content);
  }
  return item;
}

std::string newTemplateId(const AppConfigItem& config, const std::string& name) {
  const auto slug = slugOf(name);
  auto id = slug;
  for (int number = 2; isTaken(config, id); ++number) id = slug + "-" + std::to_string(number);
  return id;
}

}  // namespace sprig
