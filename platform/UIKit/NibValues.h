#pragma once

#include <ZuviSDK/UIKit/UIColor.h>
#include <ZuviSDK/UIKit/UIFont.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Reading the values of a nib's attributes.
namespace zuvi::nib {

std::optional<double> number(const std::string& text);
/// The numbers of a blank-separated list; empty when one of them is none.
std::vector<double> numbers(const std::string& text);
std::vector<std::string> words(const std::string& text);
/// "FontName 16"; the system's face when no such font is registered. Null when malformed.
std::shared_ptr<const UIFont> font(const std::string& text);

/// Each calls `set` with the value and returns true, or returns false when the text is none.
template <class Set> bool withNumber(const std::string& text, const Set& set) {
  const auto value = number(text);
  if (value) set(*value);
  return value.has_value();
}

template <class Set>
bool withNumberIn(const std::string& text, double least, double most, const Set& set) {
  const auto value = number(text);
  if (!value || *value < least || *value > most) return false;
  set(*value);
  return true;
}

template <class Set> bool withBoolean(const std::string& text, const Set& set) {
  if (text != "yes" && text != "no") return false;
  set(text == "yes");
  return true;
}

template <class Set> bool withColor(const std::string& text, const Set& set) {
  const auto value = colorFromText(text);
  if (value) set(*value);
  return value.has_value();
}

template <class Set> bool withFont(const std::string& text, const Set& set) {
  const auto value = font(text);
  if (value) set(value);
  return value != nullptr;
}

} // namespace zuvi::nib
