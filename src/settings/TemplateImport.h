// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "import/importFolder.h"
#include "platform/FileURL.h"
#include "settings/DocumentEdit.h"

namespace sprig::settings {

/// Templates that a folder or a file offers, to be looked at before any of them is added.
///
/// Threads: any. Failure: none; what can't be taken is in `skipped`.
class TemplateImport {
 public:
  struct Entry {
    TemplateItem item;
    /// What adding it would do.
    ImportOutcome outcome = ImportOutcome::added;
  };

  /// A folder of templates for every file manager; `document` may have some of them already.
  static TemplateImport fromFolder(const platform::FileURL& folder, const ConfigDocument& document);
  /// Files with templates that somebody shares.
  static TemplateImport fromSharedFiles(const std::vector<platform::FileURL>& files);

  const std::vector<Entry>& entries() const { return offered; }
  /// A sentence for each file that can't be taken.
  const std::vector<std::string>& skipped() const { return notTaken; }
  /// Adds the entries at these places, in ascending order.
  DocumentEdit adding(const std::vector<std::size_t>& chosen) const;

 private:
  void offerShared(const ConfigDocument& shared);

  using Change = std::function<void(ConfigDocument&)>;
  std::vector<Entry> offered;
  /// What adds each.
  std::vector<Change> changes;
  std::vector<std::string> notTaken;
};

}  // namespace sprig::settings
