// The smallest host: one window, one button.

#include "../CommandLine.h"

#include <ZuviSDK/UIKit/UIViewController.h>
#include <ZuviSDK/UIKit/UIWindow.h>

using namespace zuvi;

struct Host : ZVKYCDelegate {
  void zvKYCLoginSuccess(const std::string& id) override { print("verified: " + id); }
  void zvKYCLoginCancelled() override { print("cancelled"); }
};

int main(int argc, char** argv) {
  gtk_init();
  GtkWidget* window = gtk_window_new();
  gtk_window_set_title(GTK_WINDOW(window), "Minimal");
  gtk_window_set_default_size(GTK_WINDOW(window), 375, 812);
  gtk_window_set_child(GTK_WINDOW(window), screenWidgetNew());
  const auto host = std::make_shared<Host>();
  ZVKYC::instance().delegate = host;
  ZVKYC::registerWithClientId(readCommandLine(argc, argv));
  const auto screen = make<UIViewController>();
  screen->view()->addSubview(make<ZVKYCButton>(CGRect{47, 722, 280, 60}));
  const auto surface = make<UIWindow>();
  surface->setRootViewController(screen);
  surface->makeKeyAndVisible();
  g_signal_connect(window, "destroy", G_CALLBACK(+[] { MainLoop::stop(); }), nullptr);
  gtk_window_present(GTK_WINDOW(window));
  MainLoop::run();
}
