#include "kit/Helper/Palette.h"

#include "kit/Helper/ZVBundle.h"
#include "platform/Foundation/PropertyList.h"

namespace zuvi {

Palette::Palette(const std::optional<std::string>& path) {
  const auto list = path ? propertyListFromFile(*path) : std::nullopt;
  if (!list || !list->dictionary()) return;
  for (const auto& [name, value] : *list->dictionary())
    if (const auto color = value.string() ? colorFromText(*value.string()) : std::nullopt)
      colors_[name] = *color;
}

const Palette& Palette::shared() {
  static auto& read = *new std::map<bool, Palette>; // by whether it is dark
  const auto found = read.find(isDark());
  if (found != read.end()) return found->second;
  return read.emplace(isDark(), Palette(zvKitBundle()->path("Palette", "plist"))).first->second;
}

std::optional<UIColor> Palette::color(const std::string& name) const {
  const auto found = colors_.find(name);
  return found == colors_.end() ? std::nullopt : std::optional(found->second);
}

UIColor paletteColor(const std::string& name) {
  return Palette::shared().color(name).value_or(UIColor::black());
}

} // namespace zuvi
