// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/TemplateDraft.h"

#include <atomic>
#include <cstddef>
#include <string_view>
#include <type_traits>

#include "config/ConfigFields.h"

namespace sprig::settings {

namespace {

constexpr std::string_view null("\0", 1);
constexpr std::string_view picture = "␀";

std::string replaced(const std::string& text, std::string_view old, std::string_view wanted) {
  std::string result;
  std::size_t begin = 0;
  for (auto place = text.find(old); place != std::string::npos; place = text.find(old, begin)) {
    result.append(text, begin, place - begin).append(wanted);
    begin = place + old.size();
  }
  return result.append(text, begin);
}

/// Calls `visit` with each text of a template, as a member.
template <typename Visit>
void forEachText(Visit visit) {
  forEachField<TemplateItem>([&](const auto& field) {
    if constexpr (std::is_same_v<decltype(field.member), std::string TemplateItem::*>) visit(field.member);
  });
}

int nextSession() {
  static std::atomic<int> last = 0;
  return ++last;
}

}  // namespace

std::string shownText(const std::string& text) { return replaced(text, null, picture); }

TemplateDraft::TemplateDraft(SettingsModel& settingsModel, const TemplateKey& key)
    : model(settingsModel),
      templateKey(key),
      session(nextSession()),
      edited(*model.find(key)),
      opened(edited),
      written(edited) {}

TemplateItem TemplateDraft::shown() const {
  auto item = edited;
  forEachText([&](auto text) { item.*text = shownText(item.*text); });
  return item;
}

void TemplateDraft::editShown(const TemplateItem& wanted) {
  auto item = wanted;
  forEachText([&](auto text) {
    if (item.*text == shownText(edited.*text)) {
      item.*text = edited.*text;
    } else if ((opened.*text).find('\0') != std::string::npos) {
      item.*text = replaced(item.*text, picture, null);
    }
  });
  edit(item);
}

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
