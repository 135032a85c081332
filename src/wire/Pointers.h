// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

#include <memory>

namespace sprig::wire {

/// Calls `Release` on what a pointer owns.
template <auto Release>
struct Releaser {
  template <typename T>
  void operator()(T* owned) const {
    Release(owned);
  }
};

/// A reference to a GLib object or value, dropped with this.
template <typename T>
using ObjectPointer = std::unique_ptr<T, Releaser<g_object_unref>>;
using VariantPointer = std::unique_ptr<GVariant, Releaser<g_variant_unref>>;
using ErrorPointer = std::unique_ptr<GError, Releaser<g_error_free>>;
using TextPointer = std::unique_ptr<char, Releaser<g_free>>;

}  // namespace sprig::wire
