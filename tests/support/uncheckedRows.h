// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "wire/Rows.h"

namespace sprig::test {

/// The bytes of rows as a faulty program might send them: nothing is checked. Not floating.
inline wire::VariantPointer uncheckedRows(const std::vector<wire::Row>& rows) {
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE(wire::rowsType));
  for (const auto& row : rows) {
    g_variant_builder_add(&builder, "(iussssb)", row.parent, static_cast<std::uint32_t>(row.type),
                          row.action.c_str(), row.title.c_str(), row.icon.c_str(), row.description.c_str(),
                          row.isEnabled ? 1 : 0);
  }
  const wire::VariantPointer laidOut(g_variant_ref_sink(g_variant_builder_end(&builder)));
  return wire::VariantPointer(g_variant_ref_sink(g_variant_new_fixed_array(
      G_VARIANT_TYPE_BYTE, g_variant_get_data(laidOut.get()), g_variant_get_size(laidOut.get()), 1)));
}

}  // namespace sprig::test
