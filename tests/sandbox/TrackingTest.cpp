#include "sandbox/core/api/Tracking.h"

#include <gmock/gmock.h>

namespace zuvi::sandbox::test {
namespace {

using testing::HasSubstr;

std::string faultOf(const std::string& query) {
  const auto event = readTrackedEvent(query);
  return event ? "none" : event.error().message;
}

TEST(Tracking, UndoesLineBreaksBase64AndEscapes) {
  // {"event":"cam~>?opened","properties":{"$os":"iOS","size":{"w":414,"h":736},"list":[true,null]}}
  const auto event = readTrackedEvent(
      "v=1&data=eyJldmVudCI6ImNhbX4+P29wZW5lZCIsInByb3BlcnRpZXMiOnsiJG9zIjoiaU9T%0D%0A"
      "Iiwic2l6ZSI6eyJ3Ijo0MTQsImgiOjczNn0sImxpc3QiOlt0cnVlLG51bGxdfX0%3D");
  ASSERT_TRUE(event) << event.error().message;
  EXPECT_EQ(event->name, "cam~>?opened");
  EXPECT_EQ(event->properties, R"({"$os":"iOS","size":{"w":414,"h":736},"list":[true,null]})");
}

TEST(Tracking, SaysWhichLayerIsWrong) {
  EXPECT_THAT(faultOf(""), HasSubstr("no key"));
  EXPECT_THAT(faultOf("data=e30%3"), HasSubstr("percent"));
  EXPECT_THAT(faultOf("data=e30"), HasSubstr("Base64"));
  EXPECT_THAT(faultOf("data=e30%0A="), HasSubstr("Base64")) << "a line feed of its own";
  EXPECT_THAT(faultOf("data=e30 "), HasSubstr("Base64")) << "a plus sign that became a space";
  EXPECT_THAT(faultOf("data=W10="), HasSubstr("no JSON object"));         // []
  EXPECT_THAT(faultOf("data=e30="), HasSubstr("no name"));                // {}
  EXPECT_THAT(faultOf("data=eyJldmVudCI6ImEifQ=="), HasSubstr("object")); // {"event":"a"}
}

} // namespace
} // namespace zuvi::sandbox::test
