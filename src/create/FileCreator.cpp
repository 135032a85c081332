// SPDX-License-Identifier: GPL-3.0-or-later

#include "create/FileCreator.h"

#include <cerrno>
#include <chrono>
#include <memory>
#include <thread>
#include <utility>

#include "create/Base64.h"
#include "engine/TemplateEngine.h"
#include "platform/Platform.h"
#include "text/Text.h"
#include "translation/translated.h"

namespace sprig {

using platform::Error;
using platform::FileURL;

namespace {

/// What to write: the template's own bytes if it has usable ones, else its rendered text. Nothing when that
/// text is not Unicode.
std::optional<std::string> bytesOf(const TemplateItem& item, RenderedTemplate& rendered) {
  if (item.contentBase64 && !item.contentBase64->empty()) {
    if (auto decoded = decodeBase64(*item.contentBase64)) return decoded;
  }
  if (!rendered.isContentUnicode) return std::nullopt;
  return std::move(rendered.content);
}

/// How long a name is chosen again because others take each one at the same moment.
constexpr auto patience = std::chrono::seconds(3);
/// So often without a pause: as a rule somebody who takes a name has then got one.
constexpr int eagerChoices = 10;

/// Why `name` can't name a file; nothing when it can.
std::optional<std::string> refusalOf(const std::string& name) {
  if (FileURL::isPathComponent(name)) return std::nullopt;
  if (name.empty()) return "A file name can't be empty.";
  if (name == "." || name == "..")
    return "A file can't be named \"" + name + "\", which stands for a folder.";
  const std::string stranger = name.find('/') != std::string::npos ? "\"/\"" : "the character NUL (U+0000)";
  return "A file name can't hold " + stranger + ".";
}

Error notAFileName(const std::string& refusal, const std::string& name, const FileURL& folder) {
  return {platform::POSIXErrorDomain, EINVAL,
          refusal + " Can't create a file named \"" + name + "\" in \"" + folder.path() + "\" (EINVAL)"};
}

bool isTaken(const Error& error) {
  return error.domain == platform::POSIXErrorDomain && error.code == EEXIST;
}

Error alwaysTaken(const Error& last) {
  return {last.domain, last.code,
          "For three seconds each name chosen was taken by another program at that moment. The last one: " +
              last.description};
}

/// Writes the bytes to a file that nobody sees yet and then chooses its name, so that no other program's file
/// is replaced, whenever it comes. Where that is refused (a folder without room for a temporary file's name,
/// say) the file is written directly.
tl::expected<FileURL, Error> createUnderFreeName(const std::string& bytes, const FileURL& folder,
                                                 const std::string& filename) {
  auto& platform = platform::current();
  auto whole = platform.files.prepareFile(bytes, folder).value_or(nullptr);
  const auto begin = platform.clock.now();
  for (int choices = 1;; ++choices) {
    const auto name = TemplateEngine::resolveCollision(folder, filename);
    auto file = folder.appendingPath(name);
    auto error = whole ? whole->publish(name) : std::nullopt;
    if (!whole || (error && !isTaken(*error))) {
      whole.reset();  // and the room it takes
      error = platform.files.createFile(bytes, file);
    }
    if (!error) return file;
    if (!isTaken(*error)) return tl::unexpected(std::move(*error));
    // A clock that was set meanwhile must not make this last.
    if (std::chrono::abs(platform.clock.now() - begin) >= patience) {
      return tl::unexpected(alwaysTaken(*error));
    }
    if (choices > eagerChoices) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

/// A description that can be shown and logged whole: without NUL, at which texts end elsewhere, and no longer
/// than anyone reads.
std::string shown(const std::string& description) {
  constexpr std::size_t longest = 8'000;
  constexpr std::size_t end = 1'000;
  auto result = description;
  if (result.size() > longest) {
    result = text::toValidUTF8(result.substr(0, longest - end)) + "\u2026" +
             text::toValidUTF8(result.substr(result.size() - end));
  }
  for (auto nul = result.find('\0'); nul != std::string::npos; nul = result.find('\0', nul)) {
    result.replace(nul, 1, "\u2400");
  }
  return result;
}

void report(const Error& error) {
  const auto description = shown(error.description);
  platform::current().systemLog.log("[SprigFinder] FileCreator error: " + description);
  const bool isPermissionDenied =
      error.domain == platform::CocoaErrorDomain && error.code == platform::FileWriteNoPermissionError;
  const std::string title =
      isPermissionDenied ? translated("Permission Denied") : translated("Couldn't create the file.");
  const std::string text = isPermissionDenied
                               ? translated("You don't have permission to write files in this directory.")
                               : translated("The folder may be read-only or unavailable.");
  FileCreator::showErrorDialog(title, text + "\n\n" + translated("Technical details:") + "\n" + description);
}

}  // namespace

std::optional<FileURL> FileCreator::createFile(const TemplateItem& item, const FileURL& folder,
                                               const std::optional<std::string>& customName) {
  auto& platform = platform::current();
  const auto folderName = folder.lastPathComponent();
  const auto now = platform.clock.now();
  auto rendered = TemplateEngine::render(item, customName, folderName, folderName, now);
  const auto bytes = bytesOf(item, rendered);
  if (!bytes) {
    showErrorDialog(translated("Encoding error"), translated("Unable to encode template content."));
    return std::nullopt;
  }
  if (const auto refusal = refusalOf(rendered.filename)) {
    report(notAFileName(*refusal, rendered.filename, folder));
    return std::nullopt;
  }
  const auto file = createUnderFreeName(*bytes, folder, rendered.filename);
  if (!file) {
    report(file.error());
    return std::nullopt;
  }
  platform.systemLog.log("[SprigFinder] Successfully wrote file to " + file->path());
  platform.mainQueue.async([file = *file] {
    const auto& services = platform::current();
    services.workspace.activateFileViewerSelecting({file});
    services.creations.created(file);
  });
  return *file;
}

void FileCreator::showErrorDialog(const std::string& message, const std::string& details) {
  platform::current().mainQueue.async([message, details] {
    platform::Alert alert;
    alert.messageText = message;
    alert.informativeText = details;
    alert.style = platform::AlertStyle::warning;
    alert.addButton(translated("Close"));
    auto& application = platform::current().application;
    application.activateIgnoringOtherApps();
    application.runModal(alert);
  });
}

}  // namespace sprig
