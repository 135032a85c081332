// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>
#include <vector>

namespace sprig::settings {

/// Shows a template's symbol, and has the user choose another by its picture.
///
/// Threads:   main thread. Ownership: its widgets belong to their parent, which this must not outlive.
class SymbolButton {
 public:
  explicit SymbolButton(std::function<void()> whenChosen);
  SymbolButton(const SymbolButton&) = delete;
  SymbolButton& operator=(const SymbolButton&) = delete;

  GtkWidget* widget() const { return button; }
  const std::string& symbol() const { return chosen; }
  void show(const std::string& symbol);

 private:
  GtkWidget* makeChoice();

  const std::function<void()> handler;
  GtkWidget* const button;
  GtkWidget* const image;
  std::vector<std::string> symbols;
  std::string chosen;
};

}  // namespace sprig::settings
