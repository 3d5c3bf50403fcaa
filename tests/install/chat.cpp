// Loads the support chat's browser engine from where the kit is installed.

#include <ZuviSDK/ZuviSDK.h>

using namespace zuvi;

int main() {
  gtk_init();
  GtkWidget* window = gtk_window_new();
  gtk_window_set_child(GTK_WINDOW(window), screenWidgetNew());
  gtk_window_present(GTK_WINDOW(window));
  bool loaded = false;
  if (WKWebView::isAvailable())
    WKWebsiteDataStore::defaultStore().fetchDataRecords([&](const auto&) {
      loaded = WKWebView::isAvailable(); // no longer so where the module could not be loaded
      MainLoop::stop();
    });
  else
    MainLoop::attach();
  if (WKWebView::isAvailable()) MainLoop::run();
  return loaded ? 0 : 1;
}
