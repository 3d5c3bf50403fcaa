// The text of events, and the requests that carry them.

#include "kit/Helper/ZVAnalyticsManager.h"
#include "kit/Helper/ZVJSONHandler.h"
#include "platform/Foundation/PercentEncoding.h"
#include "platform/UIKit/UIDevice.h"
#include "tests/kit/KitTest.h"
#include "tests/support/ScopedEnvironment.h"

#include <sys/utsname.h>

namespace zuvi {
namespace {

/// The text that stands in the query, taken apart as the service does it.
std::string decoded(const std::string& query) {
  const std::string lines = removingPercentEncoding(query).value_or("?");
  std::string bytes;
  unsigned bits = 0;
  int count = 0, column = 0;
  for (std::size_t i = 0; i < lines.size(); i++) {
    if (lines[i] == '=') break;
    if (lines.compare(i, 2, "\r\n") == 0) {
      EXPECT_EQ(std::exchange(column, 0), 64);
      EXPECT_LT(i + 2, lines.size()) << "no line end at the end";
      i++;
      continue;
    }
    column++;
    const auto value =
        std::string("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
            .find(lines[i]);
    EXPECT_NE(value, std::string::npos) << lines[i];
    bits = bits << 6 | static_cast<unsigned>(value & 63);
    if ((count += 6) >= 8) bytes += static_cast<char>(bits >> (count -= 8) & 0xff);
  }
  EXPECT_LE(column, 64);
  return bytes;
}

class Described final : public DescribedObject {
  std::string description() const override { return "an object"; }
};

class AnalyticsTest : public KitTest {
protected:
  Value::Dictionary track(const std::string& event,
                          const std::optional<Value::Dictionary>& properties = std::nullopt) {
    const auto before = backend.events().size();
    ZVAnalyticsManager::track(event, properties);
    EXPECT_TRUE(time.waitUntil([&] { return backend.events().size() == before + 1; }));
    const auto request = backend.events().back();
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.body, "");
    EXPECT_FALSE(request.headers.contains("authorization"));
    EXPECT_TRUE(request.query.starts_with("data="));
    auto payload = dictionary(decoded(request.query.substr(5)));
    EXPECT_EQ(payload.size(), 2U);
    EXPECT_EQ(stringValue(payload, "event"), event);
    const Value* sent = valueForKey(payload, "properties");
    return sent && sent->dictionary() ? *sent->dictionary() : Value::Dictionary{};
  }
};

TEST_F(AnalyticsTest, EncodesWhatAQueryCanCarry) {
  const Value::Dictionary tree{
      {"date", Date{1517400000.0}},
      {"list", Value::List{Date{1517400000.5}, URL::fromString("https://h/p?q").value(), true}},
      {"none", nullptr},
      {"object", std::shared_ptr<const DescribedObject>(make<Described>())},
      {"text", "é/\"\n"}};
  const auto text = ZVJSONHandler::encodeAPIData(tree);
  EXPECT_EQ(
      dictionary(decoded(text.value())),
      (Value::Dictionary{{"date", "2018-01-31T12:00:00.000Z"},
                         {"list", Value::List{"2018-01-31T12:00:00.500Z", "https://h/p?q", true}},
                         {"none", "nil"},
                         {"object", "an object"},
                         {"text", "é/\"\n"}}));
  // 48 bytes make one full line, one more begins another.
  const auto ofSize = [](std::size_t bytes) { return Value::List{std::string(bytes - 4, 'a')}; };
  EXPECT_EQ(ZVJSONHandler::encodeAPIData(ofSize(48)).value().size(), 64U);
  EXPECT_EQ(ZVJSONHandler::encodeAPIData(ofSize(49)).value().substr(64), "%0D%0AXQ==");
  for (const Value& refused :
       {Value("text"), Value(7), Value(true), Value(), Value(Date{0}),
        Value(Value::List{std::nan("")}), Value(Value::Dictionary{{"k", HUGE_VAL}}), Value("\xff")})
    EXPECT_FALSE(ZVJSONHandler::encodeAPIData(refused)) << refused.description();
}

TEST_F(AnalyticsTest, SendsTheWholeTable) {
  const test::ScopedEnvironment all("LC_ALL", std::nullopt);
  const test::ScopedEnvironment messages("LC_MESSAGES", std::nullopt);
  const test::ScopedEnvironment language("LANG", "fr_BR.UTF-8");
  carrier->carrier = CTCarrier{"Vivo"};
  utsname machine{};
  uname(&machine);
  auto sent = track("zuvi_test");
  const auto id = stringValue(sent, "distinct_id").value_or("");
  EXPECT_EQ(id.size(), 36U);
  sent.erase("distinct_id");
  const Value::Dictionary expected{{"$app_release", "1.5"},
                                   {"$app_version", "42"},
                                   {"$app_build_number", "42"},
                                   {"$app_version_string", "1.5"},
                                   {"$carrier", "Vivo"},
                                   {"$model", machine.machine},
                                   {"$lib_version", "3.1.6"},
                                   {"$manufacturer", "Apple"},
                                   {"mp_lib", "iphone"},
                                   {"mp_device_model", machine.machine},
                                   {"$os_version", UIDevice::current().systemVersion()},
                                   {"$os", "iOS"},
                                   {"$radio", "None"},
                                   {"$screen_height", 812},
                                   {"$screen_width", 375},
                                   {"token", "0f3ab9d17c2e46a8b5d90e7f1c64a382"},
                                   {"$region", "Brésil"},
                                   {"$country_code", "Brésil"}};
  for (const auto& [key, value] : expected)
    EXPECT_EQ(sent[key].description().substr(0, value.description().size()), value.description())
        << key;
  EXPECT_EQ(sent.size(), expected.size());
  EXPECT_NE(stringValue(track("zuvi_test"), "distinct_id"), id) << "each event has its own";
}

TEST_F(AnalyticsTest, LeavesOutWhatIsNotKnown) {
  const test::ScopedEnvironment all("LC_ALL", "C");
  Bundle::main().setInfoDictionary({{"CFBundleShortVersionString", 3}, {"CFBundleVersion", "42"}});
  auto sent = track("e", Value::Dictionary{{"$carrier", "mine"}, {"$region", "mine"}});
  for (const char* key : {"$carrier", "$region", "$country_code"})
    EXPECT_FALSE(sent.contains(key)) << key;
  EXPECT_EQ(stringValue(sent, "$app_version_string"), "42") << "the build stands in";
  Bundle::main().setInfoDictionary({});
  sent = track("e");
  for (const char* key : {"$app_release", "$app_version", "$app_build_number"})
    EXPECT_FALSE(sent.contains(key)) << key;
}

TEST_F(AnalyticsTest, PutsItsOwnOverTheCallers) {
  const auto sent = track("e", Value::Dictionary{{"token", "x"},
                                                 {"one", 1},
                                                 {"zero", 0.0},
                                                 {"yes", true},
                                                 {"no", false},
                                                 {"two", 2},
                                                 {"close", 1.0 + 1e-9}, // one as a small float
                                                 {"tenth", 0.1},
                                                 {"text", "1"},
                                                 {"list", Value::List{1}}});
  EXPECT_EQ(stringValue(sent, "token"), "0f3ab9d17c2e46a8b5d90e7f1c64a382");
  for (const char* key : {"one", "yes", "close"})
    EXPECT_EQ(sent.at(key), Value(true)) << key;
  for (const char* key : {"zero", "no"})
    EXPECT_EQ(sent.at(key), Value(false)) << key;
  EXPECT_EQ(sent.at("two").number(), 2.0);
  EXPECT_FLOAT_EQ(static_cast<float>(sent.at("tenth").number().value_or(0)), 0.1F);
  EXPECT_EQ(sent.at("text"), Value("1"));
  EXPECT_EQ(sent.at("list"), Value(Value::List{1}));
}

TEST_F(AnalyticsTest, FailsWithoutAWord) {
  ZVAnalyticsManager::track(std::nullopt, Value::Dictionary{{"a", "b"}});
  ZVAnalyticsManager::track("e", Value::Dictionary{{"a", std::nan("")}});
  ZVEndpoints::trackingURL() = "no address";
  ZVAnalyticsManager::track("e");
  ZVEndpoints::trackingURL() = "http://127.0.0.1:1/track/";
  ZVAnalyticsManager::track("e");
  ZVEndpoints::trackingURL() = backend.url("/track/");
  track("last");
  EXPECT_EQ(backend.events().size(), 1U);
  EXPECT_TRUE(printed.empty());
}

} // namespace
} // namespace zuvi
