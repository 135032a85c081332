// SPDX-License-Identifier: GPL-3.0-or-later

#include "Workload.h"

#include "config/ConfigEncoder.h"

namespace sprig::bench {

namespace {

constexpr std::size_t contentSize = 500;
constexpr std::size_t documentSize = 20'000;
constexpr std::size_t oneDocumentIn = 20;

std::size_t distance(std::size_t size, Placeholders placeholders) {
  constexpr std::size_t few = 10;
  switch (placeholders) {
    case Placeholders::none:
      return std::string::npos;
    case Placeholders::few:
      return size / few;
    case Placeholders::many:
      break;
  }
  return 200;
}

TemplateItem numberedTemplate(std::size_t number) {
  static const std::string content = text(contentSize, Placeholders::few);
  const auto suffix = std::to_string(number);
  TemplateItem item;
  item.id = "template-" + suffix;
  item.name = "Template – No. " + suffix;
  item.extensionName = ".md";
  item.filenamePattern = "Notes {{date}} " + suffix;
  item.content = content;
  if (number % oneDocumentIn == oneDocumentIn - 1) item.contentBase64 = std::string(documentSize, 'Q');
  item.icon = "doc.text";
  item.category = number % 2 == 0 ? "code" : "notes";
  item.enabled = true;
  return item;
}

}  // namespace

AppConfigItem configuration(std::size_t templates) {
  AppConfigItem config;
  config.version = 1;
  config.settings.defaultBehavior = "create";
  config.settings.maxVisibleTemplates = static_cast<std::int64_t>(templates);
  for (std::size_t number = 0; number < templates; ++number) {
    config.templates.push_back(numberedTemplate(number));
  }
  return config;
}

std::string document(std::size_t templates) { return encodeConfig(configuration(templates)); }

std::string text(std::size_t size, Placeholders placeholders) {
  static constexpr std::string_view code =
      "export function add(left, right) { return left + right; }  // naïve\n";
  std::string result;
  auto next = distance(size, placeholders);
  while (result.size() < size) {
    result += code;
    if (result.size() < next) continue;
    result += "{{date}}";
    next += distance(size, placeholders);
  }
  return result;
}

}  // namespace sprig::bench
