#include "platform/UIKit/URLOpener.h"

#include "platform/UIKit/UIApplication.h"

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

bool isSettings(const URL& url) {
  return url.absoluteString() == UIApplicationOpenSettingsURLString;
}

} // namespace

bool openWithDesktop(const URL& url) {
  if (isSettings(url))
    return withSettings(
        [](GAppInfo* app) { return g_app_info_launch(app, nullptr, nullptr, nullptr) != 0; });
  return g_app_info_launch_default_for_uri(url.absoluteString().c_str(), nullptr, nullptr);
}

bool desktopCanOpen(const URL& url) {
  if (isSettings(url)) return withSettings([](GAppInfo*) { return true; });
  GAppInfo* app = g_app_info_get_default_for_uri_scheme(url.scheme().c_str());
  if (!app) return false;
  g_object_unref(app);
  return true;
}

} // namespace zuvi
