// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/client/ExtensionClient.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "filemanagers/FakeExtension.h"

namespace sprig::filemanagers {
namespace {

using test::FakeExtension;
using test::PrivateBus;
using wire::Kind;
using wire::Row;
using namespace std::chrono_literals;
using Conduct = FakeExtension::Conduct;

constexpr const char* folder = "file:///home/ann/demo";
const std::vector<Row> menuA = {{-1, Row::Type::item, "a", "Menu A", "", "", true}};
const std::vector<Row> menuB = {{-1, Row::Type::item, "b", "Menu B", "", "", true}};

std::string titleOf(const MenuEntries& menu) {
  if (!menu) return "(none)";
  return menu->empty() ? "(empty)" : menu->front().title;
}

/// A file manager with its main loop, which only runs where a test lets it.
class ExtensionClientTest : public testing::Test {
 protected:
  ExtensionClientTest() { g_log_set_handler("Sprig", G_LOG_LEVEL_WARNING, countWarning, &warnings); }
  ~ExtensionClientTest() override {
    g_log_set_handler("Sprig", G_LOG_LEVEL_WARNING, g_log_default_handler, nullptr);
  }

  void start(const std::vector<wire::Row>& rows, Conduct conduct = Conduct::answers) {
    extension = std::make_unique<FakeExtension>(bus, rows, conduct);
  }

  void load() {
    ExtensionClient::Settings settings;
    settings.kinds = {Kind::items, Kind::background, Kind::toolbar};
    settings.menusUpdated = [this] { ++updates; };
    settings.connection = connection.get();
    settings.retryDelay = retryDelay;
    settings.now = [this] { return g_get_monotonic_time() + std::chrono::microseconds(later).count(); };
    client = std::make_unique<ExtensionClient>(std::move(settings));
  }

  std::string title(Kind kind = Kind::background) { return titleOf(client->menu(kind, folder)); }

  /// How long the file manager stands still for a menu.
  std::chrono::milliseconds pause() {
    const auto begin = std::chrono::steady_clock::now();
    client->menu(Kind::background, folder);
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
  }

  /// A file manager that has its menus.
  void loadReady() {
    start(menuA);
    load();
    ASSERT_EQ(title(), "Menu A");
    ASSERT_TRUE(test::comesTrue([&] { return updates == 1; }));
  }

  static void countWarning(const char* /*domain*/, GLogLevelFlags /*level*/, const char* /*text*/,
                           void* count) {
    ++*static_cast<int*>(count);
  }

