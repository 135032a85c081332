// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/dolphin/selectInWindow.h"

#include <KCoreDirLister>
#include <KDirNotify>
#include <KFileItem>
#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <chrono>
#include <utility>

#include "filemanagers/client/guardCallback.h"

namespace sprig::filemanagers {

namespace {

/// What tells Dolphin's view that a file was created, and what has it look for that at once.
constexpr const char* observeCreation = "observeCreatedItem";
constexpr const char* lookAgain = "updateViewState";

bool canSelect(const QWidget& view) {
  const auto* type = view.metaObject();
  return type->indexOfMethod("observeCreatedItem(QUrl)") >= 0 &&
         type->indexOfMethod("updateViewState()") >= 0 &&
         type->indexOfSignal("selectionChanged(KFileItemList)") >= 0;
}

/// What lists a view's folder; null when the view shows another one.
KCoreDirLister* listerOf(const QWidget& view, const QUrl& folder) {
  const auto listers = view.findChildren<KCoreDirLister*>();
  const auto found = std::find_if(listers.begin(), listers.end(), [&](const KCoreDirLister* lister) {
    return lister->url().matches(folder, QUrl::StripTrailingSlash);
  });
  return found == listers.end() ? nullptr : *found;
}

struct View {
  QWidget* widget = nullptr;
  KCoreDirLister* lister = nullptr;
};

/// The view of a window that is in sight and shows the folder; of two, the one with the keyboard. None is
/// null.
View viewIn(const QWidget& window, const QUrl& folder) {
  View result;
  for (auto* widget : window.findChildren<QWidget*>()) {
    if (!widget->inherits("DolphinView") || !widget->isVisible() || !canSelect(*widget)) continue;
    auto* lister = listerOf(*widget, folder);
    const auto* focused = window.focusWidget();
    const bool hasKeyboard = focused && widget->isAncestorOf(focused);
    if (lister && (!result.widget || hasKeyboard)) result = {widget, lister};
  }
  return result;
}

/// The number of an X window; 0 for anything else.
WId idOf(const QString& parentWindow) {
  constexpr int hexadecimal = 16;
  const QLatin1String scheme("x11:");
  return parentWindow.startsWith(scheme) ? parentWindow.mid(scheme.size()).toULongLong(nullptr, hexadecimal)
                                         : 0;
}

View viewFor(const QString& parentWindow, const QUrl& folder) {
  const auto id = idOf(parentWindow);
  QList<View> views;
  for (const auto* window : QApplication::topLevelWidgets()) {
    if (!window->inherits("DolphinMainWindow") || (id != 0 && window->internalWinId() != id)) continue;
    const auto view = viewIn(*window, folder);
    if (!view.widget) continue;
    if (id != 0 || window->isActiveWindow()) return view;
    views.append(view);
  }
  return views.size() == 1 ? views.first() : View{};
}

/// Waits for a view to have a file selected. Belongs to the view.
class AwaitedSelection : public QObject {
  Q_OBJECT

 public:
  AwaitedSelection(QWidget& view, QUrl awaited, std::function<void(bool)> whenKnown)
      : QObject(&view), file(std::move(awaited)), answer(std::move(whenKnown)) {
    constexpr std::chrono::milliseconds patience(1500);
    connect(&view, SIGNAL(selectionChanged(KFileItemList)), this, SLOT(selectionChanged(KFileItemList)));
    connect(&timer, &QTimer::timeout, this, [this] { end(false); });
    timer.setSingleShot(true);
    timer.start(patience);
  }
  ~AwaitedSelection() override {
    if (answer) guardCallback([this] { answer(false); });
  }
  AwaitedSelection(const AwaitedSelection&) = delete;
  AwaitedSelection& operator=(const AwaitedSelection&) = delete;

 private Q_SLOTS:
  void selectionChanged(const KFileItemList& items) {
    if (items.size() == 1 && items.first().url() == file) end(true);
  }

 private:
  void end(bool isSelected) {
    if (const auto call = std::exchange(answer, {})) guardCallback([&] { call(isSelected); });
    deleteLater();
  }

  const QUrl file;
  std::function<void(bool)> answer;
  QTimer timer;
};

}  // namespace

void selectInWindow(const QUrl& file, const QString& parentWindow, std::function<void(bool)> answer) {
  const auto view = viewFor(parentWindow, file.adjusted(QUrl::RemoveFilename));
  const bool isHidden = file.fileName().startsWith(QLatin1Char('.'));
  if (!view.widget || (isHidden && !view.lister->showHiddenFiles())) return answer(false);
  new AwaitedSelection(*view.widget, file, std::move(answer));
  view.widget->setFocus();
  QMetaObject::invokeMethod(view.widget, observeCreation, Q_ARG(QUrl, file));
  if (view.lister->findByUrl(file).isNull()) {
    // Sooner than the system's own news of the folder, which KDE collects for half a second.
    OrgKdeKDirNotifyInterface::emitFilesAdded(view.lister->url());
  } else {
    QMetaObject::invokeMethod(view.widget, lookAgain, Qt::QueuedConnection);
  }
}

}  // namespace sprig::filemanagers

#include "selectInWindow.moc"
