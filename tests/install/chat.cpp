// Opens the support chat, whose browser engine is loaded from where the kit is installed, in a
// program that has types of its own under plain names.

#include <ZuviSDK/ZuviSDK.h>
#include <ZuviSDK/ZuviUI.h>

using namespace zuvi;

int main() {
  gtk_init();
  for (const char* name : {"ScreenWidget", "ElementWidget", "ClickableWidget", "PageWidget"})
    g_type_register_static_simple(GTK_TYPE_BOX, name, sizeof(GtkBoxClass), nullptr, sizeof(GtkBox),
                                  nullptr, GTypeFlags(0));
  GtkWidget* window = gtk_window_new();
  gtk_window_set_child(GTK_WINDOW(window), screenWidgetNew());
  gtk_window_present(GTK_WINDOW(window));
  const auto surface = make<UIWindow>();
  surface->setRootViewController(make<UIViewController>());
  surface->makeKeyAndVisible();
  ZVEndpoints::chatTemplateURL() = "https://127.0.0.1:1/";
  LiveChat::licenseId = "1";
  LiveChat::presentChat(false);
  LiveChat::clearSession(); // asks the engine what it has stored
  // Known from when the engine's module was loaded.
  const auto loaded = Timer::scheduled(0.1, Timer::Repeats::Yes, [] {
    if (LiveChat::isSandboxed()) MainLoop::stop();
  });
  const auto late = Timer::scheduled(60, Timer::Repeats::No, &MainLoop::stop);
  MainLoop::run();
  return LiveChat::isSandboxed() ? 0 : 1;
}
