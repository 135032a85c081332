// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialog/DialogMessages.h"

#include "fuzz/Check.h"
#include "fuzz/Targets.h"

namespace sprig::fuzz {

namespace {

/// A message that can be read is written as a line, which reads as the same.
template <typename Decode>
void tryMessage(std::string_view input, Decode decode) {
  const auto message = decode(input);
  if (!message) return;
  auto line = dialog::encode(*message);
  check(line.find('\n') == line.size() - 1, "a message is one line");
  line.pop_back();
  const auto again = decode(line);
  check(again.has_value() && dialog::encode(*again) == line + "\n", "what is written is what was read");
}

}  // namespace

void tryDialogMessages(std::string_view input) {
  tryMessage(input, dialog::decodeCommand);
  tryMessage(input, dialog::decodeEvent);
}

}  // namespace sprig::fuzz
