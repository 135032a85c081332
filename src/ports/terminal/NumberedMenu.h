// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/Menu.h"

namespace sprig::terminal {

/// The entries of a context menu as a terminal shows them: those inside its one top entry.
const platform::Menu& entriesOf(const platform::Menu& contextMenu);

/// A menu with its entries numbered, from 1, as far as they can be picked. Refers to the menu.
class NumberedMenu {
 public:
  struct Row {
    const platform::MenuItem* item = nullptr;
    /// 0 for an entry that can't be picked.
    std::size_t number = 0;
  };

  explicit NumberedMenu(const platform::Menu& menu);

  const std::vector<Row>& all() const { return rows; }

  /// What a user who typed `input` may mean: the entry of that number, else those of that title, else those
  /// whose title begins so, each in any case. Where none of these fits, entries in the submenus (without a
  /// number) are looked at in the same way.
  std::vector<Row> matches(std::string_view input) const;

 private:
  std::vector<Row> rows;
};

}  // namespace sprig::terminal
