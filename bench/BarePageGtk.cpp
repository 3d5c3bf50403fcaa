// The baseline of chat_bench: the toolkit's own web view in a window.

#include "bench/BarePage.h"
#include "bench/ChatScripts.h"
#include "bench/Measure.h"

#include <webkit/webkit.h>

#include <functional>

using namespace zuvi::bench;

namespace {

struct Browser {
  WebKitNetworkSession* session = nullptr;
  bool finished = false;
  int messages = 0;
};

void onLoad(WebKitWebView*, WebKitLoadEvent event, Browser* browser) {
  // The engine also finishes the attempt that an untrusted certificate ended.
  browser->finished = event == WEBKIT_LOAD_FINISHED;
}

/// The sandbox has an authority of its own.
gboolean onUntrusted(WebKitWebView* page, const char* address, GTlsCertificate* certificate,
                     GTlsCertificateFlags, Browser* browser) {
  webkit_network_session_allow_tls_certificate_for_host(browser->session, certificate, "127.0.0.1");
  webkit_web_view_load_uri(page, address);
  return TRUE;
}

void onMessage(WebKitUserContentManager*, JSCValue*, Browser* browser) {
  browser->messages++;
}

void waitFor(const std::function<bool()>& holds) {
  while (!holds())
    g_main_context_iteration(nullptr, TRUE);
}

void run(WebKitWebView* page, const std::string& script) {
  webkit_web_view_evaluate_javascript(page, script.data(), gssize(script.size()), nullptr, nullptr,
                                      nullptr, nullptr, nullptr);
}

int show(GtkWindow* window, const char* address, double start) {
  const double loaded = wallSeconds();
  Browser browser;
  const std::string home = g_get_home_dir();
  browser.session = webkit_network_session_new((home + "/data").c_str(), (home + "/cache").c_str());
  WebKitUserContentManager* contents = webkit_user_content_manager_new();
  g_signal_connect(contents, "script-message-received::iosMobileWidget", G_CALLBACK(onMessage),
                   &browser);
  webkit_user_content_manager_register_script_message_handler(contents, "iosMobileWidget", nullptr);
  WebKitSettings* settings = webkit_settings_new();
  // As the chat's page, which is clear until it has drawn.
  webkit_settings_set_hardware_acceleration_policy(settings,
                                                   WEBKIT_HARDWARE_ACCELERATION_POLICY_ALWAYS);
  auto* page = WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "network-session",
                                            browser.session, "user-content-manager", contents,
                                            "settings", settings, nullptr));
  g_signal_connect(page, "load-changed", G_CALLBACK(onLoad), &browser);
  g_signal_connect(page, "load-failed-with-tls-errors", G_CALLBACK(onUntrusted), &browser);
  gtk_window_set_child(window, GTK_WIDGET(page));
  webkit_web_view_load_uri(page, address);
  waitFor([&] { return browser.finished && webkit_web_view_get_title(page); });
  const double finish = wallSeconds();
  std::printf("opening %f\nopening-loaded %f\n", finish - start, finish - loaded);

  for (int i = 0; i < pings; i++) {
    const double asked = wallSeconds();
    run(page, postScript(i, i + 1));
    waitFor([&] { return browser.messages > i; });
    std::printf("ping %f\n", wallSeconds() - asked);
  }
  const double asked = wallSeconds();
  run(page, postScript(pings, pings + flood));
  waitFor([&] { return browser.messages == pings + flood; });
  std::printf("flood %f\n", wallSeconds() - asked);
  return 0;
}

} // namespace

extern "C" G_MODULE_EXPORT int bareBrowser(GtkWindow* window, const char* address, double start) {
  return show(window, address, start);
}
