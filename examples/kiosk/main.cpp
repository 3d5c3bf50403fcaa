// A kiosk: the whole screen, one person after another. Who walks away leaves nothing behind: after
// --idle-seconds (90) without a touch the start screen is back.

#include "../CommandLine.h"

#include <ZuviSDK/ZuviUI.h>

using namespace zuvi;

namespace {

class Kiosk final : public UIViewController, public ZVKYCDelegate {
public:
  explicit Kiosk(double idleSeconds) : idleSeconds_(idleSeconds) {}

  void loadView() override {
    const auto root = make<UIView>();
    root->setBackgroundColor(UIColor::white());
    text_ = make<UILabel>();
    text_->setFont(UIFont::system(28, FontWeight::Bold));
    text_->setTextAlignment(NSTextAlignment::Center);
    button_ = make<ZVKYCButton>();
    root->addSubview(text_);
    root->addSubview(button_);
    setView(root);
    welcome();
  }

  void viewDidLayoutSubviews() override {
    const CGRect all = view()->bounds();
    text_->setFrame({0, all.height / 3, all.width, 40});
    button_->setFrame({(all.width - 280) / 2, all.height - 90, 280, 60});
  }

  /// From anywhere on the screen.
  void touched() {
    idle_ = Timer::scheduled(idleSeconds_, Timer::Repeats::No, [this] { startOver(); });
  }

  void zvKYCLoginSuccess(const std::string& identity) override {
    print("verified: " + identity);
    text_->setText("Thank you. Please go in.");
    calls_.perform("welcome", 5, [this] { welcome(); });
  }
  void zvKYCLoginCancelled() override { print("cancelled"); }

private:
  void welcome() { text_->setText("Welcome"); }

  void startOver() {
    if (!presentedViewController()) return;
    LiveChat::dismissChat(false);
    LiveChat::clearSession();
    dismiss(false); // the flow, wherever it was; nobody is told
    print("back at the start");
  }

  const double idleSeconds_;
  std::shared_ptr<UILabel> text_;
  std::shared_ptr<ZVKYCButton> button_;
  std::shared_ptr<Timer> idle_;
  DelayedCalls calls_;
};

/// Tells the kiosk of everything that the window hears, before anyone else does.
void watch(GtkWidget* window, Kiosk& kiosk) {
  GtkEventController* events = gtk_event_controller_legacy_new();
  gtk_event_controller_set_propagation_phase(events, GTK_PHASE_CAPTURE);
  g_signal_connect(events, "event", G_CALLBACK(+[](GtkEventController*, GdkEvent*, gpointer data) {
                     static_cast<Kiosk*>(data)->touched();
                     return GDK_EVENT_PROPAGATE;
                   }),
                   &kiosk);
  gtk_widget_add_controller(window, events);
}

} // namespace

int main(int argc, char** argv) {
  gtk_init();
  GtkWidget* window = gtk_window_new();
  gtk_window_set_title(GTK_WINDOW(window), "Kiosk");
  gtk_window_set_decorated(GTK_WINDOW(window), FALSE);
  gtk_window_set_default_size(GTK_WINDOW(window), 600, 960);
  gtk_window_set_child(GTK_WINDOW(window), screenWidgetNew());
  gtk_window_fullscreen(GTK_WINDOW(window));

  const auto kiosk = make<Kiosk>(std::atof(option(argc, argv, "--idle-seconds", "90")));
  ZVKYC::instance().delegate = kiosk;
  ZVKYC::registerWithClientId(readCommandLine(argc, argv));
  const auto surface = make<UIWindow>();
  surface->setRootViewController(kiosk);
  surface->makeKeyAndVisible();
  watch(window, *kiosk);
  g_signal_connect(window, "destroy", G_CALLBACK(+[] { MainLoop::stop(); }), nullptr);
  gtk_window_present(GTK_WINDOW(window));
  MainLoop::run();
}
