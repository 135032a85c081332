#include "ports/desktop/DialogSession.h"

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
constexpr std::size_t longestTitle = 400;
constexpr std::size_t longestText = 12000;
/// For a symbol that the theme has no drawing of.
constexpr const char* plainIcon = "text-x-generic-symbolic";

/// Text as windows can show it.
std::string shownText(std::string_view text, std::size_t longest) {
  if (text.size() <= longest) return text::toValidUTF8(text);
  auto end = longest;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text::toValidUTF8(text.substr(0, end)) + "…";
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

dialog::IconLook iconOf(const Alert& alert) {
  if (!alert.icon) return {{iconOf(alert.style)}, static_cast<int>(styleIconSize), ""};
  dialog::IconLook look;
  if (auto name = ports::iconName(alert.icon->symbolName)) look.names.push_back(*std::move(name));
  look.names.emplace_back(plainIcon);
  const auto size = alert.icon->configuration ? alert.icon->configuration->pointSize : styleIconSize;
  look.size = static_cast<int>(size);
  look.description = shownText(alert.icon->accessibilityDescription, longestTitle);
  return look;
}

dialog::Show showOf(const Alert& alert, const TextField* field, const Click& click) {
  dialog::Show show;
  show.title = shownText(alert.messageText, longestTitle);
  show.text = shownText(alert.informativeText, longestText);
  show.icon = iconOf(alert);
  if (field != nullptr) {
    show.field = {text::toValidUTF8(field->stringValue), "", static_cast<int>(field->frame.width), 0};
  }
  for (const auto& button : alert.buttons) {
    show.buttons.push_back({shownText(button.title, longestTitle), keyOf(button)});
  }
  show.isFloating = alert.window->level == platform::WindowLevel::floating;
  show.activationToken = click.activationToken;
  show.parentWindow = click.parentWindow;
  return show;
}

}  // namespace

DialogSession::DialogSession(Alert& shownAlert, const DialogProgram& program, const Click& click)
    : alert(shownAlert), field(fieldOf(shownAlert)), process(program) {
  auto& window = *alert.window;
  window.makeKeyAndOrderFront();
  if (window.initialFirstResponder) window.makeFirstResponder(window.initialFirstResponder);
  const auto show = showOf(alert, field, click);
  if (field != nullptr) told.text = show.field->text;
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
  // What is not text could only be shown with other characters; the untouched text stays what it is.
  if (field != nullptr && event.text != told.text) field->stringValue = told.text = event.text;
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

DialogSession::Told DialogSession::wanted() const {
  const auto& window = *alert.window;
  Told state{told.text, std::nullopt, window.isFrontRegardless || window.isKey};
  if (field == nullptr) return state;
  state.text = text::toValidUTF8(field->stringValue);
  if (field->currentEditor) state.selection = field->currentEditor->selectedRange;
  return state;
}

void DialogSession::sendChanges() {
  auto now = wanted();
  dialog::Change change;
  if (now.text != told.text) change.text = now.text;
  if (now.selection && now.selection != told.selection) {
    change.selection = {now.selection->location, now.selection->length};
  }
  change.comesToFront = now.isInFront && !told.isInFront;
  if (change.text || change.selection || change.comesToFront) process.send(change);
  told = std::move(now);
}

void DialogSession::comeToFront(const std::string& activationToken) {
  dialog::Change change;
  change.comesToFront = true;
  change.activationToken = activationToken;
  process.send(change);
}

}  // namespace sprig::desktop
