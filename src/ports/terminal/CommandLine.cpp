#include "ports/terminal/CommandLine.h"

#include <algorithm>
#include <array>
#include <limits>

#include "ports/terminal/CommandArguments.h"
#include "ports/terminal/HelpTexts.h"

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
  if (json && titles) throw UsageError("--json and --titles exclude each other");
  const auto format = json ? ListFormat::json : titles ? ListFormat::titles : ListFormat::people;
  return ListRequest{format, arguments.operand(0)};
}

Request readNew(CommandArguments& arguments, Arguments list) {
  NewRequest request;
  arguments.addOption("--in", request.folder);
  arguments.parse(std::move(list));
  if (arguments.wantsHelp()) return request;
  if (!arguments.operand(0)) throw UsageError("which template? “sprig list” shows them");
  request.templateName = arguments.operands(1, 2).front();
  request.name = arguments.operand(1);
  if (request.folder == "") throw UsageError("--in needs a folder");
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
  if (task != "path" && task != "init") throw UsageError("config needs one of: path, init, check");
  arguments.operands(1, 1);
  return ConfigRequest{task == "path" ? ConfigTask::path : ConfigTask::init, std::nullopt};
}

Request readUndo(CommandArguments& arguments, Arguments list) {
  bool isListing = false;
  arguments.addFlag("--list", isListing);
  arguments.parse(std::move(list));
  arguments.operands(0, 0);
  return UndoRequest{isListing ? UndoTask::list : UndoTask::undo};
}

constexpr Command browse{"", browseHelp, readBrowse};
constexpr std::array<Command, 5> commands{{
    {"list", listHelp, readList},
    {"new", newHelp, readNew},
    {"detect", detectHelp, readDetect},
    {"config", configHelp, readConfig},
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
    if (parsed.wantsHelp()) result.request = TextRequest{command.help};
    return result;
  } catch (const UsageError& error) {
    return tl::unexpected(std::string(error.what()));
  }
}

}  // namespace sprig::terminal
