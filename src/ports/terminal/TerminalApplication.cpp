// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/TerminalApplication.h"

#include "text/Text.h"

namespace sprig::terminal {

using platform::Alert;
using platform::Button;
using platform::TextField;

namespace {

/// The code of a session that no button has ended.
constexpr int noButtonCode = -1;

const Button* buttonWithKey(const Alert& alert, std::string_view key) {
  for (const auto& button : alert.buttons) {
    if (button.keyEquivalent == key) return &button;
  }
  return nullptr;
}

const Button* defaultButton(const Alert& alert) {
  if (const auto* button = buttonWithKey(alert, "\r")) return button;
  return alert.buttons.empty() ? nullptr : &alert.buttons.front();
}

/// The field that has the keyboard.
TextField* editedField(const Alert& alert) {
  const auto& window = *alert.window;
  const auto& field = window.firstResponder ? window.firstResponder : window.initialFirstResponder;
  return field && field->isEditable ? field.get() : nullptr;
}

std::size_t byteOffset(std::string_view text, std::size_t utf16Units) {
  std::size_t offset = 0;
  while (offset < text.size() && text::utf16Length(text.substr(0, offset)) < utf16Units) {
    do {
      ++offset;
    } while (offset < text.size() && (static_cast<unsigned char>(text[offset]) & 0xC0) == 0x80);
  }
  return offset;
}

/// Where the cursor belongs: behind what is selected.
std::size_t cursorIn(const TextField& field) {
  const auto selection = field.currentEditor ? field.currentEditor->selectedRange : std::nullopt;
  if (!selection) return field.stringValue.size();
  return byteOffset(field.stringValue, selection->location + selection->length);
}

}  // namespace

int TerminalApplication::runModal(Alert& alert) {
  Session session;
  sessions.push_back(&session);
  mainQueue.runPending();
  if (!session) run(alert, session);
  sessions.pop_back();
  return session.value_or(noButtonCode);
}

void TerminalApplication::stopModal(int code) {
  if (!sessions.empty()) *sessions.back() = code;
}

void TerminalApplication::run(Alert& alert, const Session& session) {
  auto* field = editedField(alert);
  if (field == nullptr) {
    show(alert);
    press(defaultButton(alert));
  } else if (questions == Questions::confirm) {
    press(defaultButton(alert));
  } else {
    ask(alert, *field, session);
  }
}

void TerminalApplication::ask(Alert& alert, TextField& field, const Session& session) {
  const auto line = readLine(alert, field, session);
  if (session) return;
  if (line) {
    field.stringValue = *line;
    if (field.target != nullptr) field.target->performAction(field.action);
    if (!session) press(defaultButton(alert));
    return;
  }
  cancelledQuestion = true;
  press(buttonWithKey(alert, "\x1b"));
  if (!session && alert.window->delegate != nullptr) alert.window->delegate->windowWillClose();
}

std::optional<std::string> TerminalApplication::readLine(const Alert& alert, const TextField& field,
                                                         const Session& session) {
  static_cast<void>(output.write(
      "\n" + output.styled(output.fittedText(alert.messageText, output.columns() - 1), Style::bold) + "\n" +
      output.paragraphs(alert.informativeText, 0)));
  LineRequest request;
  request.prompt = "> ";
  request.isOver = [&session] { return session.has_value(); };
  if (isEditable(field.stringValue)) {
    request.text = field.stringValue;
    request.cursor = cursorIn(field);
  } else {
    // Editing would show it to the terminal as it is; an empty answer still takes it.
    request.prompt = "[" + output.text(field.stringValue) + "] > ";
  }
  return lines.read(request);
}

void TerminalApplication::show(const Alert& alert) {
  shownAlert = true;
  const auto heading = "sprig: " + output.text(alert.messageText);
  const auto details = alert.informativeText.empty() ? "" : output.paragraphs(alert.informativeText, 2);
  static_cast<void>(output.write(output.styled(heading, Style::error) + "\n" + details));
}

void TerminalApplication::press(const Button* button) {
  if (button == nullptr) return;
  if (button->target != nullptr) {
    button->target->performAction(button->action);
  } else {
    stopModal(button->tag);
  }
}

}  // namespace sprig::terminal
