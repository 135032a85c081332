// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "settings/SettingsModel.h"

namespace sprig::settings {

/// With “␀” in place of each null character.
std::string shownText(const std::string& text);

/// A template while it is edited. What is edited is written when the editor says so; what others change
/// meanwhile in other fields is taken in. Where they change a field that was edited here, too, nothing is
/// written until the user has decided.
///
/// Threads:   main thread.
/// Ownership: the model outlives this.
class TemplateDraft {
 public:
  enum class State {
    /// The file has what is edited, or can get it.
    good,
    /// A field that was edited here has another value in the file, by somebody else.
    changedElsewhere,
    /// The file has no such template any more, or is no configuration.
    gone,
  };

  /// Requires: the model has the template.
  TemplateDraft(SettingsModel& settingsModel, const TemplateKey& templateKey);

  const TemplateKey& key() const { return templateKey; }
  const TemplateItem& item() const { return edited; }
  State state() const { return current; }

  /// Replaces what is edited. Not written yet.
  void edit(const TemplateItem& wanted) { edited = wanted; }

  /// The same for widgets, which end a text at its first null character: see `shownText`. What stands for
  /// such characters is taken for them in a text that had some when it was opened.
  TemplateItem shown() const;
  void editShown(const TemplateItem& wanted);

  /// Writes what was edited since the last time. False if that was not possible.
  bool write();

  /// Takes in what the model has now; to be called whenever that has changed. Whether anything in `item` or
  /// `state` is another now.
  bool follow();

  /// The user's decision while it is `changedElsewhere`.
  void reload();
  bool keepMine();

 private:
  SettingsModel& model;
  const TemplateKey templateKey;
  const int session;
  TemplateItem edited;
  /// The template as it was when it was opened, or as others have made it since.
  TemplateItem opened;
  /// As the file has it, as far as this knows.
  TemplateItem written;
  State current = State::good;
  bool isWriting = false;
};

}  // namespace sprig::settings
