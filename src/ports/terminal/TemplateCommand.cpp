// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/TemplateCommand.h"

#include <unistd.h>

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

#include "config/ConfigDecoder.h"
#include "import/TemplateExchange.h"
#include "import/TemplateLayout.h"
#include "import/importFolder.h"
#include "import/templateFromFile.h"
#include "ports/terminal/DataOutput.h"
#include "ports/terminal/FolderArgument.h"
#include "ports/terminal/TemplateTextEdit.h"
#include "text/Text.h"
#include "translation/translated.h"

namespace sprig::terminal {

namespace {

constexpr std::size_t widestName = 40;
constexpr std::size_t gap = 2;

/// No template, or more than one, is called as the user said.
class NamingError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The template with that id, or else with that name.
std::size_t indexOf(const AppConfigItem& config, const std::string& called) {
  const auto wanted = text::trimHorizontalWhitespace(called);
  std::vector<std::size_t> found;
  for (const auto field : {&TemplateItem::id, &TemplateItem::name}) {
    for (std::size_t index = 0; index < config.templates.size() && found.size() < 2; ++index) {
      const auto& value = config.templates[index].*field;
      if (text::isEqual(text::trimHorizontalWhitespace(value), wanted)) found.push_back(index);
    }
    if (!found.empty()) break;
  }
  if (found.empty()) {
    throw NamingError(
        translated("no template is called “%1%”; “sprig template list” shows them all", {called}));
  }
  if (found.size() > 1) {
    throw NamingError(
        translated("several templates are called “%1%”; “sprig template list” shows their ids", {called}));
  }
  return found.front();
}

/// One a line, those of several lines left out.
std::string titlesIn(const AppConfigItem& config) {
  std::string result;
  for (const auto& item : config.templates) {
    if (item.name.find('\n') == std::string::npos) result += item.name + "\n";
  }
  return result;
}

/// In English, or in the user's language.
bool isNo(const std::string& answer) {
  // TRANSLATORS: the letter that answers "Edit it again? [Y/n]" with no
  return !answer.empty() &&
         (answer == "n" || answer == "N" || text::isEqual(text::lowercased(answer), translated("n")));
}

/// What is wrong with the text of a template; empty if nothing is.
std::string problemOf(const std::string& text) {
  try {
    static_cast<void>(decodeTemplate(text));
    return "";
  } catch (const DecodingError& error) {
    return error.sentence().shown;
  }
}

}  // namespace

ExitStatus TemplateCommand::run() {
  try {
    switch (request.task) {
      case TemplateTask::list:
        return list();
      case TemplateTask::show:
        return show();
      case TemplateTask::exportAll:
        return exportTemplates();
      case TemplateTask::add:
        return add();
      case TemplateTask::importFolder:
        return importFolder();
      case TemplateTask::edit:
        return edit();
      default:
        return change();
    }
  } catch (const NamingError& error) {
    return refuse(error.what(), ExitStatus::wrongUse);
  }
}

ExitStatus TemplateCommand::list() const {
  const auto document = ConfigEditor::document();
  if (!document) return outcomeOf(document);
  const auto& config = document->config();
  const auto text = request.format == ListFormat::titles ? titlesIn(config) : listing(config);
  return printData(text, terminal.screen());
}

ExitStatus TemplateCommand::show() const {
  const auto document = ConfigEditor::document();
  if (!document) return outcomeOf(document);
  const auto index = indexOf(document->config(), request.operands.front());
  const auto text = document->textOf(index);
  return printData(reindented(text, indentationOf(text), "") + "\n", terminal.screen());
}

ExitStatus TemplateCommand::exportTemplates() const {
  const auto document = ConfigEditor::document();
  if (!document) return outcomeOf(document);
  std::vector<std::size_t> indices;
  indices.reserve(request.operands.size());
  for (const auto& name : request.operands) indices.push_back(indexOf(document->config(), name));
  return printData(sharedTemplates(*document, indices), terminal.screen());
}

ExitStatus TemplateCommand::add() const {
  const auto file = existingItem(request.operands.front(), terminal.screen());
  if (!file) return file.error();
  if (file->path().ends_with(sharedTemplatesSuffix)) return addSharedIn(*file);
  auto item = templateFromFile(*file);
  if (!item) return refuse(item.error().description);
  if (request.name) item->name = *request.name;
  return addWith([&](ConfigDocument& document) {
    item->id = newTemplateId(document.config(), item->name);
    document.insertTemplate(document.config().templates.size(), *item);
  });
}

ExitStatus TemplateCommand::addSharedIn(const platform::FileURL& file) const {
  const auto text = platform::current().files.contentsOfFile(file);
  if (!text) return refuse(text.error().description);
  if (request.name)
    return refuse(translated("--name is for one file, not for templates to share"), ExitStatus::wrongUse);
  return addWith([&](ConfigDocument& document) { addShared(document, *text); });
}

ExitStatus TemplateCommand::importFolder() const {
  const auto chosen = platform::current().files.templatesDirectory();
  if (request.operands.empty() && !chosen) {
    return refuse(translated("you have no folder for templates; “sprig template import FOLDER” takes any"),
                  ExitStatus::wrongUse);
  }
  const auto folder =
      request.operands.empty() ? *chosen : existingFolder(request.operands.front(), terminal.screen());
  if (!folder) return folder.error();
  const auto survey = surveyFolder(*folder);
  for (const auto& [file, reason] : survey.skipped)
    terminal.screen().printError(translated(reason, {file.path()}));
  return addWith([&](ConfigDocument& document) {
    for (const auto& candidate : survey.candidates) importTemplate(document, candidate);
  });
}

/// Prints the ids of what the change has added.
ExitStatus TemplateCommand::addWith(const ConfigEditor::Change& change) const {
  std::size_t before = 0;
  const auto result = ConfigEditor().update([&](ConfigDocument& document) {
    before = document.config().templates.size();
    change(document);
  });
  if (!result) return outcomeOf(result);
  std::string ids;
  for (auto index = before; index < result->config().templates.size(); ++index) {
    ids += result->config().templates[index].id + "\n";
  }
  return printData(ids, terminal.screen());
}

ExitStatus TemplateCommand::edit() const {
  const auto document = ConfigEditor::document();
  if (!document) return outcomeOf(document);
  const auto index = indexOf(document->config(), request.operands.front());
  const auto old = document->textOf(index);
  const auto indentation = indentationOf(old);
  auto text = reindented(old, indentation, "");
  for (;;) {
    std::string problem;
    const auto edited = editedText(text, problem);
    if (!edited) return refuse(problem);
    text = *edited;
    problem = problemOf(text);
    if (problem.empty()) return save(document->keyOf(index), old, reindented(text, "", indentation));
    terminal.screen().printError(problem);
    const auto question = std::string(translated("Edit it again? [Y/n]")) + " ";
    const auto answer = terminal.lines().read({question, "", 0, {}});
    if (!answer || isNo(*answer)) return refuse(translated("nothing was changed"), ExitStatus::cancelled);
  }
}

ExitStatus TemplateCommand::save(const TemplateKey& key, const std::string& old,
                                 const std::string& edited) const {
  bool isClash = false;
  const auto result = ConfigEditor().update([&](ConfigDocument& document) {
    const auto index = document.find(key);
    isClash = !index || document.textOf(*index) != old;
    if (!isClash) document.setText(*index, edited);
  });
  if (result && isClash) {
    return refuse(translated("the template was changed elsewhere meanwhile, so nothing was changed here"));
  }
  return outcomeOf(result);
}

ExitStatus TemplateCommand::change() const {
  return outcomeOf(ConfigEditor().update([this](ConfigDocument& document) {
    for (const auto& name : request.operands) changeOne(document, indexOf(document.config(), name));
  }));
}

void TemplateCommand::changeOne(ConfigDocument& document, std::size_t index) const {
  auto item = document.config().templates[index];
  switch (request.task) {
    case TemplateTask::remove:
      return document.removeTemplate(index);
    case TemplateTask::move:
      return document.moveTemplate(index, std::min(request.position, document.config().templates.size()) - 1);
    default:
      item.enabled = request.task == TemplateTask::enable;
      return document.setTemplate(index, item);
  }
}

ExitStatus TemplateCommand::outcomeOf(const tl::expected<ConfigDocument, ConfigEditError>& result) const {
  if (result) return ExitStatus::success;
  const auto& [reason, description] = result.error();
  if (reason != ConfigEditError::Reason::broken) return refuse(description);
  return refuse(
      translated("the configuration file is broken (%1%); “sprig config check” tells more", {description}));
}

ExitStatus TemplateCommand::refuse(const std::string& reason, ExitStatus status) const {
  terminal.screen().printError(reason);
  return status;
}

std::string TemplateCommand::listing(const AppConfigItem& config) const {
  const Screen screen(STDOUT_FILENO);
  std::vector<std::string> names;
  std::size_t idColumn = 0;
  for (const auto& item : config.templates) {
    names.push_back(screen.fittedText(item.name, widestName));
    idColumn = std::max(idColumn, columnsOf(names.back(), screen.charset()) + gap);
  }
  std::string result;
  for (std::size_t index = 0; index < names.size(); ++index) {
    const auto& item = config.templates[index];
    result.append(names[index]).append(idColumn - columnsOf(names[index], screen.charset()), ' ');
    result += screen.styled(screen.text(item.enabled ? item.id : translated("%1%  (disabled)", {item.id})),
                            Style::dim) +
              '\n';
  }
  return result;
}

}  // namespace sprig::terminal
