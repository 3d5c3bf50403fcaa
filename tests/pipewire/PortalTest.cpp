#include "platform/AVFoundation/CameraPortal.h"
#include "platform/UIKit/DesktopStyle.h"
#include "testing/desktop/AccessDialogueGio.h"
#include "testing/support/ScopedEnvironment.h"
#include "tests/pipewire/PipeWireFixture.h"

namespace zuvi {
namespace {

using test::VirtualCamera;

/// The desktop's own portal in front of the media server, with a dialogue that the test answers.
class DesktopPortalTest : public PipeWireTest {
protected:
  DesktopPortalTest() : PipeWireTest(Access::Portal) {
    std::filesystem::create_directory(folder.path("portals"));
    folder.write("portals/zuvitest.portal", std::string("[portal]\nDBusName=") +
                                                test::AccessDialogue::busName +
                                                "\nInterfaces=org.freedesktop.impl.portal.Access\n"
                                                "UseIn=zuvitest\n");
    folder.write("portals/zuvicolors.portal", std::string("[portal]\nDBusName=") + colorsName +
                                                  "\nInterfaces=" + settings +
                                                  "\nUseIn=zuvitest\n");
    folder.write("portals/zuvitest-portals.conf", "[preferred]\ndefault=zuvitest;zuvicolors\n");
    // No answer outlives its test.
    const test::ScopedEnvironment data("XDG_DATA_HOME", folder.path("data"));
    store_.emplace(std::vector<std::string>{"/usr/libexec/xdg-permission-store"},
                   test::MediaServer::instance().folder().path("store.log"));
    // Of this desktop only the test's dialogue is there.
    const test::ScopedEnvironment where("XDG_DESKTOP_PORTAL_DIR", folder.path("portals"));
    const test::ScopedEnvironment desktop("XDG_CURRENT_DESKTOP", std::string("zuvitest"));
    portal_.emplace(std::vector<std::string>{"/usr/libexec/xdg-desktop-portal"},
                    test::MediaServer::instance().folder().path("portal.log"));
    EXPECT_EQ(std::system("gdbus wait --session --timeout 60 org.freedesktop.portal.Desktop"), 0);
  }
  /// 1 granted, 0 refused, -1 no answer yet.
  static std::shared_ptr<std::atomic<int>> startAsking() {
    auto answer = std::make_shared<std::atomic<int>>(-1);
    AVCaptureDevice::requestAccess([answer](bool granted) { *answer = granted; });
    return answer;
  }
  int ask() {
    const auto answer = startAsking();
    EXPECT_TRUE(time.waitUntil([&] { return *answer >= 0; }));
    return *answer;
  }
  bool servesEach(const std::string& front, const std::string& back) {
    return serves(Position::Front, front) && serves(Position::Back, back);
  }

  static constexpr const char* colorsName = "org.freedesktop.impl.portal.desktop.zuvicolors";
  static constexpr const char* settings = "org.freedesktop.impl.portal.Settings";
  /// The desktop's settings, of which there is one.
  test::BusService colors_{
      {std::getenv("DBUS_SESSION_BUS_ADDRESS"), colorsName, "/org/freedesktop/portal/desktop",
       R"(<node><interface name="org.freedesktop.impl.portal.Settings"><method name="Read">
         <arg type="s"/><arg type="s"/><arg type="v" direction="out"/></method>
         </interface></node>)",
       [] { return g_variant_new("(v)", g_variant_new_uint32(1)); }}};
  test::AccessDialogue dialogue;
  std::optional<test::ChildProcess> store_, portal_;
};

TEST_F(DesktopPortalTest, TellsWhichColoursTheDesktopWants) {
  EXPECT_EQ(desktopStyle(), UIUserInterfaceStyle::Light) << "nobody has answered yet";
  const auto comes = [&](UIUserInterfaceStyle style) {
    return time.waitUntil([&] {
      g_main_context_iteration(nullptr, FALSE);
      return desktopStyle() == style;
    });
  };
  EXPECT_TRUE(comes(UIUserInterfaceStyle::Dark));
  constexpr guint32 light = 2;
  colors_.emit(settings, "SettingChanged",
               g_variant_new("(ssv)", "org.freedesktop.appearance", "color-scheme",
                             g_variant_new_uint32(light)));
  EXPECT_TRUE(comes(UIUserInterfaceStyle::Light));
}

TEST_F(DesktopPortalTest, EachSideIsServedByTheCamerasThatTheUserHandsOver) {
  std::optional<VirtualCamera> front, back;
  const auto plugIn = [&] {
    front.emplace("Front", VirtualCamera::Traits{"front", "red"});
    back.emplace("Back", VirtualCamera::Traits{"back", "blue"});
  };
  plugIn();
  ASSERT_TRUE(servesEach("portal:front", "portal:back")) << "nothing is known of them yet";
  const auto documents = start(Position::Back), recorder = start(Position::Front);
  dialogue.agrees = false;
  EXPECT_EQ(ask(), 0);
  EXPECT_EQ(dialogue.shown, 1);
  EXPECT_EQ(AVCaptureDevice::authorizationStatus(), AVAuthorizationStatus::NotDetermined);
  EXPECT_TRUE(recorder->session->isRunning()) << "it waits for another answer";
  EXPECT_EQ(firstPictures, 0);

  test::AccessDialogue::allowInSettings();
  EXPECT_EQ(ask(), 1) << "a refusal is no last word";
  EXPECT_EQ(AVCaptureDevice::authorizationStatus(), AVAuthorizationStatus::Authorized);
  EXPECT_EQ(colourOf(*documents), "blue");
  EXPECT_EQ(colourOf(*recorder), "red");
  EXPECT_TRUE(servesEach("Front", "Back"));

  auto& server = test::MediaServer::instance();
  server.stop(); // and with it the connection that was granted
  EXPECT_TRUE(servesEach("portal:front", "portal:back"));
  server.start();
  plugIn();
  EXPECT_EQ(ask(), 1);
  EXPECT_TRUE(servesEach("Front", "Back"));
}

TEST_F(DesktopPortalTest, NoPortalIsANo) {
  const VirtualCamera camera("Webcam", {}); // without one nobody is asked
  dialogue.hesitates = true;
  const auto answer = startAsking();
  EXPECT_TRUE(time.waitUntil([&] { return dialogue.shown == 1; }));
  EXPECT_EQ(*answer, -1);
  portal_.reset(); // below the open dialogue
  EXPECT_TRUE(time.waitUntil([&] { return *answer == 0; }));
  EXPECT_EQ(ask(), 0) << "it is not there any more";
  const test::ScopedEnvironment nowhere("DBUS_SESSION_BUS_ADDRESS",
                                        std::string("unix:path=/nonexistent"));
  EXPECT_EQ(ask(), 0) << "not even a bus";
  EXPECT_EQ(CameraPortal::openCameras(), -1);
}

} // namespace
} // namespace zuvi
