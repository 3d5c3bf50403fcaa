#include "platform/Foundation/DateFormatter.h"
#include "testing/support/ScopedEnvironment.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace zuvi {
namespace {

using test::ScopedEnvironment;

DateFormatter machineFormatter() {
  return {"yyyy-MM-dd'T'HH:mm:ss.SSS'Z'", "en_US_POSIX", "UTC"};
}

TEST(DateFormatterTest, MachineFormatIgnoresTheDevice) {
  for (const char* zone : {"Asia/Kathmandu", "America/St_Johns", "<+0545>-5:45", "Nonsense/Zone"})
    for (const char* language : {"ar_EG.UTF-8", "th_TH.UTF-8", "C", "xx_nonsense"}) {
      const ScopedEnvironment tz("TZ", zone);
      const ScopedEnvironment lang("LC_ALL", language);
      EXPECT_EQ(machineFormatter().string({1517400000}), "2018-01-31T12:00:00.000Z");
    }
}

TEST(DateFormatterTest, MillisecondsAreNeitherLostNorInvented) {
  const auto formatter = machineFormatter();
  for (int ms = 0; ms < 1000; ++ms) {
    char expected[32];
    std::snprintf(expected, sizeof expected, "2018-01-31T12:00:00.%03dZ", ms);
    ASSERT_EQ(formatter.string({1517400000 + ms / 1000.0}), expected);
  }
  for (const double seconds : {std::nan(""), std::numeric_limits<double>::infinity(), -1e300})
    EXPECT_EQ(formatter.string({seconds}), "");
  EXPECT_EQ(formatter.string({-0.001}), "1969-12-31T23:59:59.999Z");
  EXPECT_EQ(formatter.string({1517400000.9996}), "2018-01-31T12:00:00.999Z");
}

TEST(DateFormatterTest, DeviceZoneIsReadAnewAndRulesCount) {
  const ScopedEnvironment lang("LC_ALL", "C");
  DateFormatter formatter;
  formatter.dateFormat = "yyyy-MM-dd'T'HH:mm:ssZ";
  const struct {
    const char *zone, *winter, *summer;
  } rows[] = {
      {"America/New_York", "2018-01-31T07:00:00-0500", "2018-07-01T08:00:00-0400"},
      {":Asia/Kathmandu", "2018-01-31T17:45:00+0545", "2018-07-01T17:45:00+0545"},
      {"CET-1CEST,M3.5.0,M10.5.0/3", "2018-01-31T13:00:00+0100", "2018-07-01T14:00:00+0200"},
      {"Nonsense/Zone", "2018-01-31T12:00:00+0000", "2018-07-01T12:00:00+0000"},
  };
  for (const auto& row : rows) {
    const ScopedEnvironment tz("TZ", row.zone);
    EXPECT_EQ(formatter.string({1517400000}), row.winter) << row.zone;
    EXPECT_EQ(formatter.string({1530446400}), row.summer) << row.zone;
  }
}

} // namespace
} // namespace zuvi
