#include "platform/Foundation/ValueStorage.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace zuvi {

namespace {

template <class Real> std::string describeReal(Real number) {
  char buffer[64];
  // Decimal as long as it is of a readable length.
  const double size = std::abs(static_cast<double>(number));
  const bool plain = size == 0 || (size >= 1e-4 && size < 0x1p54);
  char* const last = buffer + sizeof buffer;
  const auto end = plain ? std::to_chars(buffer, last, number, std::chars_format::fixed).ptr
                         : std::to_chars(buffer, last, number).ptr;
  std::string text(buffer, end);
  // Keeps a real recognisable as one.
  if (std::isfinite(number) && text.find_first_of(".e") == std::string::npos) text += ".0";
  return text;
}

std::string describeDate(Date date) {
  constexpr double limit = 2e11; // some six thousand years around 1970
  const double seconds = std::floor(date.timeIntervalSince1970);
  if (!(std::abs(seconds) < limit)) return describeReal(date.timeIntervalSince1970);
  using namespace std::chrono;
  const sys_seconds moment{std::chrono::seconds(static_cast<std::int64_t>(seconds))};
  const auto day = floor<days>(moment);
  const year_month_day ymd{day};
  const hh_mm_ss time{moment - day};
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%04d-%02u-%02u %02d:%02d:%02d +0000", int{ymd.year()},
                unsigned{ymd.month()}, unsigned{ymd.day()}, static_cast<int>(time.hours().count()),
                static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
  return buffer;
}

// Inside brackets a string is quoted, so that one text cannot pass for several elements.
std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    if (c == '\n')
      result += "\\n";
    else
      result += c;
  }
  return result += '"';
}

std::string describeElement(const Value& value) {
  return value.string() ? quoted(*value.string()) : value.description();
}

struct Describer {
  std::string operator()(std::monostate) const { return "nil"; }
  std::string operator()(bool boolean) const { return boolean ? "true" : "false"; }
  std::string operator()(std::int64_t number) const { return std::to_string(number); }
  std::string operator()(std::uint64_t number) const { return std::to_string(number); }
  std::string operator()(float number) const { return describeReal(number); }
  std::string operator()(double number) const { return describeReal(number); }
  std::string operator()(const std::string& text) const { return text; }
  std::string operator()(Date date) const { return describeDate(date); }
  std::string operator()(const URL& url) const { return url.absoluteString(); }

  std::string operator()(const std::shared_ptr<const DescribedObject>& object) const {
    return object->description();
  }

  std::string operator()(const Value::List& list) const {
    std::string result = "[";
    for (const auto& element : list) {
      if (result.size() > 1) result += ", ";
      result += describeElement(element);
    }
    return result += ']';
  }

  std::string operator()(const Value::Dictionary& dictionary) const {
    if (dictionary.empty()) return "[:]";
    std::string result = "[";
    for (const auto& [key, value] : dictionary) {
      if (result.size() > 1) result += ", ";
      result += quoted(key) + ": " + describeElement(value);
    }
    return result += ']';
  }
};

} // namespace

std::string Value::description() const {
  return std::visit(Describer{}, storage().content);
}

} // namespace zuvi
