// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/dolphin/menuRequestFor.h"

#include <KFileItem>
#include <KFileItemListProperties>
#include <KUrlNavigator>
#include <QFile>
#include <QWidget>
#include <algorithm>

#include "wire/FileUri.h"

namespace sprig::filemanagers {

namespace {

/// Whether a path has lost bytes that are no UTF-8, so that it leads nowhere.
bool isGarbled(const QString& path) {
  return path.contains(QChar(QChar::ReplacementCharacter)) && !QFile::exists(path);
}

/// The URI of an item; empty for one that is not on this computer, or not to be found by what Qt has made of
/// its name. What is in the trash is, but no place for new files. The desktop, as Plasma tells of it, is the
/// user's desktop folder.
std::string uriOf(const KFileItem& item) {
  const auto url = item.url().scheme() == QLatin1String("desktop") ? item.mostLocalUrl() : item.url();
  if (!url.isLocalFile() || !url.host().isEmpty() || isGarbled(url.toLocalFile())) return {};
  return wire::uriFromPath(QFile::encodeName(url.toLocalFile()).toStdString()).value_or("");
}

std::vector<std::string> targetsIn(const KFileItemList& items) {
  std::vector<std::string> uris;
  for (const auto& item : items) {
    if (uris.size() == ExtensionClient::maxTargets) break;
    auto uri = uriOf(item);
    if (!uri.empty()) {
      uris.push_back(std::move(uri));
    } else if (uris.empty()) {
      break;
    }
  }
  return uris;
}

/// Dolphin gives the folder that it shows as if it were selected; but what is selected lies in that folder,
/// as the location bar names it.
wire::Kind kindOf(const KFileItemList& items, QWidget* window) {
  if (items.size() != 1 || !window) return wire::Kind::items;
  const auto url = items.first().url();
  const auto bars = window->window()->findChildren<KUrlNavigator*>();
  const bool isShown = std::any_of(bars.begin(), bars.end(), [&](const KUrlNavigator* bar) {
    return bar->isActive() && bar->locationUrl().matches(url, QUrl::StripTrailingSlash);
  });
  return isShown ? wire::Kind::background : wire::Kind::items;
}

}  // namespace

MenuRequest menuRequestFor(const KFileItemListProperties& selection, QWidget* window) {
  const auto items = selection.items();
  return {kindOf(items, window), targetsIn(items), {}};
}

}  // namespace sprig::filemanagers
