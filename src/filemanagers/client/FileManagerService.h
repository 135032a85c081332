// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

#include <memory>
#include <vector>

#include "filemanagers/client/FileSelection.h"
#include "wire/Pointers.h"

namespace sprig::filemanagers {

/// What the extension may ask of the file manager, on the file manager's own connection: to select a file.
/// The answer comes when the file is selected, or when that has not been possible for a while; nobody waits
/// for it.
///
/// Threads: main thread, with the main loop that is there anyway.
/// Failure: an object that can't be exported is left out; the extension then shows files in another way.
class FileManagerService {
 public:
  FileManagerService(GDBusConnection& bus, NewFileSelection makeSelection);
  ~FileManagerService();
  FileManagerService(const FileManagerService&) = delete;
  FileManagerService& operator=(const FileManagerService&) = delete;

 private:
  class Request;

  static void methodCalled(GDBusConnection* connection, const char* sender, const char* path,
                           const char* interface, const char* method, GVariant* parameters,
                           GDBusMethodInvocation* invocation, void* self) noexcept;
  void select(GVariant* parameters, GDBusMethodInvocation* invocation);
  void remove(const Request* request);

  const wire::ObjectPointer<GDBusConnection> connection;
  const NewFileSelection newSelection;
  std::vector<std::unique_ptr<Request>> requests;
  guint object = 0;
};

}  // namespace sprig::filemanagers
