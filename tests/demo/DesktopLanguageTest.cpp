// The real program for a person whose desktop speaks another language than the merchant.

#include "testing/demo/ProgramFixture.h"

#include <clocale>

#include <langinfo.h>

namespace zuvi::sandbox::test {
namespace {

using DesktopLanguageTest = ProgramFixture;

// In Turkish a comma stands before fractions, and the upper case of i has a dot. The toolkit takes
// the locale up for the whole program when it opens a window.
TEST_F(DesktopLanguageTest, ChangesNeitherNumbersNorTheMerchantsTexts) {
  // A machine may have no locale but its own.
  const std::string make = "localedef -i tr_TR -f UTF-8 " + folder_.path("tr_TR.UTF-8");
  EXPECT_EQ(std::system(make.c_str()), 0);
  const zuvi::test::ScopedEnvironment where("LOCPATH", folder_.path()),
      turkish("LC_ALL", "tr_TR.UTF-8");
  const locale_t made = newlocale(LC_ALL_MASK, "tr_TR.UTF-8", nullptr);
  ASSERT_TRUE(made);
  ASSERT_STREQ(nl_langinfo_l(RADIXCHAR, made), ",");
  freelocale(made);
  startWith({}, merchant("en", R"({"required": [], "optional": ["driving-license"]})"));
  launch(R"drive(
wait HostViewController
sleep 0.5
tap launchButton
wait ZVMainViewController 20
expect bottomButton.alpha 1 2.5
tap bottomButton
wait ZVLiveCameraViewController 20
sleep 0.5
tap recordButton
wait ZVLivenessVerifyViewController 40
tap bottomButton
wait ZVDocumentListViewController 40
expect nameLabel.text "DRIVING LICENCE" 2.5
)drive");
  EXPECT_TRUE(endsWell());
}

} // namespace
} // namespace zuvi::sandbox::test
