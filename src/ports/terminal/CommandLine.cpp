// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/CommandLine.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <limits>

#include "ports/terminal/CommandArguments.h"
#include "ports/terminal/HelpTexts.h"
#include "translation/translated.h"

namespace sprig::terminal {

namespace {

constexpr auto anyNumber = std::numeric_limits<std::size_t>::max();

using Arguments = std::vector<std::string>;
using Request = decltype(CommandLine::request);

/// Options and operands of one command, turned into a request.
struct Command {
  std::string_view name;
  const char* help;
  Request (*read)(CommandArguments& arguments, Arguments list);
};

Request readBrowse(CommandArguments& arguments, Arguments list) {
  arguments.parse(std::move(list));
  return BrowseRequest{arguments.operands(0, anyNumber)};
}

Request readList(CommandArguments& arguments, Arguments list) {
  bool json = false;
  bool titles = false;
  arguments.addFlag("--json", json);
  arguments.addFlag("--titles", titles);
  arguments.parse(std::move(list));
  arguments.operands(0, 1);
  if (json && titles) throw UsageError(translated("--json and --titles exclude each other"));
  const auto format = json ? ListFormat::json : titles ? ListFormat::titles : ListFormat::people;
  return ListRequest{format, arguments.operand(0)};
}

Request readNew(CommandArguments& arguments, Arguments list) {
  NewRequest request;
  bool isDryRun = false;
  arguments.addOption("--in", request.folder);
  arguments.addFlag("--dry-run", isDryRun);
  arguments.parse(std::move(list));
  if (arguments.wantsHelp()) return request;
  if (!arguments.operand(0)) throw UsageError(translated("which template? “sprig list” shows them"));
  request.templateName = arguments.operands(1, 2).front();
  request.name = arguments.operand(1);
  if (request.folder == "") throw UsageError(translated("--in needs a folder"));
  if (isDryRun) request.mode = CreationMode::dryRun;
  return request;
}

Request readDetect(CommandArguments& arguments, Arguments list) {
  arguments.parse(std::move(list));
  arguments.operands(0, 1);
  return DetectRequest{arguments.operand(0)};
}

Request readConfig(CommandArguments& arguments, Arguments list) {
  arguments.parse(std::move(list));
  if (arguments.wantsHelp()) return ConfigRequest{};
  const auto task = arguments.operand(0).value_or("");
  if (task == "check") {
    arguments.operands(1, 2);
    return ConfigRequest{ConfigTask::check, arguments.operand(1)};
  }
  if (task != "path" && task != "init")
    throw UsageError(translated("config needs one of: path, init, check"));
  arguments.operands(1, 1);
  return ConfigRequest{task == "path" ? ConfigTask::path : ConfigTask::init, std::nullopt};
}

struct TemplateTaskName {
  std::string_view name;
  TemplateTask task;
  std::size_t minOperands;
  std::size_t maxOperands;
};

constexpr TemplateTaskName templateTasks[] = {
    {"list", TemplateTask::list, 0, 0},
    {"show", TemplateTask::show, 1, 1},
    {"export", TemplateTask::exportAll, 1, anyNumber - 1},
    {"add", TemplateTask::add, 1, 1},
    {"import", TemplateTask::importFolder, 0, 1},
    {"edit", TemplateTask::edit, 1, 1},
    {"enable", TemplateTask::enable, 1, anyNumber - 1},
    {"disable", TemplateTask::disable, 1, anyNumber - 1},
    {"move", TemplateTask::move, 2, 2},
    {"remove", TemplateTask::remove, 1, anyNumber - 1},
};

std::size_t positionIn(const std::string& text) {
  std::size_t position = 0;
  const auto* end = text.data() + text.size();
  const auto [rest, failure] = std::from_chars(text.data(), end, position);
  if (failure != std::errc() || rest != end || position == 0) {
    throw UsageError(translated("“%1%” is no position; 1 is the first", {text}));
  }
  return position;
}

Request readTemplate(CommandArguments& arguments, Arguments list) {
  TemplateRequest request;
  bool titles = false;
  arguments.addOption("--name", request.name);
  arguments.addFlag("--titles", titles);
  arguments.parse(std::move(list));
  if (arguments.wantsHelp()) return request;
  const auto word = arguments.operand(0).value_or("list");
  const auto* found = std::find_if(std::begin(templateTasks), std::end(templateTasks),
                                   [&](const auto& task) { return task.name == word; });
  if (found == std::end(templateTasks)) {
    throw UsageError(translated(
        "template needs one of: list, show, export, add, import, edit, enable, disable, move, remove"));
  }
  request.task = found->task;
  if (request.name && request.task != TemplateTask::add)
    throw UsageError(translated("--name is for “template add”"));
  if (titles && request.task != TemplateTask::list)
    throw UsageError(translated("--titles is for “template list”"));
  if (titles) request.format = ListFormat::titles;
  if (!arguments.operand(0)) return request;
  request.operands = arguments.operands(1 + found->minOperands, 1 + found->maxOperands);
  request.operands.erase(request.operands.begin());
  if (request.task != TemplateTask::move) return request;
  request.position = positionIn(request.operands.back());
  request.operands.pop_back();
  return request;
}

Request readUndo(CommandArguments& arguments, Arguments list) {
  bool isListing = false;
  arguments.addFlag("--list", isListing);
  arguments.parse(std::move(list));
  arguments.operands(0, 0);
  return UndoRequest{isListing ? UndoTask::list : UndoTask::undo};
}

constexpr Command browse{"", browseHelp, readBrowse};
constexpr std::array<Command, 6> commands{{
    {"list", listHelp, readList},
    {"new", newHelp, readNew},
    {"detect", detectHelp, readDetect},
    {"config", configHelp, readConfig},
    {"template", templateHelp, readTemplate},
    {"undo", undoHelp, readUndo},
}};

/// The command that the first argument which is no option names; that argument is taken off the list.
const Command& takeCommand(Arguments& list) {
  const auto word = std::find_if(list.begin(), list.end(), [](const auto& argument) {
    return argument != "-v" && argument != "--verbose";
  });
  if (word == list.end()) return browse;
  const auto* found = std::find_if(commands.begin(), commands.end(),
                                   [&](const auto& command) { return command.name == *word; });
  if (found == commands.end()) return browse;
  list.erase(word);
  return *found;
}

}  // namespace

tl::expected<CommandLine, std::string> parseCommandLine(Arguments arguments) {
  const auto& command = takeCommand(arguments);
  try {
    CommandArguments parsed;
    CommandLine result;
    result.request = command.read(parsed, std::move(arguments));
    result.logging = parsed.isVerbose() ? Logging::verbose : Logging::quiet;
    if (parsed.wantsVersion()) result.request = TextRequest{"sprig " SPRIG_VERSION "\n"};
    if (parsed.wantsHelp()) result.request = TextRequest{translated(command.help)};
    return result;
  } catch (const UsageError& error) {
    return tl::unexpected(std::string(error.what()));
  }
}

}  // namespace sprig::terminal
