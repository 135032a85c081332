#include "create/FileCreator.h"

#include <cerrno>

#include "create/Base64.h"
#include "engine/TemplateEngine.h"
#include "platform/Platform.h"
#include "text/Text.h"

namespace sprig {

using platform::Error;
using platform::FileURL;

namespace {

/// What to write: the template's own bytes if it has usable ones, else its rendered text. Nothing when that
/// text is not Unicode, as a folder or account name with stray bytes can make it.
std::optional<std::string> bytesOf(const TemplateItem& item, std::string renderedContent) {
  if (item.contentBase64 && !item.contentBase64->empty()) {
    if (auto decoded = decodeBase64(*item.contentBase64)) return decoded;
  }
  if (!text::isValidUTF8(renderedContent)) return std::nullopt;
  return renderedContent;
}

Error notAFileName(const std::string& name, const FileURL& folder) {
  return {platform::POSIXErrorDomain, EINVAL,
          "Can't create a file named \"" + name + "\" in \"" + folder.path() +
              "\": a file name can't be empty, \".\" or \"..\", and can't hold \"/\" (EINVAL)"};
}

/// Writes atomically, or where that is refused (a folder without room for a temporary file's name, say)
/// directly.
std::optional<Error> write(const std::string& bytes, const FileURL& file) {
  auto& files = platform::current().files;
  if (!files.writeData(bytes, file, platform::WriteOption::atomic)) return std::nullopt;
  return files.writeData(bytes, file, platform::WriteOption::none);
}

void report(const Error& error) {
  platform::current().systemLog.log("[SprigFinder] FileCreator error: " + error.description);
  const bool isPermissionDenied =
      error.domain == platform::CocoaErrorDomain && error.code == platform::FileWriteNoPermissionError;
  const std::string title = isPermissionDenied ? "Permission Denied" : "Couldn't create the file.";
  const std::string text = isPermissionDenied ? "You don't have permission to write files in this directory."
                                              : "The folder may be read-only or unavailable.";
  FileCreator::showErrorDialog(title, text + "\n\nTechnical details:\n" + error.description);
}

}  // namespace

std::optional<FileURL> FileCreator::createFile(const TemplateItem& item, const FileURL& folder,
                                               const std::optional<std::string>& customName) {
  auto& platform = platform::current();
  const auto folderName = folder.lastPathComponent();
  const auto now = platform.clock.now();
  auto rendered = TemplateEngine::render(item, customName, folderName, folderName, now);
  const auto finalName = TemplateEngine::resolveCollision(folder, rendered.filename);
  auto file = folder.appendingPathComponent(finalName);

  const auto bytes = bytesOf(item, std::move(rendered.content));
  if (!bytes) {
    showErrorDialog("Encoding error", "Unable to encode template content.");
    return std::nullopt;
  }
  if (const auto error = file ? write(*bytes, *file) : notAFileName(finalName, folder)) {
    report(*error);
    return std::nullopt;
  }
  platform.systemLog.log("[SprigFinder] Successfully wrote file to " + file->path());
  platform.creations.created(*file);
  platform.mainQueue.async(
      [file = *file] { platform::current().workspace.activateFileViewerSelecting({file}); });
  return file;
}

void FileCreator::showErrorDialog(const std::string& message, const std::string& details) {
  platform::current().mainQueue.async([message, details] {
    platform::Alert alert;
    alert.messageText = message;
    alert.informativeText = details;
    alert.style = platform::AlertStyle::warning;
    alert.addButton("Close");
    auto& application = platform::current().application;
    application.activateIgnoringOtherApps();
    application.runModal(alert);
  });
}

}  // namespace sprig
