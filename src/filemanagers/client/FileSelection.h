// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>

namespace sprig::filemanagers {

/// A file to be selected where the user clicked.
struct FileToSelect {
  std::string uri;
  /// "x11:<hexadecimal id>"; anything else means whichever window of the file manager shows the folder, the
  /// active one first.
  std::string parentWindow;
};

/// The selection of one file in a file manager's window.
///
/// Threads: main thread.
class FileSelection {
 public:
  enum class State {
    selected,
    /// The window shows the file's folder, but not the file.
    notYet,
    impossible,
  };

  virtual ~FileSelection() = default;

  /// Selects the file, scrolls to it and gives it the keyboard's focus, if the window has it.
  virtual State attempt() = 0;
};

/// How a file manager makes selections. `changed` is called, until the selection is destroyed, when another
/// attempt may go better than the last.
using NewFileSelection =
    std::function<std::unique_ptr<FileSelection>(FileToSelect file, std::function<void()> changed)>;

}  // namespace sprig::filemanagers