  PrivateBus bus;
  wire::ObjectPointer<GDBusConnection> connection = bus.connect();
  std::unique_ptr<FakeExtension> extension;
  std::chrono::milliseconds later{0};
  std::chrono::milliseconds retryDelay{1000};
  int updates = 0;
  int warnings = 0;
  std::unique_ptr<ExtensionClient> client;
};

/// More than the file manager may be kept waiting, with what a busy machine adds.
constexpr auto onePause = 400ms;
/// No waiting at all, likewise.
constexpr auto noPause = 100ms;

TEST_F(ExtensionClientTest, MenusFetchedAheadCostNoCall) {
  loadReady();
  const auto calls = extension->calls();
  for (int key = 0; key < 100; ++key) {
    for (const auto kind : {Kind::items, Kind::background, Kind::toolbar}) EXPECT_EQ(title(kind), "Menu A");
  }
  while (g_main_context_iteration(nullptr, FALSE)) {
  }
  EXPECT_EQ(extension->calls(), calls);
  EXPECT_EQ(calls, 6U) << "four ahead, and two for the menu that was asked for at once";
}

TEST_F(ExtensionClientTest, NothingIsAskedForWhatIsNotServed) {
  loadReady();
  const auto calls = extension->calls();
  for (const auto* target :
       {"file:///srv/x", "file:///home/annabel", "file:///home", "trash:///", "smb://elsewhere/x",
        "recent:///", "/home/ann", "home/ann", "", "file://host/home/ann", "file:///home/ann%00"}) {
    EXPECT_EQ(titleOf(client->menu(Kind::items, target)), "(none)") << target;
    EXPECT_FALSE(client->toolbarButton(target)) << target;
  }
  EXPECT_EQ(titleOf(client->menu(Kind::sidebar, folder)), "(none)")
      << "a kind that this file manager has not";
  for (const auto* target : {"file:///home/ann", "file:///home/ann/", "file:///home/ann/a%20b%ff"}) {
    EXPECT_EQ(titleOf(client->menu(Kind::items, target)), "Menu A") << target;
  }
  const auto button = client->toolbarButton(folder);
  ASSERT_TRUE(button);
  EXPECT_EQ(button->name + "|" + button->toolTip + "|" + button->icon, "Sprig|New file|document-new");
  EXPECT_EQ(extension->calls(), calls);
}

TEST_F(ExtensionClientTest, AFileManagerThatHasNotAskedIsNotToldOfMenus) {
  start(menuA);
  load();
  EXPECT_TRUE(test::comesTrue([&] { return extension->calls() == 4; }));
  extension->changeMenu(menuB);
  EXPECT_TRUE(test::comesTrue([&] { return extension->calls() == 7; }));
  EXPECT_EQ(updates, 0);
}

TEST_F(ExtensionClientTest, AnExtensionThatHangsFromTheStartCostsOnePause) {
  start(menuA, Conduct::isSilent);
  load();
  const auto first = pause();
  EXPECT_GE(first, 140ms);
  EXPECT_LT(first, onePause);
  for (const auto afterwards : {0s, 1s, 4s, 6s, 20s}) {
    later = afterwards;
    EXPECT_LT(pause(), noPause) << afterwards.count() << " s later";
  }
  EXPECT_EQ(warnings, 1);
  extension->setConduct(Conduct::answers);
  EXPECT_TRUE(test::comesTrue([&] { return updates > 0; })) << "the late answers fill in the menus";
  EXPECT_EQ(title(), "Menu A");
}

TEST_F(ExtensionClientTest, AnExtensionThatHangsLaterCostsOnePause) {
  loadReady();
  extension->changeMenu(menuB);
  extension->setConduct(Conduct::isSilent);
  EXPECT_LT(pause(), noPause) << "the menu is there";
  ASSERT_TRUE(test::comesTrue([&] { return title() != "Menu A"; }));
  EXPECT_LT(pause(), noPause);
  extension->setConduct(Conduct::answers);
  EXPECT_TRUE(test::comesTrue([&] { return title() == "Menu B"; }));
}

TEST_F(ExtensionClientTest, ADeadExtensionCostsNoPauseAndItsSuccessorIsUsed) {
  loadReady();
  extension.reset();
  ASSERT_TRUE(test::comesTrue([&] { return title() == "(none)"; }));
  EXPECT_LT(pause(), noPause);
  EXPECT_EQ(warnings, 1);
  start(menuB);
  EXPECT_TRUE(test::comesTrue([&] { return updates == 2; }));
  EXPECT_EQ(title(), "Menu B");
}

TEST_F(ExtensionClientTest, AnExtensionThatHasRefusedIsAskedAgainAfterAWhile) {
  retryDelay = 20ms;
  start(menuA, Conduct::isSilent);
  load();
  EXPECT_EQ(title(), "(none)");
  extension->setConduct(Conduct::refuses);
  const auto calls = extension->calls();
  ASSERT_TRUE(test::comesTrue([&] { return extension->calls() >= calls + 8; })) << "more than once";
  EXPECT_EQ(updates, 0);
  EXPECT_EQ(warnings, 1);
  extension->setConduct(Conduct::answers);
  EXPECT_TRUE(test::comesTrue([&] { return updates > 0; }));
  EXPECT_EQ(title(), "Menu A");
}

TEST_F(ExtensionClientTest, AnExtensionThatAppearsLateIsFoundWithoutBeingAskedFor) {
  load();
  EXPECT_EQ(title(), "(none)");
  EXPECT_TRUE(test::comesTrue([&] { return warnings == 1; }));
  start(menuA);
  EXPECT_TRUE(test::comesTrue([&] { return updates == 1; }));
  EXPECT_EQ(title(), "Menu A");
}

TEST_F(ExtensionClientTest, AChangedMenuIsFetchedAndTold) {
  loadReady();
  extension->changeMenu(menuB);
  EXPECT_TRUE(test::comesTrue([&] { return updates == 2; }));
  for (const auto kind : {Kind::items, Kind::background, Kind::toolbar}) EXPECT_EQ(title(kind), "Menu B");
  const auto calls = extension->calls();
  extension->changeMenu(menuB);
  EXPECT_TRUE(test::comesTrue([&] { return extension->calls() == calls + 3 && title() == "Menu B"; }));
  EXPECT_EQ(updates, 2) << "nothing to tell of a menu that is what it was";
}

TEST_F(ExtensionClientTest, ServedFoldersFollowWhatIsMounted) {
  loadReady();
  extension->changeServedFolder("file:///media/stick");
  EXPECT_TRUE(test::comesTrue([&] { return updates == 2; }));
  EXPECT_EQ(titleOf(client->menu(Kind::items, "file:///media/stick/a")), "Menu A");
  EXPECT_EQ(title(), "(none)");
}

TEST_F(ExtensionClientTest, AMenuThatIsNotInOrderIsNoMenu) {
  loadReady();
  extension->changeMenu({{7, Row::Type::item, "a", "Orphan", "", "", true}});
  EXPECT_TRUE(test::comesTrue([&] { return warnings == 1 && title() == "(none)"; }));
  later = 2s;
  EXPECT_TRUE(test::comesTrue([&] { return title() == "(none)"; }));
  EXPECT_EQ(warnings, 1) << "one line, not one for each attempt";
  extension->changeMenu(menuB);
  EXPECT_TRUE(test::comesTrue([&] { return later += 2s, title() == "Menu B"; }));
}

TEST_F(ExtensionClientTest, NoMenuIsKeptLikeAMenu) {
  start({});
  load();
  EXPECT_EQ(title(), "(empty)");
  ASSERT_TRUE(test::comesTrue([&] { return updates == 1; }));
  const auto calls = extension->calls();
  EXPECT_EQ(title(), "(empty)");
  EXPECT_EQ(extension->calls(), calls);
}

TEST_F(ExtensionClientTest, APickIsToldWithAllThatBelongsToIt) {
  loadReady();
  const auto origin = [] { return ClickOrigin{"token", "x11:2a"}; };
  MenuRequest request{Kind::items, {"file:///home/ann/a%0Ab", "recent:///c"}, origin};
  client->activate({"template:note", "Note"}, request);
  EXPECT_TRUE(test::comesTrue([&] { return extension->calls("Activate") == 1; }));
  EXPECT_EQ(extension->lastCall("Activate"),
            "('template:note', 0, ['file:///home/ann/a%0Ab'], "
            "{'activation-token': <'token'>, 'parent-window': <'x11:2a'>, 'title': <'Note'>})")
      << "of a selection, which may be huge and of anything, the first item";
}

TEST_F(ExtensionClientTest, APickOnAHungExtensionCostsNoPauseAndLateAnswersNoModule) {
  start(menuA, Conduct::isSilent);
  load();
  const auto begin = std::chrono::steady_clock::now();
  client->activate({"template:note", ""}, {Kind::background, {folder}, {}});
  EXPECT_LT(std::chrono::steady_clock::now() - begin, noPause);
  ASSERT_TRUE(test::comesTrue([&] { return extension->calls() >= 4; }));
  client.reset();
  extension->setConduct(Conduct::answers);
  extension->changeMenu(menuB);
  extension.reset();
  const auto watcher = bus.connect();
  EXPECT_TRUE(test::comesTrue([&] { return !g_main_context_pending(nullptr); }));
  EXPECT_EQ(updates, 0);
}

}  // namespace
}  // namespace sprig::filemanagers
