// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "config/ConfigDocument.h"
#include "platform/FileURL.h"
#include "translation/translated.h"

namespace sprig {

/// A file that can become a template.
struct ImportCandidate {
  /// As `templateFromFile` makes it; in a subfolder, the category is called like that.
  TemplateItem item;
  platform::FileURL source;
};

/// A file or folder that can't.
struct SkippedFile {
  platform::FileURL file;
  /// A sentence about "%1%", the file's name, without a full stop; not translated yet.
  const char* reason = "";
};

struct ImportSurvey {
  std::vector<ImportCandidate> candidates;
  std::vector<SkippedFile> skipped;
};

/// What file managers would offer of a folder of templates: its files, and those of its subfolders, by name;
/// hidden ones and backups left out, links followed. Of a desktop file, the file that it links to, under the
/// name that it gives. Bounded in depth, number and size.
///
/// Threads: any. Failure: none; what can't be read is skipped.
ImportSurvey surveyFolder(const platform::FileURL& folder);

enum class ImportOutcome { added, updated, unchanged };

/// What `importTemplate` would do.
ImportOutcome importOutcome(const ConfigDocument& document, const ImportCandidate& candidate);

/// Adds a template at the end, with an id of its own; or, if the document has it from the same source
/// already, gives that one the file's content of now and leaves all else to its owner.
///
/// Failure: as the operations of the document.
ImportOutcome importTemplate(ConfigDocument& document, const ImportCandidate& candidate);

}  // namespace sprig
