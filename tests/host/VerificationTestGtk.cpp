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
  /// What a widget draws, as text.
  static std::string pictureOf(GtkWidget* widget) {
    GdkPaintable* paintable = gtk_widget_paintable_new(widget);
    GskRenderNode* node = nullptr;
    EXPECT_TRUE(waitUntil([&] {
      GtkSnapshot* snapshot = gtk_snapshot_new();
      gdk_paintable_snapshot(paintable, snapshot, 280, 60);
      return (node = gtk_snapshot_free_to_node(snapshot)) != nullptr;
    }));
    GBytes* bytes = gsk_render_node_serialize(node);
    std::string text(static_cast<const char*>(g_bytes_get_data(bytes, nullptr)),
                     g_bytes_get_size(bytes));
    g_bytes_unref(bytes);
    gsk_render_node_unref(node);
    g_object_unref(paintable);
    return text;
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

TEST_F(VerificationTest, TheNextRunHasAWindowThoughTheToolkitHoldsTheLastOnesScreen) {
  ASSERT_TRUE(open());
  GtkWidget* held = gtk_window_get_child(flow()); // as by an event that is on its way
  g_object_ref(held);
  shell().cancelAction();
  ASSERT_TRUE(waitUntil([this] { return !told.empty(); }));
  ASSERT_TRUE(open());
  EXPECT_TRUE(flow());
  g_object_unref(held);
  EXPECT_EQ(told, Texts{"cancelled"});
  g_object_ref(held = gtk_window_get_child(flow()));
  gtk_window_destroy(flow());
  ASSERT_TRUE(waitUntil([this] { return told.size() == 2; }));
  ASSERT_TRUE(open());
  EXPECT_TRUE(flow());
  g_object_unref(held);
  gtk_window_destroy(flow());
  ASSERT_TRUE(waitUntil([this] { return told.size() == 3; }));
}

TEST_F(VerificationTest, BelongsToTheProgramAndIsModalWhereItsParentIs) {
  auto* program = gtk_application_new(nullptr, G_APPLICATION_NON_UNIQUE);
  g_application_set_default(G_APPLICATION(program));
  g_application_register(G_APPLICATION(program), nullptr, nullptr);
  gtk_window_set_modal(host, TRUE);
  ASSERT_TRUE(open());
  EXPECT_TRUE(gtk_window_get_modal(flow())) << "else the parent takes its clicks";
  EXPECT_EQ(gtk_window_get_application(flow()), program) << "which ends with its last window";
  gtk_window_destroy(flow());
  ASSERT_TRUE(waitUntil([this] { return !told.empty(); }));
  g_application_set_default(nullptr);
  g_object_unref(program);
}

TEST_F(VerificationTest, HasTheColoursAndTheTextSizeThatTheDesktopAsksFor) {
  GtkSettings* settings = gtk_settings_get_default();
  for (const bool dark : {true, false}) {
    g_object_set(settings, "gtk-application-prefer-dark-theme", gboolean(dark), nullptr);
    ASSERT_TRUE(open());
    EXPECT_EQ(shell().view()->backgroundColor() == UIColor::white(), !dark);
    told.clear();
    gtk_window_destroy(flow());
    ASSERT_TRUE(waitUntil([this] { return !told.empty(); }));
  }
  int resolution = 0;
  g_object_get(settings, "gtk-xft-dpi", &resolution, nullptr);
  const auto usual = pictureOf(button);
  ASSERT_GT(usual.size(), 1000U);
  EXPECT_EQ(pictureOf(button), usual);
  g_object_set(settings, "gtk-xft-dpi", 144 * 1024, nullptr);
  EXPECT_NE(pictureOf(button), usual);
  g_object_set(settings, "gtk-xft-dpi", resolution, nullptr);
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
