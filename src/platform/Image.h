// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

namespace sprig::platform {

enum class FontWeight { regular };

/// Size (points) and weight at which a symbol is drawn.
struct SymbolConfiguration {
  double pointSize = 0;
  FontWeight weight = FontWeight::regular;
  friend bool operator==(const SymbolConfiguration&, const SymbolConfiguration&) = default;
};

/// How an image is coloured: as the platform gives it, in the text colour of its surroundings (a template
/// image), or in its own colours.
enum class ImageRendering { asGiven, asTemplate, original };

/// A named symbol as the product wants it shown. An empty `symbolName` is an empty image.
struct Image {
  std::string symbolName;
  std::string accessibilityDescription;
  std::optional<SymbolConfiguration> configuration = std::nullopt;
  ImageRendering rendering = ImageRendering::asGiven;
  friend bool operator==(const Image&, const Image&) = default;
};

/// The symbols that the platform can draw.
///
/// Threads: any. Ownership: images are values. Failure: nothing in place of an image.
class SymbolImages {
 public:
  virtual ~SymbolImages() = default;

  /// The symbol called `symbolName`; nothing when the platform has none of that name.
  virtual std::optional<Image> systemSymbol(const std::string& symbolName,
                                            const std::string& accessibilityDescription) const = 0;

  /// A copy drawn as `configuration` says; nothing when it can't be made.
  virtual std::optional<Image> configured(const Image& image,
                                          const SymbolConfiguration& configuration) const = 0;
};

}  // namespace sprig::platform
