// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/DialogSession.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "ports/linux/SymbolIcons.h"
#include "text/Text.h"

namespace sprig::desktop {

using platform::Alert;
using platform::Button;
using platform::TextField;

namespace {

constexpr double styleIconSize = 36;
/// How many bytes of a text are shown: more than anybody reads, less than takes noticeable time to lay out.
constexpr std::size_t maxText = 12000;
/// The same of what a field holds: less than a field has room for.
constexpr std::size_t maxName = 60000;
/// For a symbol that the theme has no drawing of.
constexpr std::string_view plainSymbol = "doc.text";
/// For a theme that doesn't have that either.
constexpr const char* plainIcon = "text-x-generic-symbolic";

/// Where a character begins that `place` is in.
std::size_t beginOfCharacter(std::string_view text, std::size_t place) {
  while (place > 0 && (static_cast<unsigned char>(text[place]) & 0xC0) == 0x80) --place;
  return place;
}

/// Text as windows can show it: a picture stands for U+0000, at which a window's text would end. Of a longer
/// one the middle is left out, since what there is to say of a long name comes before and behind it.
std::string shownText(std::string_view text, std::size_t longest = maxText) {
  if (text.size() > longest) {
    const auto head = text.substr(0, beginOfCharacter(text, longest / 2));
    const auto tail = text.substr(beginOfCharacter(text, text.size() - longest / 2));
    return shownText(head, longest) + "…" + shownText(tail, longest);
  }
  auto shown = text::toValidUTF8(text);
  for (auto null = shown.find('\0'); null != std::string::npos; null = shown.find('\0', null))
    shown.replace(null, 1, "␀");
  return shown;
}

/// Windows show one field, the first one.
TextField* fieldOf(const Alert& alert) {
  const auto* view = alert.accessoryView.get();
  return view == nullptr || view->subviews.empty() ? nullptr : view->subviews.front().get();
}

const Button* defaultButton(const Alert& alert) {
  for (const auto& button : alert.buttons) {
    if (button.keyEquivalent == "\r") return &button;
  }
  return alert.buttons.empty() ? nullptr : &alert.buttons.front();
}

dialog::ButtonKey keyOf(const Button& button) {
  if (button.keyEquivalent == "\r") return dialog::ButtonKey::enter;
  return button.keyEquivalent == "\x1b" ? dialog::ButtonKey::escape : dialog::ButtonKey::none;
}

std::string iconOf(platform::AlertStyle style) {
  switch (style) {
    case platform::AlertStyle::informational:
      return "dialog-information";
    case platform::AlertStyle::critical:
      return "dialog-error";
    default:
      return "dialog-warning";
  }
}

dialog::IconSpec iconOf(const Alert& alert) {
  if (!alert.icon) return {{iconOf(alert.style)}, static_cast<int>(styleIconSize), ""};
  dialog::IconSpec spec;
  for (const auto symbol : {std::string_view(alert.icon->symbolName), plainSymbol}) {
    if (auto name = ports::iconName(symbol)) spec.names.push_back(*std::move(name));
  }
  spec.names.emplace_back(plainIcon);
  const auto size = alert.icon->configuration ? alert.icon->configuration->pointSize : styleIconSize;
  spec.size = static_cast<int>(size);
  spec.description = shownText(alert.icon->accessibilityDescription);
  return spec;
}

dialog::FieldSpec specOf(const TextField& field) {
  return {shownText(field.stringValue, maxName), shownText(field.placeholderString, maxName),
          static_cast<int>(field.frame.width), static_cast<int>(std::lround(field.fontSize))};
}

dialog::Show showOf(const Alert& alert, const TextField* field, const Click& click) {
  dialog::Show show;
  show.title = shownText(alert.messageText);
  show.text = shownText(alert.informativeText);
  show.icon = iconOf(alert);
  if (field != nullptr) show.field = specOf(*field);
  for (const auto& button : alert.buttons) show.buttons.push_back({shownText(button.title), keyOf(button)});
  show.isFloating = alert.window->level == platform::WindowLevel::floating;
  show.isCentered = alert.window->isCentered;
  show.activationToken = click.activationToken;
  show.parentWindow = click.parentWindow;
  return show;
}

}  // namespace

DialogSession::DialogSession(Alert& shownAlert, const DialogProgram& program, const Opening& opening)
    : alert(shownAlert), field(fieldOf(shownAlert)), process(program) {
  auto& window = *alert.window;
  window.makeKeyAndOrderFront();
  if (window.initialFirstResponder) window.makeFirstResponder(window.initialFirstResponder);
  auto show = showOf(alert, field, opening.click);
  show.isAccessory = opening.policy == platform::ActivationPolicy::accessory;
  show.isLate = opening.isLate;
  if (field != nullptr) lastSent.text = show.field->text;
  process.send(show);
}

DialogSession::~DialogSession() {
  alert.window->orderOut();
  if (field != nullptr) field->currentEditor.reset();
}

void DialogSession::stop(int code) {
  if (!endCode) endCode = code;
}

bool DialogSession::performNext() {
  const auto event = process.takeEvent();
  if (event) perform(*event);
  return event.has_value();
}

void DialogSession::perform(const dialog::Event& event) {
  if (!event.activationToken.empty()) token = event.activationToken;
  // What could only be shown with other characters, or in part, stays what it is while it is not touched.
  if (field != nullptr && event.text != lastSent.text) field->stringValue = lastSent.text = event.text;
  if (event.kind == dialog::EventKind::close) return close();
  if (event.kind == dialog::EventKind::button) {
    if (event.button < alert.buttons.size()) press(alert.buttons[event.button]);
    return;
  }
  if (field != nullptr && field->target != nullptr) field->target->performAction(field->action);
  if (const auto* button = defaultButton(alert); button != nullptr && !endCode) press(*button);
}

void DialogSession::press(const Button& button) {
  if (button.target != nullptr) {
    button.target->performAction(button.action);
  } else {
    stop(button.tag);
  }
}

void DialogSession::close() {
  if (alert.window->delegate != nullptr) alert.window->delegate->windowWillClose();
  stop(noButtonCode);
}

DialogSession::State DialogSession::currentState() const {
  const auto& window = *alert.window;
  State state{lastSent.text, std::nullopt, window.isFrontRegardless || window.isKey};
  if (field == nullptr) return state;
  state.text = shownText(field->stringValue, maxName);
  if (field->currentEditor) state.selection = field->currentEditor->selectedRange;
  return state;
}

void DialogSession::sendChanges() {
  auto now = currentState();
  dialog::Change change;
  if (now.text != lastSent.text) change.text = now.text;
  if (now.selection && now.selection != lastSent.selection) {
    change.selection = {std::min(now.selection->location, maxName), std::min(now.selection->length, maxName)};
  }
  change.comesToFront = now.isInFront && !lastSent.isInFront;
  if (change.comesToFront) {
    process.bringToFront(change);
  } else if (change.text || change.selection) {
    process.send(change);
  }
  lastSent = std::move(now);
}

void DialogSession::comeToFront(const std::string& activationToken) {
  dialog::Change change;
  change.comesToFront = true;
  change.activationToken = activationToken;
  process.bringToFront(change);
}

}  // namespace sprig::desktop
