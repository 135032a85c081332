// SPDX-License-Identifier: GPL-3.0-or-later

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

enum class CreationMode { create, dryRun };

/// `sprig new`
struct NewRequest {
  std::string templateName;
  std::optional<std::string> name;
  std::optional<std::string> folder;
  CreationMode mode = CreationMode::create;
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

enum class TemplateTask { list, show, exportAll, add, importFolder, edit, enable, disable, move, remove };

/// `sprig template`
struct TemplateRequest {
  TemplateTask task = TemplateTask::list;
  /// The names or ids of templates, or the file to add, or the folder to import, if one is named.
  std::vector<std::string> operands;
  ListFormat format = ListFormat::people;
  /// What an added template is to be called.
  std::optional<std::string> name;
  /// Where a template is moved to, counted from 1.
  std::size_t position = 1;
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
  std::variant<BrowseRequest, ListRequest, NewRequest, DetectRequest, ConfigRequest, TemplateRequest,
               UndoRequest, TextRequest>
      request;
};

/// Reads the arguments, the program's name left out. The error is a sentence without a capital or full stop.
///
/// Only the first argument can be a command, so that files, folders and templates may be called like one.
/// Options may stand anywhere before a "--".
tl::expected<CommandLine, std::string> parseCommandLine(std::vector<std::string> arguments);

}  // namespace sprig::terminal
