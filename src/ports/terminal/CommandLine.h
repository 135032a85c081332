#pragma once

#include <optional>
#include <string>
#include <tl/expected.hpp>
#include <variant>
#include <vector>

#include "ports/terminal/TerminalSystemLog.h"

namespace sprig::terminal {

/// `sprig [FOLDER]`, `sprig FILE...`
struct BrowseRequest {
  std::vector<std::string> targets;
};

enum class ListFormat { people, json, titles };

/// `sprig list`
struct ListRequest {
  ListFormat format = ListFormat::people;
  std::optional<std::string> folder;
};

/// `sprig new`
struct NewRequest {
  std::string templateName;
  std::optional<std::string> name;
  std::optional<std::string> folder;
};

/// `sprig detect`
struct DetectRequest {
  std::optional<std::string> folder;
};

enum class ConfigTask { path, init, check };

/// `sprig config`
struct ConfigRequest {
  ConfigTask task = ConfigTask::path;
  std::optional<std::string> file;
};

enum class UndoTask { undo, list };

/// `sprig undo`
struct UndoRequest {
  UndoTask task = UndoTask::undo;
};

/// `--help`, `--version`: a text to print.
struct TextRequest {
  std::string text;
};

/// What the user wants.
struct CommandLine {
  Logging logging = Logging::quiet;
  std::variant<BrowseRequest, ListRequest, NewRequest, DetectRequest, ConfigRequest, UndoRequest, TextRequest>
      request;
};

/// Reads the arguments, the program's name left out. The error is a sentence without a capital or full stop.
///
/// Only the first argument can be a command, so that files, folders and templates may be called like one.
/// Options may stand anywhere before a "--".
tl::expected<CommandLine, std::string> parseCommandLine(std::vector<std::string> arguments);

}  // namespace sprig::terminal
