#include "platform/UIKit/NibValues.h"

#include "platform/Foundation/Decimal.h"

#include <sstream>

namespace zuvi::nib {

std::optional<double> number(const std::string& text) {
  return decimalNumber(text);
}

std::vector<std::string> words(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> result;
  for (std::string word; stream >> word;)
    result.push_back(word);
  return result;
}

std::vector<double> numbers(const std::string& text) {
  std::vector<double> result;
  for (const std::string& word : words(text)) {
    const auto value = number(word);
    if (!value) return {};
    result.push_back(*value);
  }
  return result;
}

std::shared_ptr<const UIFont> font(const std::string& text) {
  const auto parts = words(text);
  if (parts.size() != 2) return nullptr;
  const auto size = number(parts[1]);
  if (!size || *size <= 0) return nullptr;
  if (auto named = UIFont::named(parts[0], *size)) return named;
  const bool bold = parts[0].ends_with("Bold");
  const bool semiBold = parts[0].ends_with("SemiBold");
  return UIFont::system(*size, semiBold ? FontWeight::SemiBold
                               : bold   ? FontWeight::Bold
                                        : FontWeight::Regular);
}

} // namespace zuvi::nib
