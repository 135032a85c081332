// SPDX-License-Identifier: GPL-3.0-or-later

#include "create/PromptDialog.h"

#include "config/BuiltinTemplates.h"
#include "create/PromptDialogHandler.h"
#include "engine/TemplateEngine.h"
#include "platform/Platform.h"
#include "text/Text.h"
#include "translation/translated.h"

namespace sprig {

using platform::Alert;
using platform::TextField;
using platform::Window;

namespace {

constexpr double iconSize = 36;
constexpr double fontSize = 13;
constexpr platform::OperatingSystemVersion cooperativeActivation{14, 0, 0};

/// The template's symbol, or else a plain document's, in its own colours.
std::optional<platform::Image> promptIcon(const TemplateItem& item) {
  const auto& images = platform::current().images;
  auto symbol = images.systemSymbol(item.icon, item.name);
  if (!symbol) symbol = images.systemSymbol("doc.text", item.name);
  if (!symbol) return std::nullopt;
  auto icon = images.configured(*symbol, {iconSize, platform::FontWeight::regular});
  if (icon) icon->rendering = platform::ImageRendering::original;
  return icon;
}

void addButtons(Alert& alert, PromptDialogHandler& handler) {
  auto& create = alert.addButton(translated("Create"));
  create = {translated("Create"), PromptDialogHandler::confirmCode, "\r", PromptDialogHandler::createAction,
            &handler};
  auto& cancel = alert.addButton(translated("Cancel"));
  cancel = {translated("Cancel"), PromptDialogHandler::cancelCode, "\x1b", PromptDialogHandler::cancelAction,
            &handler};
}

std::shared_ptr<TextField> addNameField(Alert& alert, PromptDialogHandler& handler,
                                        const std::string& suggestedFilename) {
  auto field = std::make_shared<TextField>();
  field->frame = {0, 3, 300, 26};
  field->stringValue = suggestedFilename;
  // An empty name stands for the suggested one.
  field->placeholderString = suggestedFilename;
  field->fontSize = fontSize;
  field->isEditable = true;
  field->isSelectable = true;
  field->focusRingType = platform::FocusRingType::standard;
  field->action = PromptDialogHandler::createAction;
  field->target = &handler;
  alert.accessoryView = std::make_shared<platform::View>();
  alert.accessoryView->frame = {0, 0, 300, 32};
  alert.accessoryView->subviews.push_back(field);
  return field;
}

void bringToFront(Window& window, const std::shared_ptr<TextField>& field) {
  const auto& platform = platform::current();
  platform.application.setActivationPolicy(platform::ActivationPolicy::accessory);
  window.level = platform::WindowLevel::floating;
  window.hidesOnDeactivate = false;
  window.center();
  window.initialFirstResponder = field;
  if (platform.process.operatingSystemVersion() >= cooperativeActivation) {
    platform.application.activate();
  } else {
    platform.application.activateIgnoringOtherApps();
  }
  window.orderFrontRegardless();
  window.makeKeyAndOrderFront();
}

/// Selects the base of the name as soon as the modal session runs, since only then has the field an editor.
void selectBaseOnceShown(const std::shared_ptr<Window>& window, const std::shared_ptr<TextField>& field,
                         std::size_t selectionLength) {
  platform::current().mainQueue.async([window, field, selectionLength] {
    window->orderFrontRegardless();
    window->makeKey();
    window->makeFirstResponder(field);
    if (selectionLength >= 1 && field->currentEditor) {
      field->currentEditor->selectedRange = platform::TextRange{0, selectionLength};
    }
  });
}

std::optional<std::string> runPrompt(const TemplateItem& item, const std::string& suggestedFilename,
                                     const std::string& folderName) {
  Alert alert;
  alert.messageText = translated("New %1%", {displayName(item.id, item.name)});
  alert.informativeText =
      translated("Enter a name for the new file in “%1%”:",
                 {folderName.empty() ? translated("Current Folder") : std::string_view(folderName)});
  alert.style = platform::AlertStyle::informational;
  alert.icon = promptIcon(item);

  PromptDialogHandler handler;
  handler.window = alert.window;
  alert.window->delegate = &handler;
  addButtons(alert, handler);
  const auto field = addNameField(alert, handler, suggestedFilename);
  bringToFront(*alert.window, field);
  const auto base = TemplateEngine::parseFilenameComponents(suggestedFilename).base;
  selectBaseOnceShown(alert.window, field, text::utf16Length(base));

  const int response = platform::current().application.runModal(alert);
  alert.window->orderOut();
  if (!handler.isConfirmed && response != PromptDialogHandler::confirmCode) return std::nullopt;
  const std::string name(text::trimWhitespaceAndNewlines(field->stringValue));
  return name.empty() ? suggestedFilename : name;
}

}  // namespace

std::optional<std::string> PromptDialog::showNamePrompt(const TemplateItem& item,
                                                        const std::string& suggestedFilename,
                                                        const std::string& folderName) {
  auto& mainQueue = platform::current().mainQueue;
  if (mainQueue.isMainThread()) return runPrompt(item, suggestedFilename, folderName);
  std::optional<std::string> result;
  mainQueue.sync([&] { result = runPrompt(item, suggestedFilename, folderName); });
  return result;
}

std::optional<std::string> PromptDialog::showNamePrompt(const std::string& templateName,
                                                        const std::string& defaultName) {
  TemplateItem item;
  item.id = "custom";
  item.name = templateName;
  item.filenamePattern = defaultName;
  item.icon = "doc.text";
  item.category = "general";
  item.enabled = true;
  item.requiresInput = true;
  return showNamePrompt(item, defaultName, "");
}

}  // namespace sprig
