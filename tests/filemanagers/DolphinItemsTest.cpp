// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/dolphin/DolphinItems.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <KFileItem>
#include <KFileItemListProperties>
#include <KUrlNavigator>
#include <QApplication>
#include <set>

#include "filemanagers/FakeExtension.h"
#include "filemanagers/dolphin/menuRequestFor.h"
#include "support/Eventually.h"

namespace sprig::filemanagers {
namespace {

using test::row;
using wire::Kind;
using Type = wire::Row::Type;

/// A menu on one line: submenus in brackets, separators as dashes, disabled items in parentheses.
std::string drawn(const QList<QAction*>& items) {
  std::string text;
  for (const auto* item : items) {
    if (!item->isVisible()) continue;
    if (!text.empty()) text += ' ';
    const auto label = item->isSeparator() ? std::string("-") : item->text().toStdString();
    text += item->isEnabled() || item->isSeparator() ? label : "(" + label + ")";
    if (item->menu()) text += "[" + drawn(item->menu()->actions()) + "]";
  }
  return text;
}

class DolphinItemsTest : public testing::Test {
 protected:
  QList<QAction*> itemsFor(QWidget* window) {
    return items.itemsFor({Kind::background, {"file:///home/ann/demo"}, {}}, window);
  }

  test::PrivateBus bus;
  wire::ObjectPointer<GDBusConnection> connection = bus.connect();
  test::FakeExtension extension{bus,
                                {row(-1, Type::submenu, "Sprig"),
                                 row(0, Type::item, "R&D_\tnotes", "note"),
                                 {0, Type::item, "", "None", "", "", false},
                                 row(0, Type::separator),
                                 row(0, Type::submenu, "More"),
                                 row(4, Type::item, "b", "b")}};
  DolphinItems items{*connection};
};

TEST_F(DolphinItemsTest, AThousandMenusTakeTheRoomOfOne) {
  QWidget window;
  std::set<qsizetype> sizes;
  for (int count = 0; count < 1000; ++count) {
    ASSERT_EQ(drawn(itemsFor(&window)), "Sprig[R&&D_ notes (None) - More[b]]");
    sizes.insert(window.findChildren<QObject*>().size());
  }
  EXPECT_EQ(sizes.size(), 1U);
}

TEST_F(DolphinItemsTest, LateItemsGoIntoTheOpenMenu) {
  extension.setConduct(test::FakeExtension::Conduct::isSilent);
  QMenu open;
  open.addAction("Cut");
  open.addActions(itemsFor(nullptr));
  open.addAction("Properties");
  EXPECT_EQ(drawn(open.actions()), "Cut Properties");
  extension.setConduct(test::FakeExtension::Conduct::answers);
  EXPECT_TRUE(test::eventually([&] {
    QCoreApplication::processEvents();
    return drawn(open.actions()) == "Cut Sprig[R&&D_ notes (None) - More[b]] Properties";
  }));
}

TEST_F(DolphinItemsTest, AMenuMayGoWithItsWindow) {
  {
    QWidget window;
    EXPECT_EQ(itemsFor(&window).size(), 1);
  }
  EXPECT_EQ(itemsFor(nullptr).size(), 1);
}

KFileItem item(const char* url, const char* localPath = nullptr) {
  KIO::UDSEntry entry;
  entry.fastInsert(KIO::UDSEntry::UDS_NAME, QStringLiteral("."));
  entry.fastInsert(KIO::UDSEntry::UDS_FILE_TYPE, S_IFDIR);
  if (localPath) entry.fastInsert(KIO::UDSEntry::UDS_LOCAL_PATH, QString::fromUtf8(localPath));
  return {entry, QUrl(QString::fromUtf8(url))};
}

TEST(DolphinMenuRequests, TellTheFolderThatIsShownFromWhatIsSelected) {
  QWidget window;
  KUrlNavigator otherPane(nullptr, QUrl(QStringLiteral("file:///home/ann/demo/inner")), &window);
  KUrlNavigator pane(nullptr, QUrl(QStringLiteral("file:///home/ann/demo")), &window);
  otherPane.setActive(false);
  QWidget view(&window);
  const struct {
    const char* what;
    KFileItemList items;
    Kind kind;
  } cases[] = {
      {"the folder", {item("file:///home/ann/demo/")}, Kind::background},
      {"a folder in it", {item("file:///home/ann/demo/inner")}, Kind::items},
      {"two of them", {item("file:///home/ann/demo"), item("file:///home/ann/demo/inner")}, Kind::items},
  };
  for (const auto& test : cases) EXPECT_EQ(menuRequestFor(test.items, &view).kind, test.kind) << test.what;
  EXPECT_EQ(menuRequestFor(cases[0].items, nullptr).kind, Kind::items) << "nobody knows";
}

TEST(DolphinMenuRequests, HaveTargetsOnThisComputerOnly) {
  const struct {
    const char* what;
    KFileItemList items;
    std::vector<std::string> targets;
  } cases[] = {
      {"any letter", {item("file:///a%20%C3%BC%25%23%0A")}, {"file:///a%20%C3%BC%25%23%0A"}},
      {"the desktop", {item("desktop:/", "/home/ann/Desktop")}, {"file:///home/ann/Desktop"}},
      {"the trash", {item("trash:/0-a", "/home/ann/.local/share/Trash/files/a")}, {}},
      {"elsewhere", {item("sftp://host/a"), item("file:///b")}, {}},
      {"another computer's file", {item("file://host/a")}, {}},
      {"in part elsewhere", {item("file:///a"), item("sftp://host/b")}, {"file:///a"}},
      {"bytes that Qt has lost", {item("file:///no-such-%FF")}, {}},
  };
  for (const auto& test : cases)
    EXPECT_EQ(menuRequestFor(test.items, nullptr).targets, test.targets) << test.what;
}

}  // namespace
}  // namespace sprig::filemanagers

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  qputenv("QT_QPA_PLATFORM", "minimal");
  const QApplication application(count, arguments);
  return RUN_ALL_TESTS();
}
