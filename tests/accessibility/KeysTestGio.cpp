// The real program as a screen reader and a keyboard know it: nothing here looks at the screen or
// moves the pointer.

#include "testing/demo/ProgramFixture.h"
#include "testing/desktop/AccessibilityBusGio.h"

#include <algorithm>

namespace zuvi::test {
namespace {

class KeysTest : public sandbox::test::ProgramFixture {
protected:
  void SetUp() override {
    ASSERT_NO_FATAL_FAILURE(startWith({}, sandbox::Merchants::samples()));
    bus.emplace();
    ASSERT_NE(bus->address, "") << "this test wants at-spi2-core";
    const ScopedEnvironment on("GTK_A11Y", std::nullopt), at("AT_SPI_BUS_ADDRESS", bus->address);
    launch("sleep 600"); // the keyboard does the rest
    ASSERT_EQ(std::system("xdotool search --sync --name 'Harbour Rentals' windowfocus"), 0);
    ASSERT_TRUE(find("button", "Login")) << seen();
  }

  /// Looks until there is such an element, with the focus if that is asked for.
  std::optional<Accessible> find(const std::string& role, const std::string& name,
                                 bool focused = false) {
    std::optional<Accessible> found;
    reaches([&] {
      tree.clear();
      bus->read({"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"}, tree);
      for (const Accessible& object : tree)
        if (object.role == role && object.name == name && (!focused || object.focused))
          found = object;
      return found.has_value();
    });
    return found;
  }
  bool focuses(const std::string& button) { return find("button", button, true).has_value(); }
  /// The key moves the focus there.
  bool leads(const std::string& key, const std::string& button) {
    press(key);
    return focuses(button);
  }
  bool shows(const std::string& role, const std::string& name) {
    return std::any_of(tree.begin(), tree.end(), [&](const Accessible& object) {
      return object.role == role && object.name == name;
    });
  }
  std::string seen() const {
    std::string text;
    for (const Accessible& object : tree)
      text += object.role + " \"" + object.name + (object.focused ? "\" focused\n" : "\"\n");
    return text;
  }
  static void press(const std::string& keys) {
    EXPECT_EQ(std::system(("xdotool key " + keys).c_str()), 0);
  }
  /// Whether these texts are announced, in this order.
  bool heard(const std::vector<std::string>& texts) {
    return reaches([&] {
      g_main_context_iteration(nullptr, FALSE);
      auto at = bus->announcements.begin();
      for (const std::string& text : texts) // several that come at once are told in one
        at = std::find_if(at, bus->announcements.end(),
                          [&](const std::string& told) { return told.ends_with(text); });
      return at != bus->announcements.end();
    });
  }

  std::optional<AccessibilityBus> bus;
  std::vector<Accessible> tree;
};

TEST_F(KeysTest, WholeRunIsReadAndDrivenWithoutAPointer) {
  ASSERT_TRUE(leads("Tab", "Login")) << seen();
  press("--delay 2000 Return"); // which is held, and told again and again
  ASSERT_TRUE(focuses("Start")) << seen();
  EXPECT_TRUE(shows("heading", "Verify your identity.") && shows("button", "Support") &&
              shows("button", "Close") && shows("label", "Record a short video of your face"))
      << seen();
  EXPECT_FALSE(shows("button", "Login") || shows("button", "Back")) << seen();
  EXPECT_TRUE(shows("progress bar", "Step 1 of 4")) << seen();

  ASSERT_TRUE(leads("Return", "Record")) << seen();
  EXPECT_TRUE(shows("image", "Keep your face in the oval. Turn your head to one side, then to the "
                             "other, and smile."))
      << seen();
  ASSERT_TRUE(leads("Escape", "Start")) << seen();
  ASSERT_TRUE(leads("Return", "Record")) << seen();
  press("space");
  EXPECT_TRUE(heard({"5", "4", "3", "2", "1", "Recording has started. It takes 7 seconds."}));
  ASSERT_TRUE(focuses("Continue")) << seen();
  ASSERT_TRUE(leads("shift+Tab", "Retake")) << seen();
  ASSERT_TRUE(leads("Tab", "Continue")) << seen();

  ASSERT_TRUE(leads("Return", "Take photo")) << seen();
  ASSERT_TRUE(find("label", "Front side")) << seen();
  press("Return");
  ASSERT_TRUE(find("label", "Back side")) << seen();
  ASSERT_TRUE(focuses("Take photo")) << seen();
  press("Return");

  ASSERT_TRUE(focuses("Passport")) << seen();
  ASSERT_TRUE(shows("list", "Choose a document.")) << seen();
  ASSERT_TRUE(leads("Down", "Driving licence, 2 sides")) << seen();
  ASSERT_TRUE(leads("Up", "Passport")) << seen();
  ASSERT_TRUE(leads("shift+Tab", "Close")) << seen();
  ASSERT_TRUE(leads("Return", "Continue")) << seen();
  EXPECT_TRUE(shows("dialog", "Do you want to leave? Your verification is not finished yet."));
  EXPECT_FALSE(shows("list", "Choose a document.")) << seen();
  ASSERT_TRUE(leads("Tab", "Leave")) << seen();
  ASSERT_TRUE(leads("Tab", "Continue")) << seen();
  ASSERT_TRUE(leads("Escape", "Close")) << seen();
  press("Tab");
  press("Return");

  ASSERT_TRUE(focuses("Take photo")) << seen();
  ASSERT_TRUE(leads("Return", "Done")) << seen();
  EXPECT_TRUE(heard({"All done, thank you."}));
  ASSERT_TRUE(leads("Return", "Login")) << seen();

  const auto login = find("button", "Login");
  ASSERT_TRUE(bus->call(*login, "org.a11y.atspi.Action", "DoAction", g_variant_new("(i)", 0)));
  EXPECT_TRUE(focuses("Start")) << seen();
}

} // namespace
} // namespace zuvi::test
