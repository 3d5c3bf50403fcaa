#include "platform/Foundation/JSONSerialization.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace zuvi {
namespace {

using Fragments = JSONSerialization::Fragments;

std::string written(const Value& value) {
  const auto data = JSONSerialization::data(value);
  return data ? data->string() : "(absent)";
}

std::string nested(std::size_t depth) {
  return std::string(depth, '[') + std::string(depth, ']');
}

TEST(JSONSerializationTest, ReadsEveryKindOfValue) {
  const auto value = JSONSerialization::jsonObject(
      R"( {"t":true,"n":null,"i":-7,"big":18446744073709551615,"d":0.5,"e":1e2,)"
      R"("s":"\u00e9\ud83d\ude00\u0000x","l":[1,[],{}],"t":false} )");
  ASSERT_TRUE(value && value->dictionary());
  const Value expected =
      Value::Dictionary{{"t", false}, // the last of two wins
                        {"n", nullptr},
                        {"i", -7},
                        {"big", std::numeric_limits<std::uint64_t>::max()},
                        {"d", 0.5},
                        {"e", 100.0},
                        {"s", std::string("\xC3\xA9\xF0\x9F\x98\x80\0x", 8)},
                        {"l", Value::List{1, Value::List{}, Value::Dictionary{}}}};
  EXPECT_EQ(*value, expected);
  EXPECT_FALSE(valueForKey(*value->dictionary(), "t")->isNumber());
  EXPECT_EQ(valueForKey(*value->dictionary(), "i")->boolean(), nullptr);
}

TEST(JSONSerializationTest, FragmentsOnlyOnRequest) {
  for (const char* text : {"\"a\"", "1", "-0.5", "true", "null"}) {
    EXPECT_FALSE(JSONSerialization::jsonObject(text)) << text;
    EXPECT_TRUE(JSONSerialization::jsonObject(text, Fragments::Allow)) << text;
  }
  EXPECT_TRUE(JSONSerialization::jsonObject("null", Fragments::Allow)->isNull());
}

TEST(JSONSerializationTest, RefusesWhatIsNoJson) {
  for (const char* text : {"",
                           " ",
                           "{",
                           "[1,]",
                           "{\"a\"}",
                           "{\"a\":1,}",
                           "{a:1}",
                           "[1] x",
                           "['a']",
                           "[01]",
                           "[1.]",
                           "[NaN]",
                           "[1e999]",
                           "[\"\\ud800\"]",
                           "[\"\t\"]",
                           "[\"\xff\"]",
                           "[\"\xc0\xaf\"]",
                           "[\"\xed\xa0\x80\"]",
                           "<html></html>",
                           "[/* */]",
                           "tru"})
    EXPECT_FALSE(JSONSerialization::jsonObject(text, Fragments::Allow)) << text;
  EXPECT_FALSE(JSONSerialization::jsonObject(std::string_view("[1]\0", 4)));
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

TEST(JSONSerializationTest, WritesCompactly) {
  EXPECT_EQ(written(Value::Dictionary{{"b", Value::List{1, true, nullptr, "x\"\n"}},
                                      {"a", Value::Dictionary{}}}),
            R"({"a":{},"b":[1,true,null,"x\"\n"]})");
  EXPECT_EQ(written(Value::List{0.1F, 2.5, std::numeric_limits<std::uint64_t>::max(),
                                std::numeric_limits<std::int64_t>::min()}),
            "[0.1,2.5,18446744073709551615,-9223372036854775808]");
}

TEST(JSONSerializationTest, RefusesWhatJsonCannotHold) {
  struct Thing final : DescribedObject {
    std::string description() const override { return "thing"; }
  };
  const Value refused[] = {std::numeric_limits<double>::infinity(),
                           std::numeric_limits<float>::quiet_NaN(),
                           Date{0},
                           URL::fromFilePath("/a"),
                           Value(std::make_shared<const Thing>()),
                           "\xff"};
  for (const auto& value : refused) {
    EXPECT_EQ(written(Value::List{Value::Dictionary{{"k", value}}}), "(absent)");
    EXPECT_EQ(written(value), "(absent)");
  }
  EXPECT_EQ(written(Value::Dictionary{{"\xff", 1}}), "(absent)");
  for (const auto& bare : {Value(1), Value("a"), Value(true), Value()})
    EXPECT_FALSE(JSONSerialization::isValidJSONObject(bare));
}

} // namespace
} // namespace zuvi
