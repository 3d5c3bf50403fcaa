#include "platform/Foundation/DateFormatter.h"

#include "platform/Foundation/Locale.h"

#include <cmath>
#include <ctime>
#include <memory>

#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace zuvi {

namespace {

constexpr double furthest = 1e13; // seconds; some 300,000 years, within what a calendar holds

// The device's zone as it holds at `seconds`. The C library has the last word on the offset: it
// also understands zones that are given as rules and not by name.
std::unique_ptr<icu::TimeZone> deviceZone(double seconds) {
  std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
  const auto moment = static_cast<std::time_t>(seconds);
  std::tm local = {};
  ::tzset();
  if (!::localtime_r(&moment, &local)) return zone;
  std::int32_t raw = 0;
  std::int32_t saving = 0;
  UErrorCode status = U_ZERO_ERROR;
  zone->getOffset(seconds * 1000, 0, raw, saving, status);
  const auto offset = static_cast<std::int32_t>(local.tm_gmtoff * 1000);
  if (U_FAILURE(status) || raw + saving != offset)
    zone = std::make_unique<icu::SimpleTimeZone>(offset, icu::UnicodeString());
  return zone;
}

// Null when the formatter's zone is unknown.
std::unique_ptr<icu::TimeZone> zoneOf(const DateFormatter& formatter, double seconds) {
  if (!formatter.timeZone) return deviceZone(seconds);
  std::unique_ptr<icu::TimeZone> zone(
      icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(*formatter.timeZone)));
  return *zone == icu::TimeZone::getUnknown() ? nullptr : std::move(zone);
}

// Null when pattern, locale or zone cannot be used.
std::unique_ptr<icu::SimpleDateFormat> formatOf(const DateFormatter& formatter, double seconds) {
  const std::string locale = formatter.locale.value_or(Locale::current().identifier());
  UErrorCode status = U_ZERO_ERROR;
  auto format = std::make_unique<icu::SimpleDateFormat>(
      icu::UnicodeString::fromUTF8(formatter.dateFormat), icu::Locale(locale.c_str()), status);
  auto zone = zoneOf(formatter, seconds);
  if (U_FAILURE(status) || !zone) return nullptr;
  format->adoptTimeZone(zone.release());
  return format;
}

} // namespace

std::string DateFormatter::string(Date date) const {
  const double seconds = date.timeIntervalSince1970;
  if (!(std::abs(seconds) <= furthest)) return {};
  const auto format = formatOf(*this, seconds);
  if (!format) return {};
  // Whole milliseconds are what the calendar counts; binary fractions fall just short of them.
  const UDate milliseconds = std::floor(std::round(seconds * 1e6) / 1e3);
  icu::UnicodeString text;
  UErrorCode status = U_ZERO_ERROR;
  format->format(milliseconds, text, nullptr, status);
  std::string result;
  if (U_SUCCESS(status)) text.toUTF8String(result);
  return result;
}

} // namespace zuvi
