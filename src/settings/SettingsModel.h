// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/ConfigEditor.h"
#include "platform/FileURL.h"
#include "settings/DocumentEdit.h"
#include "settings/TemplateImport.h"
#include "settings/TemplateRow.h"

namespace sprig::settings {

/// Why a text is no configuration.
struct TextFault {
  std::string reason;
  /// Absent where the file could not even be read.
  std::optional<TextPosition> position;
};

/// The configuration as the settings program shows and changes it: each operation changes the file at once,
/// in what stands there at that moment, and can be undone.
///
/// Threads:   main thread. Operations wait for the disk.
/// Ownership: keeps what was read last. It does not watch the file: whoever does calls `reload`.
/// Failure:   operations return false, and the failure handler is told why; nothing is changed then.
class SettingsModel {
 public:
  /// Reads the file.
  SettingsModel();

  /// Has a handler called after whatever changes what this shows, or after a failure, with a sentence for the
  /// user. Each replaces the one before.
  void onChange(std::function<void()> handler) { changed = std::move(handler); }
  void onFailure(std::function<void(const std::string&)> handler) { failed = std::move(handler); }

  /// Reads the file again.
  void reload();

  /// Absent while the file is a configuration, or is missing. Nothing can be changed but by `saveText`,
  /// `restoreBackup` and `startAfresh`, until it is one.
  const std::optional<TextFault>& fault() const { return problem; }
  /// The file's text; empty while there is none.
  const std::string& text() const { return source; }
  /// What is edited as text: the file's, or what the first change would write.
  const std::string& editableText() const { return fileText || problem ? source : document.text(); }
  /// False while the file, or the folder for the first one, is read-only for this user.
  bool isWritable() const { return canWrite; }

  /// One for each template; none while there is a fault.
  const std::vector<TemplateRow>& rows() const { return list; }
  /// Those of the built-in configuration while there is a fault.
  const AppSettingsItem& settings() const { return document.config().settings; }
  /// Null for a template that is not there, or not any more. Valid until the next change.
  const TemplateItem* find(const TemplateKey& key) const;
  /// Where in the list a template is.
  std::optional<std::size_t> positionOf(const TemplateKey& key) const { return document.find(key); }
  /// The categories of all templates and the usual ones, one for each section of the menu, in the menu's
  /// order.
  std::vector<std::string> categories() const;

  bool setEnabled(const TemplateKey& key, bool isEnabled);
  bool setFavorite(const TemplateKey& key, bool isFavorite);
  /// Positions are counted as they will be afterwards.
  bool move(const TemplateKey& key, std::size_t position);
  bool remove(const TemplateKey& key);
  /// The new template's key; nothing if there is none. It stands at the top, or behind its original.
  std::optional<TemplateKey> addNew();
  std::optional<TemplateKey> duplicate(const TemplateKey& key);
  /// Adds templates at the top whose files are copies of these. False if there is none; the failure handler
  /// is told of the first file that can't become one, even if others can.
  bool addFiles(const std::vector<platform::FileURL>& files);
  /// What a folder has to offer, beside what is here already.
  TemplateImport templatesIn(const platform::FileURL& folder) const {
    return TemplateImport::fromFolder(folder, document);
  }
  /// Adds the entries at these places, which is one step. False if nothing was added or changed.
  bool addImported(const TemplateImport& offer, const std::vector<std::size_t>& chosen);
  bool setSettings(const AppSettingsItem& wanted);
  /// Writes what differs between two states of a template. Changes in one `session`, whatever the number is,
  /// are undone together.
  bool change(const TemplateKey& key, const TemplateItem& before, const TemplateItem& after, int session);

  /// What undoing would take back, "Remove “Journal”"; nothing when there is nothing.
  std::optional<std::string> undoable() const;
  bool undo();
  bool redo();

  /// Why a text is no configuration; nothing if it is one.
  static std::optional<TextFault> faultIn(const std::string& text);
  /// Writes a whole text in place of `old`, which `editableText` gave. False, too, if the file has another
  /// text now, or `wanted` is no configuration.
  bool saveText(const std::string& old, const std::string& wanted);
  /// The newest backup that is a configuration, and another text than the file's.
  std::optional<platform::FileURL> backup() const;
  bool restoreBackup();
  /// Writes the built-in configuration, and where the old text is kept; nothing on failure.
  std::optional<platform::FileURL> startAfresh();

 private:
  struct Step {
    std::string title;
    DocumentEdit edit;
    /// Changes of the same one are one step; 0 for others.
    int session = 0;
  };
  /// Applies an edit; what takes it back, null if nothing was to be done or it failed.
  std::optional<DocumentEdit> apply(const DocumentEdit& edit);
  /// What a step that inserts one has brought: the template whose key was not there before.
  std::optional<TemplateKey> performInsert(const std::string& title, const DocumentEdit& edit);
  bool perform(const std::string& title, const DocumentEdit& edit);
  bool performStep(std::vector<Step>& from, std::vector<Step>& to);
  bool changeField(const TemplateKey& key, const std::string& title,
                   const std::function<void(TemplateItem&)>& edit);
  std::string titleFor(const char* pattern, const TemplateKey& key) const;
  void read();
  void take(ConfigDocument newDocument);
  bool fail(const ConfigEditError& error);
  void announce() const;

  ConfigEditor editor;
  ConfigDocument document;
  /// Absent: there is no file.
  std::optional<std::string> fileText;
  std::string source;
  std::optional<TextFault> problem;
  bool canWrite = true;
  std::vector<TemplateRow> list;
  std::vector<Step> undoSteps;
  std::vector<Step> redoSteps;
  std::function<void()> changed;
  std::function<void(const std::string&)> failed;
};

}  // namespace sprig::settings
