// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/TemplateDraft.h"

#include <atomic>

#include "config/ConfigFields.h"

namespace sprig::settings {

namespace {

int nextSession() {
  static std::atomic<int> last = 0;
  return ++last;
}

}  // namespace

TemplateDraft::TemplateDraft(SettingsModel& settingsModel, const TemplateKey& key)
    : model(settingsModel),
      templateKey(key),
      session(nextSession()),
      edited(*model.find(key)),
      opened(edited),
      written(edited) {}

bool TemplateDraft::write() {
  if (edited == written) return current == State::good;
  if (current != State::good) return false;
  isWriting = true;
  model.change(templateKey, written, edited, session);
  isWriting = false;
  follow();
  return edited == written;
}

bool TemplateDraft::follow() {
  if (isWriting) return false;
  const auto before = std::pair(edited, current);
  const auto* found = model.find(templateKey);
  current = found == nullptr ? State::gone : State::good;
  if (found == nullptr) return before.second != current;
  forEachField<TemplateItem>([&](const auto& field) {
    const auto& theirs = found->*field.member;
    const bool isEdited = edited.*field.member != opened.*field.member;
    if (theirs == written.*field.member || theirs == edited.*field.member) {
      written.*field.member = theirs;
    } else if (isEdited) {
      current = State::changedElsewhere;
    } else {
      edited.*field.member = opened.*field.member = written.*field.member = theirs;
    }
  });
  return before != std::pair(edited, current);
}

void TemplateDraft::reload() {
  const auto* found = model.find(templateKey);
  if (found == nullptr) return;
  edited = opened = written = *found;
  current = State::good;
}

bool TemplateDraft::keepMine() {
  const auto* found = model.find(templateKey);
  if (found == nullptr) return false;
  opened = written = *found;
  current = State::good;
  return write();
}

}  // namespace sprig::settings
