// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/ConfigCommand.h"

#include <algorithm>
#include <iostream>
#include <iterator>

#include "config/BuiltinTemplates.h"
#include "config/ConfigDecoder.h"
#include "config/ConfigEditor.h"
#include "config/ConfigEncoder.h"
#include "config/ConfigManager.h"
#include "ports/terminal/ConfigWarnings.h"
#include "ports/terminal/DataOutput.h"
#include "ports/terminal/NewFile.h"
#include "ports/terminal/SourceExcerpt.h"
#include "ports/terminal/StandardStreams.h"
#include "ports/terminal/UserPath.h"
#include "translation/translated.h"

namespace sprig::terminal {

using platform::FileURL;

namespace {

std::string summary(const AppConfigItem& config) {
  const auto& templates = config.templates;
  const auto disabled =
      std::count_if(templates.begin(), templates.end(), [](const auto& item) { return !item.enabled; });
  auto result = translatedCount("%1% template", "%1% templates", templates.size());
  if (disabled == 0) return result;
  // TRANSLATORS: how many templates there are, and how many of them are disabled
  return translatedCount("%2%, %1% of them disabled", "%2%, %1% of them disabled",
                         static_cast<std::size_t>(disabled), {result});
}

std::string readAll(std::istream& stream) { return {std::istreambuf_iterator<char>(stream), {}}; }

}  // namespace

ExitStatus ConfigCommand::run() {
  switch (request.task) {
    case ConfigTask::path:
      return path();
    case ConfigTask::init:
      return init();
    case ConfigTask::check:
      return check();
  }
  return ExitStatus::wrongUse;
}

ExitStatus ConfigCommand::path() const {
  const auto file = ConfigManager::configURL();
  if (!platform::current().files.fileExists(file)) {
    terminal.screen().printError(translated(
        "there is no file at that place yet, so the built-in templates are used; “sprig config init” writes "
        "a first file, %1%",
        {ConfigEditor::newDocumentURL().path()}));
  }
  return printData(file.path() + "\n", terminal.screen());
}

ExitStatus ConfigCommand::init() const {
  auto& files = platform::current().files;
  const auto file = ConfigEditor::newDocumentURL();
  const auto active = ConfigManager::configURL();
  if (files.fileExists(active) && active != file) {
    return refuse(translated("another configuration file is in force already: %1%", {active.path()}));
  }
  if (const auto error = files.createDirectory(file.deletingLastPathComponent()))
    return refuse(error->description);
  switch (createNewFile(file, encodeConfig(defaultFallbackConfig()))) {
    case NewFileResult::created:
      return printData(file.path() + "\n", terminal.screen());
    case NewFileResult::existsAlready:
      return refuse(translated("%1% exists already; nothing was changed", {file.path()}));
    case NewFileResult::failed:
      break;
  }
  return refuse(translated("can't write %1%: %2%", {file.path(), lastErrorText()}));
}

ExitStatus ConfigCommand::check() const {
  if (request.file == "-") return checkDocument(translated("standard input"), readAll(std::cin));
  if (request.file) {
    const auto file = absoluteLocation(*request.file);
    return file ? checkFile(*request.file, *file) : refuse(translated("the current folder is gone"));
  }
  const auto file = ConfigManager::configURL();
  if (platform::current().files.fileExists(file)) return checkFile(file.path(), file);
  const auto text = translated("no configuration file; the built-in templates are used: %1%",
                               {summary(defaultFallbackConfig())});
  return printData(text + "\n", terminal.screen());
}

ExitStatus ConfigCommand::checkFile(const std::string& shownName, const FileURL& file) const {
  const auto document = platform::current().files.contentsOfFile(file);
  return document ? checkDocument(shownName, *document) : refuse(document.error().description);
}

ExitStatus ConfigCommand::checkDocument(const std::string& shownName, const std::string& document) const {
  try {
    const auto config = decodeConfig(document);
    warn(shownName, config, document);
    return printData(terminal.screen().text(shownName) + ": " + summary(config) + "\n", terminal.screen());
  } catch (const DecodingError& error) {
    explain(shownName, error, document);
    return ExitStatus::failed;
  }
}

ExitStatus ConfigCommand::refuse(const std::string& reason) const {
  terminal.screen().printError(reason);
  return ExitStatus::failed;
}

void ConfigCommand::warn(const std::string& shownName, const AppConfigItem& config,
                         std::string_view document) const {
  const auto& screen = terminal.screen();
  const auto warnings = warningsOf(config);
  if (warnings.empty()) return;
  const JsonIndex index(document);
  std::string output;
  for (const auto& warning : warnings) {
    const auto [line, column] = index.position(warning.place);
    output +=
        screen.paragraphs(translated("%1%: line %2%, column %3%: warning: %4%",
                                     {shownName, std::to_string(line), std::to_string(column), warning.text}),
                          0);
  }
  static_cast<void>(screen.write(output));
}

void ConfigCommand::explain(const std::string& shownName, const DecodingError& problem,
                            std::string_view document) const {
  const auto& screen = terminal.screen();
  const auto heading = screen.text(shownName) + ": " + screen.text(problem.sentence().shown) + "\n";
  static_cast<void>(screen.write(heading + excerptAt(problem.position(), document, screen)));
}

}  // namespace sprig::terminal
