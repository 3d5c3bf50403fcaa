#pragma once

#include <ZuviSDK/UIKit/UIColor.h>

#include <map>
#include <optional>
#include <string>

namespace zuvi {

/// The colours of the kit's screens, by name.
class Palette {
public:
  /// The light or dark one of the kit's bundle, Palette.plist, whichever `isDark` asks for.
  static const Palette& shared();
  /// From a property list; a file that is missing or has another form gives no colours.
  explicit Palette(const std::optional<std::string>& path);

  bool isEmpty() const { return colors_.empty(); }
  /// Absent when no colour has that name.
  std::optional<UIColor> color(const std::string& name) const;

private:
  std::map<std::string, UIColor> colors_;
};

/// `Palette::shared().color(name)`; black when no colour has that name.
UIColor paletteColor(const std::string& name);

} // namespace zuvi
