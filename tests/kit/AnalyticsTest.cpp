// The text of events, and the requests that carry them.

#include "kit/Helper/ZVAnalyticsManager.h"
#include "kit/Helper/ZVJSONHandler.h"
#include "platform/UIKit/UIDevice.h"
#include "sandbox/core/api/Tracking.h"
#include "testing/kit/KitTest.h"
#include "testing/support/ScopedEnvironment.h"

#include <sys/utsname.h>

namespace zuvi {
namespace {

class Described final : public DescribedObject {
  std::string description() const override { return "an object"; }
};

class AnalyticsTest : public KitTest {
protected:
  /// The properties that arrive, as the service reads them.
  Value::Dictionary track(const std::string& event,
                          const std::optional<Value::Dictionary>& properties = std::nullopt) {
    const auto before = backend.events().size();
    ZVAnalyticsManager::track(event, properties);
    EXPECT_TRUE(time.waitUntil([&] { return backend.events().size() == before + 1; }));
    const auto request = backend.events().back();
    EXPECT_EQ(request.method + request.body, "POST");
    EXPECT_FALSE(request.headers.contains("authorization"));
    const auto tracked = sandbox::readTrackedEvent(request.query);
    EXPECT_TRUE(tracked && tracked->name == event) << request.query;
    return tracked ? dictionary(tracked->properties) : Value::Dictionary{};
  }
};

TEST_F(AnalyticsTest, EncodesWhatAQueryCanCarry) {
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

TEST_F(AnalyticsTest, TellsTheHostWhatIsSent) {
  std::string told;
  Value::Dictionary properties;
  ZVKYC::instance().eventListener = [&](const std::string& event, const Value::Dictionary& with) {
    told += event;
    properties = with;
    ZVKYC::instance().eventListener = nullptr;
  };
  const auto sent = track("zuvi_first", Value::Dictionary{{"taps", 3}});
  EXPECT_EQ(told, "zuvi_first");
  EXPECT_EQ(stringValue(properties, "distinct_id"), stringValue(sent, "distinct_id"));
  EXPECT_EQ(properties.size(), sent.size());
  track("zuvi_second");
  EXPECT_EQ(told, "zuvi_first");
}

TEST_F(AnalyticsTest, SendsTheWholeTable) {
  const test::ScopedEnvironment all("LC_ALL", std::nullopt);
  const test::ScopedEnvironment messages("LC_MESSAGES", std::nullopt);
  const test::ScopedEnvironment language("LANG", "fr_BR.UTF-8");
  carrier->carrier = CTCarrier{"Vivo"};
  utsname machine{};
  uname(&machine);
  const auto sent = track("zuvi_test");
  const auto id = stringValue(sent, "distinct_id").value_or("");
  EXPECT_EQ(id.size(), 36U);
  const std::string model = machine.machine, system = UIDevice::current().systemVersion();
  auto expected = dictionary(R"({"$app_release":"1.5","$app_version":"42","$app_build_number":"42",
      "$app_version_string":"1.5","$carrier":"Vivo","$lib_version":"3.1.6","$manufacturer":"Apple",
      "mp_lib":"iphone","$os":"iOS","$radio":"None","$screen_height":812,"$screen_width":375,
      "token":"0f3ab9d17c2e46a8b5d90e7f1c64a382","$region":"Brésil","$country_code":"Brésil"})");
  expected.insert({{"$model", model},
                   {"mp_device_model", model},
                   {"$os_version", system},
                   {"distinct_id", id}});
  EXPECT_EQ(Value(sent).description(), Value(expected).description());
  EXPECT_NE(stringValue(track("zuvi_test"), "distinct_id"), id) << "each event has its own";
}

TEST_F(AnalyticsTest, LeavesOutWhatIsNotKnown) {
  const test::ScopedEnvironment all("LC_ALL", "C");
  Bundle::main().setInfoDictionary({{"CFBundleShortVersionString", 3}, {"CFBundleVersion", "42"}});
  EXPECT_EQ(stringValue(track("e"), "$app_version_string"), "42") << "the build stands in";
  Bundle::main().setInfoDictionary({});
  const auto sent = track("e", Value::Dictionary{{"$carrier", "mine"}, {"$region", "mine"}});
  for (const char* key : {"$carrier", "$region", "$country_code", "$app_release", "$app_version",
                          "$app_build_number"})
    EXPECT_FALSE(sent.contains(key)) << key;
}

TEST_F(AnalyticsTest, PutsItsOwnOverTheCallers) {
  const std::shared_ptr<const DescribedObject> object = make<Described>();
  const std::tuple<std::string, Value, Value> rows[] = {
      {"token", "x", "0f3ab9d17c2e46a8b5d90e7f1c64a382"},
      {"one", 1, true},
      {"close", 1.000000001, true}, // as a float it is 1
      {"zero", 0.0, false},
      {"half", 0.5, 0.5},
      {"text", "é/\"\n", "é/\"\n"},
      {"date", Date{1517400000.5}, "2018-01-31T12:00:00.500Z"},
      {"list", Value::List{URL::fromString("https://h/p?q").value(), true},
       Value::List{"https://h/p?q", true}},
      {"none", nullptr, "nil"},
      {"object", object, "an object"}};
  Value::Dictionary properties;
  for (const auto& [key, given, told] : rows)
    properties[key] = given;
  const auto sent = track("e", properties);
  for (const auto& [key, given, told] : rows)
    EXPECT_EQ(sent.at(key), told) << key;
}

TEST_F(AnalyticsTest, FailsWithoutAWord) {
  ZVAnalyticsManager::track(std::nullopt, Value::Dictionary{{"a", "b"}});
  ZVAnalyticsManager::track("e", Value::Dictionary{{"a", std::nan("")}});
  for (const char* address : {"no address", "http://127.0.0.1:1/track/"}) {
    ZVEndpoints::trackingURL() = address;
    ZVAnalyticsManager::track("e");
  }
  ZVEndpoints::trackingURL() = backend.url("/track/");
  track("last");
  EXPECT_EQ(backend.events().size(), 1U);
  EXPECT_TRUE(printed.empty());
}

} // namespace
} // namespace zuvi
