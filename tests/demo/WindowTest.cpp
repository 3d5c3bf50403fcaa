// The real program clicked with real X events.

#include "tests/demo/ProgramFixture.h"

namespace zuvi::sandbox::test {
namespace {

class WindowTest : public ProgramFixture {
protected:
  /// Waits for a dump of that name, then clicks the middle of a view that it shows.
  void clickWhenDumped(const std::string& dump, const std::string& view) {
    const auto middle = middleOf(dump, view);
    ASSERT_TRUE(middle);
    std::ostringstream command;
    command << "eval $(xdotool search --name 'Harbour Rentals' getwindowgeometry --shell); "
            << "xdotool mousemove --window $WINDOW " << int(middle->x) << " $((HEIGHT - "
            << int(middle->y) << ")) click 1";
    ASSERT_EQ(std::system(command.str().c_str()), 0);
  }
};

TEST_F(WindowTest, ClicksReachTheFlow) {
  startWith();
  launch(R"drive(
wait HostViewController
sleep 0.5
dump MARK/host
wait ZVMainViewController 20
dump MARK/start
wait ZVCancelAlertViewController 20
dump MARK/alert
outcome 20
expect outcomeLabel.text "Verification cancelled"
)drive");
  clickWhenDumped("host", "launchButton");
  clickWhenDumped("start", "closeButtonTap");
  clickWhenDumped("alert", "cancelButton");
  ASSERT_TRUE(endsWell());
  EXPECT_EQ(events("outcome", "call"), std::vector<std::string>{"zvKYCLoginCancelled"});
}

} // namespace
} // namespace zuvi::sandbox::test
