// The real program clicked with real X events.

#include "tests/demo/ProgramFixture.h"

namespace zuvi::sandbox::test {
namespace {

/// The frame of the view of that outlet or action, below a view.
std::optional<std::array<double, 4>> frameOf(const Json& view, const std::string& name) {
  if (stringMember(view, "outlet") == name || stringMember(view, "action") == name)
    return view["frame"];
  for (const Json& child : view["children"])
    if (const auto frame = frameOf(child, name)) return frame;
  return std::nullopt;
}

class WindowTest : public ProgramFixture {
protected:
  /// Waits for a dump of that name, then clicks the middle of a view that it shows.
  void clickWhenDumped(const std::string& dump, const std::string& view) {
    const Json tree = parseJson(dumped(dump)).value_or(Json());
    ASSERT_TRUE(tree.contains("windows"));
    const Json& root = tree["windows"][0];
    const auto frame = frameOf(root, view);
    ASSERT_TRUE(frame) << view;
    const auto& [x, y, width, height] = *frame;
    // The screen lies below the window's title bar, at its lower end.
    std::ostringstream command;
    command << "eval $(xdotool search --name 'Harbour Rentals' getwindowgeometry --shell); "
            << "xdotool mousemove --window $WINDOW " << int(x + width / 2) << " $((HEIGHT - "
            << int(double(root["frame"][3]) - y - height / 2) << ")) click 1";
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
