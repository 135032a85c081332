// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz/Targets.h"

#include "dialog/DialogMessages.h"
#include "filemanagers/client/MenuEntry.h"
#include "fuzz/Check.h"
#include "wire/Rows.h"

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

void tryRows(std::string_view input) {
  // In a block of its own, aligned as a message's body is.
  const std::unique_ptr<GBytes, wire::Releaser<g_bytes_unref>> bytes(g_bytes_new(input.data(), input.size()));
  constexpr gboolean isTrusted = FALSE;
  const wire::VariantPointer variant(g_variant_ref_sink(
      g_variant_new_from_bytes(G_VARIANT_TYPE(wire::rowBytesType), bytes.get(), isTrusted)));
  const auto rows = wire::rowsFromVariant(variant.get());
  if (!rows) return;
  const auto written = wire::rowsToVariant(*rows);
  check(written.has_value(), "what was read can be written");
  check(wire::rowsFromVariant(written->get()) == rows, "what is written is what was read");
  check(filemanagers::entriesFromRows(*rows) != nullptr, "rows make a menu");
}

}  // namespace sprig::fuzz
