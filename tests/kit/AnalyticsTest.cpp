// The text of events, and the requests that carry them.

#include "kit/Helper/ZVAnalyticsManager.h"
#include "kit/Helper/ZVJSONHandler.h"
#include "platform/UIKit/UIDevice.h"
#include "sandbox/core/api/Tracking.h"
#include "tests/kit/KitTest.h"
#include "tests/support/ScopedEnvironment.h"

#include <sys/utsname.h>

namespace zuvi {
namespace {

class Described final : public DescribedObject {
  std::string description() const override { return "an object"; }
};

class AnalyticsTest : public KitTest {
protected:
  /// The properties that stand in a query, as the service reads them.
  static Value::Dictionary read(const std::string& query, const std::string& event) {
    const auto tracked = sandbox::readTrackedEvent(query);
    EXPECT_TRUE(tracked) << query;
    if (!tracked) return {};
    EXPECT_EQ(tracked->name, event);
    return dictionary(tracked->properties);
  }
  Value::Dictionary track(const std::string& event,
                          const std::optional<Value::Dictionary>& properties = std::nullopt) {
    const auto before = backend.events().size();
    ZVAnalyticsManager::track(event, properties);
    EXPECT_TRUE(time.waitUntil([&] { return backend.events().size() == before + 1; }));
    const auto request = backend.events().back();
    EXPECT_EQ(request.method + request.body, "POST");
    EXPECT_FALSE(request.headers.contains("authorization"));
    return read(request.query, event);
  }
};

TEST_F(AnalyticsTest, EncodesWhatAQueryCanCarry) {
  const Value::Dictionary tree{
      {"date", Date{1517400000.0}},
      {"list", Value::List{Date{1517400000.5}, URL::fromString("https://h/p?q").value(), true}},
      {"none", nullptr},
      {"object", std::shared_ptr<const DescribedObject>(make<Described>())},
      {"text", "é/\"\n"}};
  const auto text =
      ZVJSONHandler::encodeAPIData(Value::Dictionary{{"event", "e"}, {"properties", tree}});
  EXPECT_EQ(
      read("data=" + text.value(), "e"),
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
        Value(Value::List{std::nan("")}), Value(Value::Dictionary{{"k", HUGE_VAL}}), Value("\xff"),
        Value(Value::Dictionary{{"\xff", 1}})})
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
  const std::string model = machine.machine, system = UIDevice::current().systemVersion();
  auto expected = dictionary(R"({"$app_release":"1.5","$app_version":"42","$app_build_number":"42",
      "$app_version_string":"1.5","$carrier":"Vivo","$lib_version":"3.1.6","$manufacturer":"Apple",
      "mp_lib":"iphone","$os":"iOS","$radio":"None","$screen_height":812,"$screen_width":375,
      "token":"0f3ab9d17c2e46a8b5d90e7f1c64a382","$region":"Brésil","$country_code":"Brésil"})");
  expected.insert({{"$model", model}, {"mp_device_model", model}, {"$os_version", system}});
  expected["distinct_id"] = id;
  EXPECT_EQ(Value(sent).description(), Value(expected).description());
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
  const auto sent = track("e", dictionary(R"({"token":"x","one":1,"zero":0.0,"yes":true,"no":false,
      "two":2,"close":1.000000001,"tenth":0.1,"text":"1","list":[1]})")); // close is 1 as a float
  EXPECT_EQ(stringValue(sent, "token"), "0f3ab9d17c2e46a8b5d90e7f1c64a382");
  for (const char* key : {"one", "yes", "close", "zero", "no"})
    EXPECT_EQ(sent.at(key), Value(key != std::string("zero") && key != std::string("no"))) << key;
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
