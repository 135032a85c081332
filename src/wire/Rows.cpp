// SPDX-License-Identifier: GPL-3.0-or-later

#include "wire/Rows.h"

#include <string_view>

namespace sprig::wire {

namespace {

bool isText(std::string_view text) { return g_utf8_validate_len(text.data(), text.size(), nullptr) != FALSE; }

/// What is wrong with the rows, checked one after the other in their order; empty when nothing is.
class RowCheck {
 public:
  std::string next(const Row& row) {
    if (levels.size() >= maxRows) return "more than " + std::to_string(maxRows) + " rows";
    const auto fault = faultOf(row);
    if (!fault.empty()) return "row " + std::to_string(levels.size()) + ": " + fault;
    levels.push_back(levelOf(row));
    openSubmenus.resize(levels.back());
    if (row.type == Row::Type::submenu) openSubmenus.push_back(static_cast<std::int32_t>(levels.size() - 1));
    return {};
  }

 private:
  std::size_t levelOf(const Row& row) const {
    return row.parent == Row::noParent ? 0 : levels[static_cast<std::size_t>(row.parent)] + 1;
  }

  std::string faultOf(const Row& row) const {
    if (row.type > Row::Type::submenu) return "unknown type";
    if (!isOpen(row.parent)) return "parent is not a submenu that is open here";
    if (levelOf(row) >= maxLevels) return "more than " + std::to_string(maxLevels) + " levels";
    for (const auto* text : {&row.action, &row.title, &row.icon, &row.description}) {
      if (!isText(*text)) return "text is not UTF-8";
      if (text->size() > maxTextBytes)
        return "a text of more than " + std::to_string(maxTextBytes) + " bytes";
    }
    return {};
  }

  /// Depth first, only the last submenu of each level can get another row.
  bool isOpen(std::int32_t parent) const {
    if (parent == Row::noParent) return true;
    for (const auto submenu : openSubmenus) {
      if (submenu == parent) return true;
    }
    return false;
  }

  std::vector<std::size_t> levels;
  std::vector<std::int32_t> openSubmenus;
};

using BytesPointer = std::unique_ptr<GBytes, Releaser<g_bytes_unref>>;

VariantPointer bytesOf(GVariant* laidOut) {
  const BytesPointer bytes(g_variant_get_data_as_bytes(laidOut));
  return VariantPointer(
      g_variant_ref_sink(g_variant_new_from_bytes(G_VARIANT_TYPE(rowBytesType), bytes.get(), TRUE)));
}

VariantPointer rowsIn(GVariant* rowBytes) {
  const BytesPointer bytes(g_variant_get_data_as_bytes(rowBytes));
  return VariantPointer(
      g_variant_ref_sink(g_variant_new_from_bytes(G_VARIANT_TYPE(rowsType), bytes.get(), FALSE)));
}

std::string tooManyBytes() { return "more than " + std::to_string(maxBytes) + " bytes"; }

}  // namespace

std::size_t byteSize(const Row& row) {
  // Two numbers and a flag, the texts' ends, and at most eight bytes each for where the texts end and the row
  // begins.
  constexpr std::size_t overhead = 4 + 4 + 1 + 4 + 6 * 8;
  return overhead + row.action.size() + row.title.size() + row.icon.size() + row.description.size();
}

tl::expected<VariantPointer, std::string> rowsToVariant(const std::vector<Row>& rows) {
  RowCheck check;
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE(rowsType));
  std::string fault;
  for (const auto& row : rows) {
    fault = check.next(row);
    if (!fault.empty()) break;
    auto* const tuple = g_variant_new("(iussssb)", row.parent, static_cast<std::uint32_t>(row.type),
                                      row.action.c_str(), row.title.c_str(), row.icon.c_str(),
                                      row.description.c_str(), row.isEnabled ? TRUE : FALSE);
    // Laid out now: as eight values each, a thousand rows would take a megabyte more, which GLib keeps.
    static_cast<void>(g_variant_get_data(tuple));
    g_variant_builder_add_value(&builder, tuple);
  }
  const VariantPointer variant(g_variant_ref_sink(g_variant_builder_end(&builder)));
  if (fault.empty() && g_variant_get_size(variant.get()) > maxBytes) fault = tooManyBytes();
  if (!fault.empty()) return tl::unexpected(fault);
  return bytesOf(variant.get());
}

tl::expected<std::vector<Row>, std::string> rowsFromVariant(GVariant* variant) {
  if (!g_variant_is_of_type(variant, G_VARIANT_TYPE(rowBytesType))) {
    return tl::unexpected(std::string("rows of type ") + g_variant_get_type_string(variant));
  }
  if (g_variant_get_size(variant) > maxBytes) return tl::unexpected(tooManyBytes());
  const auto laidOut = rowsIn(variant);
  if (!g_variant_is_normal_form(laidOut.get())) return tl::unexpected(std::string("bytes that are no rows"));
  RowCheck check;
  std::vector<Row> rows;
  for (std::size_t index = 0; index < g_variant_n_children(laidOut.get()); ++index) {
    std::int32_t parent = 0;
    std::uint32_t type = 0;
    const char* action = nullptr;
    const char* title = nullptr;
    const char* icon = nullptr;
    const char* description = nullptr;
    gboolean isEnabled = FALSE;
    const VariantPointer child(g_variant_get_child_value(laidOut.get(), index));
    g_variant_get(child.get(), "(iu&s&s&s&sb)", &parent, &type, &action, &title, &icon, &description,
                  &isEnabled);
    rows.push_back(
        {parent, static_cast<Row::Type>(type), action, title, icon, description, isEnabled != FALSE});
    const auto fault = check.next(rows.back());
    if (!fault.empty()) return tl::unexpected(fault);
  }
  return rows;
}

}  // namespace sprig::wire
