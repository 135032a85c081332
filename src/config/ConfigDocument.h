// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "config/AppConfigItem.h"
#include "config/JsonIndex.h"

namespace sprig {

/// Names a template of a document that others may have changed: its id, and which of those that share it.
struct TemplateKey {
  std::string id;
  std::size_t occurrence = 0;
  friend bool operator==(const TemplateKey&, const TemplateKey&) = default;
};

/// A configuration document that is edited as its owner would: an edit changes the bytes of what it changes.
/// Unknown keys, the order of keys, line ends, indentation and escapes of everything else stay. What is new
/// is laid out like what stands beside it.
///
/// Setting, inserting and removing a template, one or a thousand, reads only what is new of it.
///
/// Threads: one at a time.
/// Failure: the operations throw `DecodingError` where the text, or what an edit would make of it, is not a
///          configuration (a name that is not UTF-8, say); the document is then as before.
class ConfigDocument {
 public:
  explicit ConfigDocument(std::string text);

  const std::string& text() const { return document; }
  const AppConfigItem& config() const { return decoded; }

  TemplateKey keyOf(std::size_t index) const;
  std::optional<std::size_t> find(const TemplateKey& key) const;

  /// The operations on templates. Requires: each index is that of a template; one to insert at may be the
  /// end, too.
  void setTemplate(std::size_t index, const TemplateItem& wanted);
  void insertTemplate(std::size_t index, const TemplateItem& item);
  /// With its unknown keys and its layout, to bring back what was removed or to have it twice.
  std::string textOf(std::size_t index) const;
  void insertText(std::size_t index, const std::string& text);
  void setText(std::size_t index, const std::string& text);
  void removeTemplate(std::size_t index);
  /// Afterwards the template is at `to`; those between have moved by one.
  void moveTemplate(std::size_t from, std::size_t to);

  /// The text that a template has under a key which is none of ours; nothing where there is none.
  std::optional<std::string> otherText(std::size_t index, const std::string& key) const;
  void setOtherText(std::size_t index, const std::string& key, const std::string& text);

  void setSettings(const AppSettingsItem& wanted);

 private:
  class Editor;
  std::vector<TemplateItem>::iterator templateAt(std::size_t index);

  std::string document;
  AppConfigItem decoded;
  JsonValue root;
};

}  // namespace sprig
