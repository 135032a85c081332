// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/client/FileManagerService.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "filemanagers/client/guardCallback.h"
#include "wire/Interface.h"
#include "wire/InterfaceXml.h"

namespace sprig::filemanagers {

namespace {

/// After that a file manager has noticed a file that is new in a folder that it shows. Thunar 4.20 was
/// seen to take 1.9 seconds.
constexpr guint maxWait = 2500;
/// What changes a view comes in bursts; one look is enough for each.
constexpr guint burst = 20;
constexpr std::size_t maxRequests = 16;

void answer(GDBusMethodInvocation* invocation, bool isDone) {
  g_dbus_method_invocation_return_value(invocation, g_variant_new("(b)", isDone ? TRUE : FALSE));
}

}  // namespace

/// One call that waits for its answer, which it gets at the latest when this goes.
class FileManagerService::Request {
 public:
  Request(FileManagerService& owner, FileToSelect file, GDBusMethodInvocation* methodInvocation)
      : service(owner),
        invocation(methodInvocation),
        selection(service.newSelection(std::move(file), [this] { lookSoon(); })) {}

  ~Request() {
    if (look != 0) g_source_remove(look);
    if (end != 0) g_source_remove(end);
    answer(invocation, state == State::selected);
  }

  Request(const Request&) = delete;
  Request& operator=(const Request&) = delete;

  /// Whether the answer is known at once.
  bool begin() {
    state = selection->attempt();
    if (state == State::notYet) end = g_timeout_add(maxWait, ended, this);
    return state != State::notYet;
  }

 private:
  using State = FileSelection::State;

  void lookSoon() {
    if (look == 0) look = g_timeout_add(burst, looked, this);
  }

  static gboolean looked(void* self) noexcept {
    auto& request = *static_cast<Request*>(self);
    request.look = 0;
    guardCallback([&] {
      request.state = request.selection->attempt();
      if (request.state != State::notYet) request.service.remove(&request);
    });
    return G_SOURCE_REMOVE;
  }

  static gboolean ended(void* self) noexcept {
    auto& request = *static_cast<Request*>(self);
    request.end = 0;
    request.service.remove(&request);
    return G_SOURCE_REMOVE;
  }

  FileManagerService& service;
  GDBusMethodInvocation* const invocation;
  const std::unique_ptr<FileSelection> selection;
  State state = State::impossible;
  guint look = 0;
  guint end = 0;
};

FileManagerService::FileManagerService(GDBusConnection& bus, NewFileSelection makeSelection)
    : connection(static_cast<GDBusConnection*>(g_object_ref(&bus))), newSelection(std::move(makeSelection)) {
  static constexpr GDBusInterfaceVTable table = {methodCalled, nullptr, nullptr, {}};
  const std::unique_ptr<GDBusNodeInfo, wire::Releaser<g_dbus_node_info_unref>> node(
      g_dbus_node_info_new_for_xml(wire::fileManagerInterfaceXml, nullptr));
  auto* interface = g_dbus_node_info_lookup_interface(node.get(), wire::fileManagerInterface);
  object = g_dbus_connection_register_object(connection.get(), wire::fileManagerPath, interface, &table, this,
                                             nullptr, nullptr);
}

FileManagerService::~FileManagerService() {
  if (object != 0) g_dbus_connection_unregister_object(connection.get(), object);
}

// The parameters are what the bus library passes.
// NOLINTNEXTLINE(readability-function-size)
void FileManagerService::methodCalled(GDBusConnection* /*connection*/, const char* /*sender*/,
                                      const char* /*path*/, const char* /*interface*/, const char* method,
                                      GVariant* parameters, GDBusMethodInvocation* invocation,
                                      void* self) noexcept {
  if (std::string_view(method) != "Select") return answer(invocation, false);
  guardCallback([&] { static_cast<FileManagerService*>(self)->select(parameters, invocation); });
}

void FileManagerService::select(GVariant* parameters, GDBusMethodInvocation* invocation) {
  const char* uri = nullptr;
  const char* window = nullptr;
  g_variant_get(parameters, "(&s&s)", &uri, &window);
  if (requests.size() >= maxRequests) return answer(invocation, false);
  auto request = std::make_unique<Request>(*this, FileToSelect{uri, window}, invocation);
  if (!request->begin()) requests.push_back(std::move(request));
}

void FileManagerService::remove(const Request* request) {
  const auto isIt = [&](const auto& candidate) { return candidate.get() == request; };
  requests.erase(std::remove_if(requests.begin(), requests.end(), isIt), requests.end());
}

}  // namespace sprig::filemanagers
