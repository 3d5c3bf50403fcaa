// The real program for a person whose desktop speaks another language than the merchant.

#include "tests/demo/ProgramFixture.h"

#include <clocale>

#include <langinfo.h>

namespace zuvi::sandbox::test {
namespace {

class DesktopLanguageTest : public ProgramFixture {
protected:
  /// What the C library knows of the locale that the program gets, which is made here: a machine
  /// may have none but its own.
  std::string decimalPoint() {
    const std::string make = "localedef -i tr_TR -f UTF-8 " + folder_.path("tr_TR.UTF-8");
    EXPECT_EQ(std::system(make.c_str()), 0);
    const locale_t turkish = newlocale(LC_ALL_MASK, "tr_TR.UTF-8", nullptr);
    if (!turkish) return "no such locale";
    std::string point = nl_langinfo_l(RADIXCHAR, turkish);
    freelocale(turkish);
    return point;
  }

  const zuvi::test::ScopedEnvironment turkish_[2]{{"LOCPATH", folder_.path()},
                                                  {"LC_ALL", "tr_TR.UTF-8"}};
};

// In Turkish a comma stands before fractions, and the upper case of i has a dot. The toolkit takes
// the locale up for the whole program when it opens a window.
TEST_F(DesktopLanguageTest, ChangesNeitherNumbersNorTheMerchantsTexts) {
  ASSERT_EQ(decimalPoint(), ",");
  startWith({}, *Merchants::fromText(R"({"demo": {
            "name": "Casa", "photo": "", "configurations": [{"color": "blue", "language": "en",
            "documents": {"required": [], "optional": ["driving-license"]}}]}})"));
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
