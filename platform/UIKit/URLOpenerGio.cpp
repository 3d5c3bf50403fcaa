#include "platform/UIKit/URLOpener.h"

#include "platform/UIKit/UIApplication.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

namespace zuvi {

namespace {

/// A desktop has no settings page of one program; the one on privacy holds the camera switch.
bool openSettings() {
  for (const char* name : {"gnome-camera-panel.desktop", "gnome-privacy-panel.desktop",
                           "org.gnome.Settings.desktop", "systemsettings.desktop"}) {
    GDesktopAppInfo* settings = g_desktop_app_info_new(name);
    if (!settings) continue;
    const bool launched = g_app_info_launch(G_APP_INFO(settings), nullptr, nullptr, nullptr);
    g_object_unref(settings);
    if (launched) return true;
  }
  return false;
}

} // namespace

bool openWithDesktop(const URL& url) {
  if (url.absoluteString() == UIApplicationOpenSettingsURLString) return openSettings();
  return g_app_info_launch_default_for_uri(url.absoluteString().c_str(), nullptr, nullptr);
}

} // namespace zuvi
