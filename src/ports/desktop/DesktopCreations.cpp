// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/DesktopCreations.h"

#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

#include "config/ConfigManager.h"
#include "translation/translated.h"
#include "wire/FileUri.h"
#include "wire/Interface.h"

namespace sprig::desktop {

using ports::Creation;
using ports::CreationState;
using wire::ObjectPointer;
using wire::VariantPointer;

namespace {

/// A creation that another program is asked about.
struct Question {
  DesktopCreations* creations;
  Creation creation;
};

bool isHidden(const Creation& creation) { return creation.file.lastPathComponent().starts_with('.'); }

bool areNotificationsWanted() {
  return ConfigManager::shared().getConfig()->settings.notificationsEnabled.value_or(true);
}

}  // namespace

DesktopCreations::DesktopCreations(GDBusConnection& connection, platform::FileURL journalFolder)
    : bus(static_cast<GDBusConnection*>(g_object_ref(&connection))),
      journal(std::move(journalFolder)),
      notification(connection) {}

void DesktopCreations::created(const platform::FileURL& file) {
  journal.created(file);
  if (const auto creation = Creation::of(file)) askFileManager(*creation);
}

void DesktopCreations::askFileManager(const Creation& creation) {
  constexpr int patience = 1500;  // milliseconds
  const auto uri = wire::uriFromPath(creation.file.path());
  if (click.sender.empty() || !uri) return notify(creation, Recorded::no);
  auto question = std::make_unique<Question>(Question{this, creation});
  g_dbus_connection_call(bus.get(), click.sender.c_str(), wire::fileManagerPath, wire::fileManagerInterface,
                         "RecordCreation", g_variant_new("(s)", uri->c_str()), G_VARIANT_TYPE("(b)"),
                         G_DBUS_CALL_FLAGS_NO_AUTO_START, patience, nullptr, fileManagerAnswered,
                         question.release());
}

void DesktopCreations::fileManagerAnswered(GObject* connection, GAsyncResult* result,
                                           void* announcement) noexcept {
  const std::unique_ptr<Question> question(static_cast<Question*>(announcement));
  const VariantPointer answer(
      g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(connection), result, nullptr));
  gboolean isRecorded = FALSE;
  if (answer) g_variant_get(answer.get(), "(b)", &isRecorded);
  question->creations->notify(question->creation,
                              isRecorded != FALSE ? Recorded::inFileManager : Recorded::no);
}

void DesktopCreations::notify(const Creation& creation, Recorded recorded) {
  const bool isNeeded = recorded == Recorded::no || isHidden(creation);
  if (!isNeeded || !areNotificationsWanted()) return;
  NotificationText text;
  text.title = translated("Created “%1%”", {creation.file.lastPathComponent()});
  if (isHidden(creation)) text.body = translated("It is hidden, as its name begins with a dot.");
  if (recorded == Recorded::no) text.button = translated("Undo");
  notification.show(std::move(text), [this, creation] { undo(creation); });
}

void DesktopCreations::undo(const Creation& creation) {
  const auto state = creation.state();
  if (state != CreationState::untouched) return explain(creation.reasonToKeep(state));
  const ObjectPointer<GFile> file(g_file_new_for_path(creation.file.path().c_str()));
  g_file_trash_async(file.get(), G_PRIORITY_DEFAULT, nullptr, trashed,
                     std::make_unique<Question>(Question{this, creation}).release());
}

void DesktopCreations::trashed(GObject* file, GAsyncResult* result, void* announcement) noexcept {
  const std::unique_ptr<Question> question(static_cast<Question*>(announcement));
  const auto& [creations, creation] = *question;
  if (g_file_trash_finish(reinterpret_cast<GFile*>(file), result, nullptr) == FALSE) {
    creations->remove(creation);
  } else {
    creations->journal.forget(creation);
  }
}

void DesktopCreations::remove(const Creation& creation) {
  if (creation.remove()) {
    journal.forget(creation);
    return notification.show({translated("Removed “%1%”", {creation.file.lastPathComponent()}),
                              translated("There is no trash where it was."), ""});
  }
  const auto reason = std::generic_category().message(errno);
  const auto state = creation.state();
  explain(state == CreationState::untouched
              ? translated("“%1%” can't be removed: %2%", {creation.file.lastPathComponent(), reason})
              : creation.reasonToKeep(state));
}

void DesktopCreations::explain(const std::string& reason) {
  notification.show({translated("Nothing was undone"), translated("%1%.", {reason}), ""});
}

}  // namespace sprig::desktop
