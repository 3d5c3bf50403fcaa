// The launch button and `verify` among the widgets of a program that knows nothing else of the kit.

#include <ZuviSDK/ZuviSDK.h>
#include <ZuviSDK/ZuviUI.h>
#include "kit/Main/Private/ZVKYCHelper.h"
#include "kit/UI/ViewControllers/ZVRootViewController.h"
#include "kit/UI/ViewControllers/ZVVerifiedViewController.h"

#include <chrono>
#include <vector>

#include <gtest/gtest.h>

namespace zuvi::test {
namespace {

struct CountingDelegate final : ZVKYCDelegate {
  std::vector<std::string> calls;
  void zvKYCLoginSuccess(const std::string& id) override { calls.push_back("success " + id); }
  void zvKYCLoginCancelled() override { calls.emplace_back("cancelled"); }
};

/// A program with one window, and what it was told.
class VerificationTest : public testing::Test {
protected:
  VerificationTest() {
    gtk_init();
    ZVEndpoints::serverURL() = "http://127.0.0.1:1/"; // nothing answers there
    ZVEndpoints::trackingURL() = ZVEndpoints::serverURL();
    AVCaptureDevice::setProvider(std::make_shared<HostCameraProvider>(HostCameras{}));
    ZVKYC::instance().delegate = delegate;
    ZVKYC::registerWithClientId("client");
    host = GTK_WINDOW(gtk_window_new());
    button = launchButtonNew(completion());
    gtk_window_set_child(host, button);
    gtk_window_present(host);
  }
  ~VerificationTest() override {
    if (host) gtk_window_destroy(host);
    EXPECT_TRUE(waitUntil([] { return windows().empty(); }));
    AVCaptureDevice::setProvider(nullptr);
  }

  VerificationCompletion completion() {
    return [this](const Verification& end) {
      const bool ran = end.result != Verification::Result::Failed;
      EXPECT_FALSE(ran && flow()) << "told before the window closed";
      constexpr const char* names[] = {"verified ", "cancelled", "failed: "};
      told.push_back(names[int(end.result)] + end.identityId + end.problem);
    };
  }
  static std::vector<GtkWindow*> windows() {
    std::vector<GtkWindow*> found;
    GListModel* all = gtk_window_get_toplevels();
    for (guint i = 0; i < g_list_model_get_n_items(all); i++) {
      gpointer item = g_list_model_get_item(all, i);
      found.push_back(GTK_WINDOW(item));
      g_object_unref(item);
    }
    return found;
  }
  static bool waitUntil(const std::function<bool()>& holds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!holds() && std::chrono::steady_clock::now() < end)
      g_main_context_iteration(nullptr, FALSE) || (g_usleep(1000), true);
    return holds();
  }
  void click() { g_signal_emit_by_name(button, "clicked"); }
  /// The flow's window; null: none.
  GtkWindow* flow() {
    for (GtkWindow* window : windows())
      if (window != host) return window;
    return nullptr;
  }
  static ZVRootViewController& shell() { return *ZVKYCHelper::instance().rootVC; }
  bool open() {
    click();
    return waitUntil([] {
      return shell().isViewLoaded() &&
             shell().appearance() == UIViewController::Appearance::Appeared;
    });
  }

  std::shared_ptr<CountingDelegate> delegate = std::make_shared<CountingDelegate>();
  GtkWindow* host = nullptr;
  GtkWidget* button = nullptr;
  std::vector<std::string> told;
};

using Texts = std::vector<std::string>;

TEST_F(VerificationTest, ClosingTheWindowAsksAndTheSecondTimeLeaves) {
  ASSERT_TRUE(open());
  EXPECT_EQ(gtk_window_get_transient_for(flow()), host);
  EXPECT_STREQ(gtk_window_get_title(flow()), "Verify your identity");
  click(); // brings it to the front
  EXPECT_EQ(windows().size(), 2U);

  gtk_window_close(flow());
  ASSERT_TRUE(waitUntil([] { return shell().presentedViewController() != nullptr; }));
  EXPECT_TRUE(told.empty());
  gtk_window_close(flow());
  ASSERT_TRUE(waitUntil([this] { return !told.empty(); }));
  EXPECT_EQ(told, Texts{"cancelled"});
  EXPECT_EQ(delegate->calls, Texts{"cancelled"});
  EXPECT_EQ(flow(), nullptr);

  ASSERT_TRUE(open()) << "a second run";
  shell().mainNC()->pushViewController(make<ZVVerifiedViewController>(), false);
  ZVKYCHelper::instance().tempIdentity = "identity";
  gtk_window_close(flow());
  ASSERT_TRUE(waitUntil([this] { return told.size() == 2; }));
  EXPECT_EQ(told.back(), "verified identity");
  EXPECT_EQ(delegate->calls.back(), "success identity");
}

TEST_F(VerificationTest, GoesWithTheWindowOfTheHost) {
  ASSERT_TRUE(open());
  gtk_window_destroy(std::exchange(host, nullptr));
  ASSERT_TRUE(waitUntil([this] { return !told.empty(); }));
  EXPECT_EQ(told, Texts{"cancelled"});
  EXPECT_EQ(delegate->calls, Texts{"cancelled"});
  EXPECT_TRUE(windows().empty());
  verify(nullptr, completion());
  EXPECT_TRUE(waitUntil([this] { return flow() != nullptr; })) << "the next one";
  gtk_window_destroy(flow());
  EXPECT_TRUE(waitUntil([this] { return told.size() == 2; }));
}

TEST_F(VerificationTest, TakesTheScreenThatTheHostShows) {
  gtk_window_set_child(host, screenWidgetNew());
  const auto own = make<UIWindow>();
  own->setRootViewController(make<UIViewController>());
  own->makeKeyAndVisible();
  verify(host, completion());
  ASSERT_TRUE(waitUntil([] { return shell().isViewLoaded() && shell().view()->window(); }));
  EXPECT_EQ(windows().size(), 1U);
  shell().cancelAction();
  ASSERT_TRUE(waitUntil([this] { return !told.empty(); }));
  EXPECT_EQ(told, Texts{"cancelled"});
  EXPECT_TRUE(own->isKeyWindow()) << "the host's next run needs it";

  verify(host, completion());
  gtk_window_set_child(host, nullptr);
  ASSERT_TRUE(waitUntil([this] { return told.size() == 2; })) << "goes with the widget";
}

TEST_F(VerificationTest, SaysWhyItCanNotStart) {
  ASSERT_TRUE(open());
  verify(host, completion());
  ASSERT_TRUE(waitUntil([this] { return !told.empty(); }));
  EXPECT_EQ(told.back(), "failed: another verification is under way");
  gtk_window_destroy(flow());
  ASSERT_TRUE(waitUntil([this] { return told.size() == 2; }));

  ZVKYCHelper::instance().clinetId = std::nullopt;
  click();
  ASSERT_TRUE(waitUntil([this] { return told.size() == 3; }));
  EXPECT_EQ(told.back(), "failed: no client id is registered");
  EXPECT_EQ(windows().size(), 1U);
  EXPECT_EQ(delegate->calls, Texts{"cancelled"}) << "of the first alone";
}

} // namespace
} // namespace zuvi::test
