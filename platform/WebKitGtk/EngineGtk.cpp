#include "platform/WebKitGtk/EngineGtk.h"

#include "platform/WebKitGtk/PageGtk.h"

#include <algorithm>

#include <glib/gstdio.h>
#include <unistd.h>

namespace zuvi {

namespace {

constexpr WebKitWebsiteDataTypes allTypes = WEBKIT_WEBSITE_DATA_ALL;

gboolean cancelDownload(WebKitNetworkSession*, WebKitDownload* download, gpointer) {
  webkit_download_cancel(download);
  return TRUE;
}

struct RecordListFree {
  void operator()(GList* records) const {
    g_list_free_full(records, [](gpointer record) {
      webkit_website_data_unref(static_cast<WebKitWebsiteData*>(record));
    });
  }
};
using RecordList = std::unique_ptr<GList, RecordListFree>;

using Fetched = std::function<void(RecordList)>;

void fetch(WebKitWebsiteDataManager* manager, Fetched done) {
  webkit_website_data_manager_fetch(
      manager, allTypes, nullptr,
      [](GObject* source, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Fetched> fetched(static_cast<Fetched*>(data));
        (*fetched)(RecordList(webkit_website_data_manager_fetch_finish(
            WEBKIT_WEBSITE_DATA_MANAGER(source), result, nullptr)));
      },
      new Fetched(std::move(done)));
}

/// For this program and this user alone; null where that can't be had.
char* privateFolder(const char* below, const std::string& program) {
  TextPointer folder(g_build_filename(below, program.c_str(), "zuvisdk-chat", nullptr));
  const bool had = g_mkdir_with_parents(folder.get(), 0700) == 0 &&
                   g_chmod(folder.get(), 0700) == 0 && access(folder.get(), W_OK) == 0;
  return had ? folder.release() : nullptr;
}

std::string nameOf(const GList* record) {
  const char* name = webkit_website_data_get_name(static_cast<WebKitWebsiteData*>(record->data));
  return name ? name : "";
}

} // namespace

Engine::Engine(WebModuleHost& host) : host_(host), context_(webkit_web_context_new()) {
  const std::string program = host.programName();
  const TextPointer folder(privateFolder(g_get_user_data_dir(), program));
  const TextPointer caches(privateFolder(g_get_user_cache_dir(), program));
  // Where nothing can be kept the chat forgets, but runs.
  const bool keeps = folder && caches;
  session_.reset(keeps ? webkit_network_session_new(folder.get(), caches.get())
                       : webkit_network_session_new_ephemeral());
  g_signal_connect(session_.get(), "download-started", G_CALLBACK(cancelDownload), nullptr);
  WebKitCookieManager* jar = webkit_network_session_get_cookie_manager(session_.get());
  const TextPointer cookies(g_build_filename(keeps ? folder.get() : "", "cookies.sqlite", nullptr));
  if (keeps)
    webkit_cookie_manager_set_persistent_storage(jar, cookies.get(),
                                                 WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
  // One page, visited once: what stays in memory for going back is of no use.
  webkit_web_context_set_cache_model(context_.get(), WEBKIT_CACHE_MODEL_DOCUMENT_BROWSER);
  // Starts the network's process, which takes its settings with it from the environment now.
  webkit_network_session_prefetch_dns(session_.get(), "localhost");
  // The engine's start takes the toolkit's drawing context off this thread and does not tell.
  gdk_gl_context_clear_current();
}

WebKitWebsiteDataManager* Engine::data() {
  return webkit_network_session_get_website_data_manager(session_.get());
}

std::unique_ptr<WebPage> Engine::makePage(UIView& view, WebPageClient& client,
                                          const WKWebViewConfiguration& configuration,
                                          WebPage* opener) {
  return std::make_unique<Page>(*this, view, client, configuration, dynamic_cast<Page*>(opener));
}

void Engine::fetchDataRecords(std::function<void(std::vector<WKWebsiteDataRecord>)> done) {
  fetch(data(), [done = std::move(done)](const RecordList& found) {
    std::vector<WKWebsiteDataRecord> records;
    for (const GList* i = found.get(); i; i = i->next)
      records.push_back({nameOf(i)});
    done(std::move(records));
  });
}

void Engine::removeData(std::vector<WKWebsiteDataRecord> records, std::function<void()> done) {
  // By name, as what was fetched may have changed since.
  fetch(data(),
        [this, records = std::move(records), done = std::move(done)](const RecordList& all) {
          GList* chosen = nullptr;
          for (GList* i = all.get(); i; i = i->next)
            if (std::any_of(records.begin(), records.end(), [name = nameOf(i)](const auto& record) {
                  return record.displayName == name;
                }))
              chosen = g_list_prepend(chosen, i->data);
          if (!chosen) return done();
          using Done = std::function<void()>;
          webkit_website_data_manager_remove(
              data(), allTypes, chosen, nullptr,
              [](GObject* source, GAsyncResult* result, gpointer context) {
                const std::unique_ptr<Done> removed(static_cast<Done*>(context));
                webkit_website_data_manager_remove_finish(WEBKIT_WEBSITE_DATA_MANAGER(source),
                                                          result, nullptr);
                (*removed)();
              },
              new Done(done));
          g_list_free(chosen);
        });
}

} // namespace zuvi

extern "C" G_MODULE_EXPORT zuvi::WebEngine* zuviWebEngine(zuvi::WebModuleHost& host) {
  // Lives as long as the process, as the engine's own processes do.
  static auto* engine = new zuvi::Engine(host);
  return engine;
}
