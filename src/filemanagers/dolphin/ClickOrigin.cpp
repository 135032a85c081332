#include "filemanagers/dolphin/ClickOrigin.h"

#include <QPointer>
#include <QWidget>
#include <QX11Info>

namespace sprig::filemanagers {

namespace {

ClickOrigin originIn(const QWidget& window) {
  const auto id = window.internalWinId();
  if (!QX11Info::isPlatformX11() || id == 0) return {};
  const auto moment = static_cast<std::uint32_t>(QX11Info::appUserTime());
  return clickOriginOnX11(static_cast<unsigned long>(id), moment == 0 ? std::nullopt : std::optional(moment));
}

}  // namespace

std::function<ClickOrigin()> clickOriginIn(QWidget* widget) {
  return [pointer = QPointer(widget)] { return pointer ? originIn(*pointer->window()) : ClickOrigin{}; };
}

}  // namespace sprig::filemanagers
