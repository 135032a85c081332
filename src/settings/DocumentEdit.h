// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "config/ConfigDocument.h"

namespace sprig::settings {

/// A change of a document that can be taken back. It is applied to the document as it is at that moment,
/// which others may have changed since it was thought of: what it can't find any more it leaves alone.
///
/// Threads: one at a time. Failure: throws what the document's operations throw.
struct DocumentEdit {
  /// Returns what takes the change back: an edit without a function if nothing was to be done. Null: no edit.
  std::function<DocumentEdit(ConfigDocument&)> apply;
};

/// Changes what differs between two states of a template or of the settings, as far as the document still has
/// what was before.
DocumentEdit changeTemplate(const TemplateKey& key, const TemplateItem& before, const TemplateItem& after);
DocumentEdit changeSettings(const AppSettingsItem& before, const AppSettingsItem& after);

/// Afterwards the template is at `position`, or the last one if there are not so many.
DocumentEdit moveTemplate(const TemplateKey& key, std::size_t position);

/// Inserts what `ConfigDocument::textOf` gives; at the end if there are not so many.
DocumentEdit insertTemplate(std::size_t position, const std::string& text);
DocumentEdit insertTemplate(std::size_t position, const TemplateItem& item);
/// Inserts new templates at the top, each with an id of its own.
DocumentEdit insertNew(const std::vector<TemplateItem>& items);
DocumentEdit removeTemplate(const TemplateKey& key);

/// A copy behind the original, with everything that it has, under this name and an id of its own.
DocumentEdit duplicateTemplate(const TemplateKey& key, const std::string& name);

/// What a function does that changes fields of templates and adds others at the end.
DocumentEdit changeInPlace(const std::function<void(ConfigDocument&)>& change);

/// One edit after the other.
DocumentEdit inTurn(std::vector<DocumentEdit> edits);

}  // namespace sprig::settings
