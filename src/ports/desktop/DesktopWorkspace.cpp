// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/DesktopWorkspace.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <memory>
#include <string_view>

#include "platform/Platform.h"
#include "wire/FileUri.h"
#include "wire/Interface.h"

namespace sprig::desktop {

using wire::ErrorPointer;
using wire::ObjectPointer;

namespace {

constexpr const char* sessionFileManager = "org.freedesktop.FileManager1";
/// After that a file manager has noticed a file that is new in a folder that it shows. Caja, asked sooner,
/// opens a window without selecting the file.
constexpr guint millisecondsToNotice = 200;
/// A file manager that has not answered until then won't.
constexpr int millisecondsToSelect = 4000;

/// A launch context that hands on the token of a click: in the environment of programs that are started, and
/// to those that the bus activates, which get what the context itself gives for each.
struct ClickContext {
  GAppLaunchContext parent;
  char* token;
};
struct ClickContextClass {
  GAppLaunchContextClass parent;
};

G_DEFINE_TYPE(ClickContext, click_context, G_TYPE_APP_LAUNCH_CONTEXT)

char* tokenOf(GAppLaunchContext* context, GAppInfo*, GList*) {
  return g_strdup(reinterpret_cast<ClickContext*>(context)->token);
}

void finalizeClickContext(GObject* context) {
  g_free(reinterpret_cast<ClickContext*>(context)->token);
  G_OBJECT_CLASS(click_context_parent_class)->finalize(context);
}

void click_context_class_init(ClickContextClass* type) {
  type->parent.get_startup_notify_id = tokenOf;
  G_OBJECT_CLASS(type)->finalize = finalizeClickContext;
}

void click_context_init(ClickContext*) {}

ObjectPointer<GAppLaunchContext> launchContext(const std::string& activationToken) {
  ObjectPointer<GAppLaunchContext> context(
      static_cast<GAppLaunchContext*>(g_object_new(click_context_get_type(), nullptr)));
  if (activationToken.empty()) return context;
  reinterpret_cast<ClickContext*>(context.get())->token = g_strdup(activationToken.c_str());
  for (const auto* variable : {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"}) {
    g_app_launch_context_setenv(context.get(), variable, activationToken.c_str());
  }
  return context;
}

/// File managers that can be started with a file to show, the file being the last argument. Right after
/// the bus has started them they don't know their own `ShowItems` yet.
struct ShowingCommand {
  std::string_view program;
  const char* command;
};
constexpr std::array<ShowingCommand, 3> showingCommands = {
    {{"nautilus", "nautilus --select"}, {"nemo", "nemo"}, {"dolphin", "dolphin --select"}}};

const char* showingCommand(std::string_view program) {
  const auto* found = std::find_if(showingCommands.begin(), showingCommands.end(),
                                   [&](const auto& row) { return row.program == program; });
  return found == showingCommands.end() ? nullptr : found->command;
}

void logFailure(const std::string& what, const GError* error) {
  platform::current().systemLog.log("[SprigFinder] Can't " + what + ": " +
                                    (error != nullptr ? error->message : "unknown"));
}

/// One way after the other of showing files, until one works: in the window of the click, by its file
/// manager, by that file manager started again, by the session's, by the program for folders. It belongs to
/// the call under way.
class Reveal {
 public:
  using Pointer = std::unique_ptr<Reveal>;

  Reveal(GDBusConnection* connection, const Click& click, const std::vector<platform::FileURL>& files,
         int limit)
      : bus(static_cast<GDBusConnection*>(g_object_ref(connection))),
        sender(click.sender),
        program(click.program),
        activationToken(click.activationToken),
        parentWindow(click.parentWindow),
        milliseconds(limit) {
    for (const auto& file : files) {
      if (auto uri = wire::uriFromPath(file.path())) fileUris.push_back(std::move(*uri));
    }
    if (files.empty()) return;
    folderUri = wire::uriFromPath(files.front().deletingLastPathComponent().path()).value_or("");
    fileName = files.front().lastPathComponent();
  }

  static void start(Pointer reveal) {
    if (reveal->fileUris.empty()) return;
    if (reveal->sender.empty()) {
      askSession(std::move(reveal));
    } else {
      select(std::move(reveal));
    }
  }

 private:
  /// In the window of the click, by our module there.
  static void select(Pointer reveal) {
    auto* parameters = g_variant_new("(ss)", reveal->fileUris.front().c_str(), reveal->parentWindow.c_str());
    const auto sender = reveal->sender;
    auto* connection = reveal->bus.get();
    g_dbus_connection_call(connection, sender.c_str(), wire::fileManagerPath, wire::fileManagerInterface,
                           "Select", parameters, G_VARIANT_TYPE("(b)"), G_DBUS_CALL_FLAGS_NONE,
                           millisecondsToSelect, nullptr, selectionAnswered, reveal.release());
  }

  static void selectionAnswered(GObject* connection, GAsyncResult* result, void* self) noexcept {
    Pointer reveal(static_cast<Reveal*>(self));
    GError* error = nullptr;
    const wire::VariantPointer answer(
        g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(connection), result, &error));
    const ErrorPointer owned(error);
    if (error != nullptr && hasGone(error)) return startAgain(std::move(reveal));
    gboolean isSelected = FALSE;
    if (answer) g_variant_get(answer.get(), "(b)", &isSelected);
    if (isSelected == FALSE) g_timeout_add(millisecondsToNotice, askSender, reveal.release());
  }

  static gboolean askSender(void* self) noexcept {
    Pointer reveal(static_cast<Reveal*>(self));
    const auto sender = reveal->sender;
    showItems(std::move(reveal), sender.c_str(), senderAnswered);
    return G_SOURCE_REMOVE;
  }

  static void showItems(Pointer reveal, const char* fileManager, GAsyncReadyCallback answered) {
    GVariantBuilder uris;
    g_variant_builder_init(&uris, G_VARIANT_TYPE_STRING_ARRAY);
    for (const auto& uri : reveal->fileUris) g_variant_builder_add(&uris, "s", uri.c_str());
    auto* parameters = g_variant_new("(ass)", &uris, reveal->activationToken.c_str());
    auto* connection = reveal->bus.get();
    const int limit = reveal->milliseconds;
    g_dbus_connection_call(connection, fileManager, "/org/freedesktop/FileManager1", sessionFileManager,
                           "ShowItems", parameters, nullptr, G_DBUS_CALL_FLAGS_NONE, limit, nullptr, answered,
                           reveal.release());
  }

  static ErrorPointer errorOf(GObject* connection, GAsyncResult* result) {
    GError* error = nullptr;
    const wire::VariantPointer answer(
        g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(connection), result, &error));
    return ErrorPointer(error);
  }

