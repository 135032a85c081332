// SPDX-License-Identifier: GPL-3.0-or-later

#include "wire/Rows.h"

#include "filemanagers/client/MenuEntry.h"
#include "fuzz/Check.h"
#include "fuzz/Targets.h"

namespace sprig::fuzz {

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
