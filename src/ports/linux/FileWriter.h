#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Error.h"
#include "platform/FileURL.h"
#include "ports/linux/OpenFile.h"
#include "ports/linux/SystemCalls.h"

namespace sprig::ports {

/// Writes one file, once. The folder is held open meanwhile, so the temporary file and the target are in one
/// folder even when somebody renames it, and no path gets longer than the target's.
///
/// Threads:   one at a time.
/// Ownership: every descriptor is closed when an operation returns.
/// Failure:   an `Error`; no temporary file is left, nor a partial file where there was none.
class FileWriter {
 public:
  FileWriter(SystemCalls& systemCalls, const platform::FileURL& target);

  /// Puts a new file in the target's place, which keeps its old content until then. A link is replaced, never
  /// followed.
  std::optional<platform::Error> replaceAtomically(std::string_view data);

  /// Writes straight to the target; refuses to follow a link.
  std::optional<platform::Error> writeInPlace(std::string_view data);

  /// Adds to the end of the existing target (links followed) in one write.
  std::optional<platform::Error> append(std::string_view data);

 private:
  enum class Flush { no, toDisk };

  OpenFile openFolder() const;
  OpenFile createTemporary(const OpenFile& folder, std::string& name) const;
  std::optional<platform::Error> store(std::string_view data, OpenFile& file, Flush flush);
  bool writeAll(int descriptor, std::string_view data);
  platform::Error failed(std::string_view step) const;

  SystemCalls& calls;
  const platform::FileURL& location;
  std::string targetName;
};

}  // namespace sprig::ports
