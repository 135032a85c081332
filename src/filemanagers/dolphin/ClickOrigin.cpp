// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/dolphin/ClickOrigin.h"

#include <KUserTimestamp>
#include <KWindowSystem>
#include <QWidget>
#include <memory>
#include <utility>
#if __has_include(<KWaylandExtras>)
#include <KWaylandExtras>
#endif

namespace sprig::filemanagers {

namespace {

// Where the newer frameworks have what concerns Wayland.
#if __has_include(<KWaylandExtras>)
using Wayland = KWaylandExtras;
#else
using Wayland = KWindowSystem;
#endif

ClickOrigin originOnX11(const QWidget& window) {
  const auto id = window.internalWinId();
  if (id == 0) return {};
  const auto moment = static_cast<std::uint32_t>(KUserTimestamp::userTimestamp());
  return clickOriginOnX11(static_cast<unsigned long>(id), moment == 0 ? std::nullopt : std::optional(moment));
}

void withToken(QWindow* window, std::function<void(const ClickOrigin&)> goOn) {
  const auto serial = Wayland::lastInputSerial(window);
  const auto connection = std::make_shared<QMetaObject::Connection>();
  const auto arrived = [connection, serial, go = std::move(goOn)](int askedFor, const QString& token) {
    if (static_cast<quint32>(askedFor) != serial) return;
    QObject::disconnect(*connection);
    go({token.toStdString(), ""});
  };
  *connection = QObject::connect(Wayland::self(), &Wayland::xdgActivationTokenArrived, arrived);
  Wayland::requestXdgActivationToken(window, serial, QStringLiteral("com.kestrel.Sprig"));
}

}  // namespace

void withClickOrigin(QWidget* widget, std::function<void(const ClickOrigin&)> goOn) {
  const auto* window = widget ? widget->window() : nullptr;
  if (window && KWindowSystem::isPlatformWayland()) {
    withToken(window->windowHandle(), std::move(goOn));
  } else {
    goOn(window && KWindowSystem::isPlatformX11() ? originOnX11(*window) : ClickOrigin{});
  }
}

}  // namespace sprig::filemanagers
