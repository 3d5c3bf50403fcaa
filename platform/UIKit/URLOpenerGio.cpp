#include "platform/UIKit/URLOpener.h"

#include <ZuviSDK/UIKit/UIApplication.h>

#include <filesystem>

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

namespace zuvi {

namespace {

/// A desktop has no settings page of one program; the one on privacy holds the camera switch.
/// Whether one of these programs is there and `use` was content with it.
template <class Use> bool withSettings(Use use) {
  for (const char* name : {"gnome-camera-panel.desktop", "gnome-privacy-panel.desktop",
                           "org.gnome.Settings.desktop", "systemsettings.desktop"}) {
    GDesktopAppInfo* settings = g_desktop_app_info_new(name);
    if (!settings) continue;
    const bool used = use(G_APP_INFO(settings));
    g_object_unref(settings);
    if (used) return true;
  }
  return false;
}

/// In Flatpak and Snap the desktop outside opens what it is asked to; nobody inside knows its
/// programs.
bool isBoxed() {
  // The browser engine's own sandbox leaves an empty one on the machine when root runs it.
  std::error_code none;
  const auto size = std::filesystem::file_size("/.flatpak-info", none);
  return (!none && size > 0) || g_getenv("SNAP_NAME");
}

bool isSettings(const URL& url) {
  return url.absoluteString() == UIApplicationOpenSettingsURLString;
}

} // namespace

/// Finding and starting a program may take a bus, which may be slow or never answer.
bool openWithDesktop(const URL& url) {
  if (isSettings(url))
    return withSettings([](GAppInfo* app) {
      g_app_info_launch_uris_async(app, nullptr, nullptr, nullptr, nullptr, nullptr);
      return true;
    });
  g_app_info_launch_default_for_uri_async(url.absoluteString().c_str(), nullptr, nullptr, nullptr,
                                          nullptr);
  return isBoxed() || desktopCanOpen(url);
}

bool desktopCanOpen(const URL& url) {
  if (isSettings(url)) return withSettings([](GAppInfo*) { return true; });
  GAppInfo* app = g_app_info_get_default_for_uri_scheme(url.scheme().c_str());
  if (!app) return false;
  g_object_unref(app);
  return true;
}

} // namespace zuvi
