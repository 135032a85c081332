// SPDX-License-Identifier: GPL-3.0-or-later

#include "config/ConfigEditor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <memory>
#include <utility>

#include "config/BuiltinTemplates.h"
#include "config/ConfigDecoder.h"
#include "config/ConfigEncoder.h"
#include "config/ConfigManager.h"
#include "platform/Platform.h"
#include "translation/translated.h"

namespace sprig {

using platform::Error;
using platform::FileURL;
using Reason = ConfigEditError::Reason;

namespace {

constexpr int maxAttempts = 5;
constexpr const char* lockName = "config.lock";
constexpr std::string_view backupPrefix = "config-";
constexpr std::string_view backupSuffix = ".json";

platform::FileSystem& files() { return platform::current().files; }

FileURL stateFile(std::string_view name) { return files().stateDirectory().appendingPath(name); }

/// A name that sorts by time: programs that change the document may start many times a second.
std::string newBackupName() {
  const auto& clock = platform::current().clock;
  const auto now = clock.now();
  const auto time = clock.components(now);
  const auto fraction = (now - std::chrono::floor<std::chrono::seconds>(now)).count();
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d-%02d-%02d.%06lld", time.year, time.month,
                time.day, time.hour, time.minute, time.second, static_cast<long long>(fraction));
  return std::string(backupPrefix) + text.data() + std::string(backupSuffix);
}

/// Whether another program came in between.
bool meansMeanwhile(const Error& error) {
  return error.domain == platform::POSIXErrorDomain && (error.code == ESTALE || error.code == EEXIST);
}

tl::unexpected<ConfigEditError> refusal(Reason reason, std::string description) {
  return tl::unexpected(ConfigEditError{reason, std::move(description)});
}

tl::unexpected<ConfigEditError> otherWriters() {
  return refusal(Reason::changedMeanwhile,
                 translated("the configuration was changed by another program at the same time"));
}

}  // namespace

FileURL ConfigEditor::newDocumentURL() {
  const auto folder = files().containerURL(applicationGroupIdentifier);
  return folder ? folder->appendingPath(shortConfigName) : ConfigManager::configURL();
}

tl::expected<ConfigEditor::Found, ConfigEditError> ConfigEditor::read() {
  auto url = files().resolvingSymlinks(ConfigManager::configURL());
  // The version first: what is written while it is read is a later one.
  const auto version = files().fileVersion(url);
  if (!version) return Found{newDocumentURL(), {}, {}};
  auto text = files().contentsOfFile(url);
  if (!text) return refusal(Reason::inaccessible, text.error().description);
  return Found{std::move(url), version, std::move(*text)};
}

tl::expected<std::optional<std::string>, ConfigEditError> ConfigEditor::text() {
  return read().map([](Found found) { return std::move(found.text); });
}

tl::expected<ConfigDocument, ConfigEditError> ConfigEditor::changed(const std::optional<std::string>& text,
                                                                    const Change& change) {
  std::optional<ConfigDocument> document;
  try {
    document.emplace(text ? *text : encodeConfig(defaultFallbackConfig()));
  } catch (const DecodingError& error) {
    return refusal(Reason::broken, error.sentence().shown);
  }
  try {
    change(*document);
  } catch (const DecodingError& error) {
    return refusal(Reason::invalid, error.sentence().shown);
  }
  return std::move(*document);
}

tl::expected<ConfigDocument, ConfigEditError> ConfigEditor::document() {
  return read().and_then([](const Found& found) { return changed(found.text, [](ConfigDocument&) {}); });
}

tl::expected<ConfigDocument, ConfigEditError> ConfigEditor::update(const Change& change) {
  // Without the lock it goes, too: what comes in between is noticed, only on some file systems not always.
  const auto lock = files().lockFile(stateFile(lockName));
  for (int attempts = 0; attempts < maxAttempts; ++attempts) {
    auto found = read();
    if (!found) return tl::unexpected(std::move(found.error()));
    auto document = changed(found->text, change);
    if (!document) return document;
    const bool isUnchanged =
        found->text ? document->text() == *found->text : document->config() == defaultFallbackConfig();
    if (isUnchanged) return document;
    const auto error = write(*found, document->text());
    if (!error) return document;
    if (!meansMeanwhile(*error)) return refusal(Reason::inaccessible, error->description);
  }
  return otherWriters();
}

std::optional<ConfigEditError> ConfigEditor::replaceText(const std::optional<std::string>& old,
                                                         const std::string& wanted) {
  const auto lock = files().lockFile(stateFile(lockName));
  try {
    static_cast<void>(decodeConfig(wanted));
  } catch (const DecodingError& error) {
    return refusal(Reason::invalid, error.sentence().shown).value();
  }
  const auto found = read();
  if (!found) return found.error();
  if (found->text != old) return otherWriters().value();
  const auto error = write(*found, wanted);
  if (!error) return std::nullopt;
  return meansMeanwhile(*error) ? otherWriters().value()
                                : refusal(Reason::inaccessible, error->description).value();
}

std::optional<Error> ConfigEditor::write(const Found& found, const std::string& text) {
  if (found.version) {
    keepBackup(*found.text);
    return files().replaceFile(text, found.url, *found.version);
  }
  const auto folder = found.url.deletingLastPathComponent();
  if (auto error = files().createDirectory(folder)) return error;
  auto file = files().prepareFile(text, folder);
  return file ? (*file)->publish(found.url.lastPathComponent()) : std::move(file.error());
}

/// Fails silently: a change that its user asks for is worth more than a copy of what was before.
void ConfigEditor::keepBackup(const std::string& text) {
  if (std::exchange(hasBackup, true)) return;
  const auto last = backups();
  if (!last.empty() && files().contentsOfFile(last.front()) == text) return;
  const auto backup = stateFile(newBackupName());
  if (files().fileExists(backup) || files().appendData(text, backup)) return;
  const auto kept = backups();
  for (std::size_t index = maxBackups; index < kept.size(); ++index) files().removeFile(kept[index]);
}

std::vector<FileURL> ConfigEditor::backups() {
  auto names = files().contentsOfDirectory(files().stateDirectory()).value_or(std::vector<std::string>());
  std::erase_if(names, [](const std::string& name) {
    return !name.starts_with(backupPrefix) || !name.ends_with(backupSuffix);
  });
  std::sort(names.rbegin(), names.rend());
  std::vector<FileURL> result;
  result.reserve(names.size());
  for (const auto& name : names) result.push_back(stateFile(name));
  return result;
}

bool ConfigEditor::isWritable() {
  auto url = files().resolvingSymlinks(ConfigManager::configURL());
  if (!files().fileExists(url)) {
    url = newDocumentURL();
  } else if (!files().isWritable(url)) {
    return false;
  }
  do {
    url = url.deletingLastPathComponent();
  } while (!files().fileExists(url) && url.path() != "/");
  return files().isWritable(url);
}

}  // namespace sprig