  static bool isOneOf(std::initializer_list<int> codes, const GError* error) {
    return error->domain == G_DBUS_ERROR && std::find(codes.begin(), codes.end(), error->code) != codes.end();
  }

  static bool hasGone(const GError* error) {
    return isOneOf({G_DBUS_ERROR_SERVICE_UNKNOWN, G_DBUS_ERROR_NAME_HAS_NO_OWNER, G_DBUS_ERROR_NO_REPLY},
                   error);
  }

  /// Only where the file manager can't do it is another one asked: one that is slow may yet show the file.
  static bool isUnable(const GError* error) {
    return isOneOf({G_DBUS_ERROR_UNKNOWN_OBJECT, G_DBUS_ERROR_UNKNOWN_METHOD, G_DBUS_ERROR_UNKNOWN_INTERFACE},
                   error);
  }

  static void senderAnswered(GObject* connection, GAsyncResult* result, void* self) noexcept {
    Pointer reveal(static_cast<Reveal*>(self));
    const auto error = errorOf(connection, result);
    if (!error) return;
    if (hasGone(error.get())) return startAgain(std::move(reveal));
    if (isUnable(error.get())) return askSession(std::move(reveal));
    logFailure("have the file shown where it was asked for", error.get());
  }

  /// The file manager was closed while the user was asked for a name.
  static void startAgain(Pointer reveal) {
    if (reveal->program == "thunar") return askThunar(std::move(reveal));
    const auto* command = showingCommand(reveal->program);
    if (command == nullptr || !launch(*reveal, command)) askSession(std::move(reveal));
  }

