#include <ZuviSDK/Foundation/URL.h>
#include "platform/Foundation/JSONSerialization.h"
#include "platform/Foundation/Locale.h"

#include <gtest/gtest.h>

namespace zuvi {
namespace {

TEST(LocaleTest, UpperCaseFollowsTheLanguage) {
  EXPECT_EQ(Locale("en").uppercased("größe fix\xff"), "GRÖSSE FIX\xef\xbf\xbd");
  EXPECT_EQ(Locale("tr").uppercased("fix"), "FİX");
}

TEST(URLTest, RefusesWhatIsNoAddress) {
  for (const char* text : {"", "no scheme", "/path", "h.example/x", "https://h/a b", "https://h/\n",
                           "https://h/%", "https://h/%4", "https://h/?a=%zz", "https://h:port/",
                           "https://[::1/", "1http://h/", "https://h/\xff", " https://h/"})
    EXPECT_FALSE(URL::fromString(text)) << text;
  EXPECT_FALSE(URL::fromString(std::string("https://h/\0", 11)));
}

using Fragments = JSONSerialization::Fragments;

std::string written(const Value& value) {
  const auto data = JSONSerialization::data(value);
  return data ? data->string() : "(absent)";
}

std::string nested(std::size_t depth) {
  return std::string(depth, '[') + std::string(depth, ']');
}

TEST(JSONSerializationTest, RefusesWhatIsNoJson) {
  for (const std::string text : {"", "[1,]", "[1] x", "[1e999]", "[\"\\ud800\"]", "[\"\xff\"]"})
    EXPECT_FALSE(JSONSerialization::jsonObject(text, Fragments::Allow)) << text;
  EXPECT_FALSE(JSONSerialization::jsonObject(std::string_view("[1]\0", 4)));
  for (const char* text : {"\"a\"", "1", "null"}) {
    EXPECT_FALSE(JSONSerialization::jsonObject(text)) << text;
    EXPECT_TRUE(JSONSerialization::jsonObject(text, Fragments::Allow)) << text;
  }
}

TEST(JSONSerializationTest, DepthIsLimitedBothWays) {
  const auto deepest = JSONSerialization::jsonObject(nested(512));
  ASSERT_TRUE(deepest);
  EXPECT_EQ(written(*deepest), nested(512));
  EXPECT_FALSE(JSONSerialization::jsonObject(nested(513)));
  EXPECT_FALSE(JSONSerialization::jsonObject(std::string(8'000'000, '[')));
  std::string objects;
  for (int i = 0; i < 100'000; ++i)
    objects += "{\"a\":";
  EXPECT_FALSE(JSONSerialization::jsonObject(objects));
  EXPECT_FALSE(JSONSerialization::isValidJSONObject(Value::List{*deepest}));
  EXPECT_EQ(written(Value::Dictionary{{"a", *deepest}}), "(absent)");
}

} // namespace
} // namespace zuvi
