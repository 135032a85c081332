// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Application.h"
#include "platform/MainQueue.h"

namespace sprig::test {

/// What every application owes its modal sessions. `World` has `platform::Application& application()`,
/// `platform::MainQueue& queue()`, and `answerWith(text)`: what the user of the next sessions types and
/// confirms; nothing cancels.
template <typename World>
class ApplicationContract : public testing::Test, public platform::ControlTarget {
 protected:
  ApplicationContract() {
    alert.messageText = "Question";
    alert.addButton("Take") = {"Take", 1000, "\r", {"take:"}, this};
    alert.addButton("Leave") = {"Leave", 1001, "\x1b", {"leave:"}, this};
    field->stringValue = "suggested.md";
    field->action = {"take:"};
    field->target = this;
    alert.accessoryView = std::make_shared<platform::View>();
    alert.accessoryView->subviews.push_back(field);
    alert.window->initialFirstResponder = field;
    alert.window->makeKeyAndOrderFront();
  }

  void performAction(platform::Selector action) override {
    performed.push_back(std::string(action.name) + " " + field->stringValue);
    world.application().stopModal(action == platform::Selector{"take:"} ? 7 : 8);
  }

  World world;
  platform::Alert alert;
  std::shared_ptr<platform::TextField> field = std::make_shared<platform::TextField>();
  std::vector<std::string> performed;
};

TYPED_TEST_SUITE_P(ApplicationContract);

TYPED_TEST_P(ApplicationContract, PerformsTheActionOfWhatTheUserDoesAndReturnsItsCode) {
  this->world.answerWith("grüße 😀.md");
  EXPECT_EQ(this->world.application().runModal(this->alert), 7);
  this->world.answerWith(std::nullopt);
  this->field->stringValue = "suggested.md";
  EXPECT_EQ(this->world.application().runModal(this->alert), 8);
  EXPECT_EQ(this->performed, (std::vector<std::string>{"take: grüße 😀.md", "leave: suggested.md"}));
}

TYPED_TEST_P(ApplicationContract, EndsWhenWorkStopsTheSession) {
  this->world.answerWith("x");
  this->world.queue().async([&] { this->world.application().stopModal(42); });
  EXPECT_EQ(this->world.application().runModal(this->alert), 42);
}

TYPED_TEST_P(ApplicationContract, KeepsSessionsWithinSessionsApart) {
  platform::Alert notice;
  notice.addButton("Close");
  int inner = 0;
  this->world.application().stopModal(3);  // without a session
  this->world.answerWith("x");
  this->world.queue().async([&] { inner = this->world.application().runModal(notice); });
  EXPECT_EQ(this->world.application().runModal(this->alert), 7);
  EXPECT_EQ(inner, 1000) << "the tag of a button without a target";
}

REGISTER_TYPED_TEST_SUITE_P(ApplicationContract, PerformsTheActionOfWhatTheUserDoesAndReturnsItsCode,
                            EndsWhenWorkStopsTheSession, KeepsSessionsWithinSessionsApart);

}  // namespace sprig::test