  static bool launch(const Reveal& reveal, const char* command) {
    const ObjectPointer<GAppInfo> app(
        g_app_info_create_from_commandline(command, nullptr, G_APP_INFO_CREATE_SUPPORTS_URIS, nullptr));
    if (!app) return false;
    const auto context = launchContext(reveal.activationToken);
    auto uri = reveal.fileUris.front();
    GList uris = {uri.data(), nullptr, nullptr};
    return g_app_info_launch_uris(app.get(), &uris, context.get(), nullptr) != FALSE;
  }

  /// Thunar opens a file that it is started with, but selects one when its own name is asked.
  static void askThunar(Pointer reveal) {
    if (g_utf8_validate(reveal->fileName.c_str(), -1, nullptr) == FALSE) return askSession(std::move(reveal));
    auto* parameters = g_variant_new("(ssss)", reveal->folderUri.c_str(), reveal->fileName.c_str(), "",
                                     reveal->activationToken.c_str());
    auto* connection = reveal->bus.get();
    const int limit = reveal->milliseconds;
    g_dbus_connection_call(connection, "org.xfce.FileManager", "/org/xfce/FileManager",
                           "org.xfce.FileManager", "DisplayFolderAndSelect", parameters, nullptr,
                           G_DBUS_CALL_FLAGS_NONE, limit, nullptr, thunarAnswered, reveal.release());
  }

  static void thunarAnswered(GObject* connection, GAsyncResult* result, void* self) noexcept {
    Pointer reveal(static_cast<Reveal*>(self));
    if (errorOf(connection, result)) askSession(std::move(reveal));
  }

  static void askSession(Pointer reveal) {
    showItems(std::move(reveal), sessionFileManager, sessionAnswered);
  }

  static void sessionAnswered(GObject* connection, GAsyncResult* result, void* self) noexcept {
    Pointer reveal(static_cast<Reveal*>(self));
    if (errorOf(connection, result)) openFolder(std::move(reveal));
  }

  static void openFolder(Pointer reveal) {
    const auto context = launchContext(reveal->activationToken);
    const auto folder = reveal->folderUri;
    g_app_info_launch_default_for_uri_async(folder.c_str(), context.get(), nullptr, folderOpened,
                                            reveal.release());
  }

  static void folderOpened(GObject*, GAsyncResult* result, void* self) noexcept {
    const Pointer reveal(static_cast<Reveal*>(self));
    GError* error = nullptr;
    g_app_info_launch_default_for_uri_finish(result, &error);
    const ErrorPointer owned(error);
    if (owned) logFailure("show " + reveal->folderUri, error);
  }

  const ObjectPointer<GDBusConnection> bus;
  const std::string sender;
  const std::string program;
  const std::string activationToken;
  const std::string parentWindow;
  const int milliseconds;
  std::vector<std::string> fileUris;
  std::string folderUri;
  std::string fileName;
};

void opened(GObject* handler, GAsyncResult* result, void*) noexcept {
  GError* error = nullptr;
  g_app_info_launch_uris_finish(reinterpret_cast<GAppInfo*>(handler), result, &error);
  const ErrorPointer owned(error);
  if (owned) logFailure("start the program that opens the URL", error);
}

}  // namespace

DesktopWorkspace::DesktopWorkspace(GDBusConnection& connection, std::chrono::milliseconds timeLimit)
    : bus(static_cast<GDBusConnection*>(g_object_ref(&connection))), limit(timeLimit) {}

void DesktopWorkspace::activateFileViewerSelecting(const std::vector<platform::FileURL>& files) {
  Reveal::start(std::make_unique<Reveal>(bus.get(), click, files, static_cast<int>(limit.count())));
}

bool DesktopWorkspace::open(const std::string& url) {
  const wire::TextPointer scheme(g_uri_parse_scheme(url.c_str()));
  if (!scheme) return false;
  const ObjectPointer<GAppInfo> handler(g_app_info_get_default_for_uri_scheme(scheme.get()));
  if (!handler) return false;
  auto text = url;
  GList urls = {text.data(), nullptr, nullptr};
  const auto context = launchContext(click.activationToken);
  g_app_info_launch_uris_async(handler.get(), &urls, context.get(), nullptr, opened, nullptr);
  return true;
}

}  // namespace sprig::desktop
