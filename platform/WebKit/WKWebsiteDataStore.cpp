#include "platform/WebKit/WKWebsiteDataStore.h"

#include "platform/WebKit/WebEngine.h"

#include <utility>

namespace zuvi {

WKWebsiteDataStore& WKWebsiteDataStore::defaultStore() {
  static WKWebsiteDataStore store;
  return store;
}

void WKWebsiteDataStore::fetchDataRecords(
    std::function<void(std::vector<WKWebsiteDataRecord>)> completion) {
  WebEngine::installed().fetchDataRecords(std::move(completion));
}

void WKWebsiteDataStore::removeData(std::vector<WKWebsiteDataRecord> records,
                                    std::function<void()> completion) {
  WebEngine::installed().removeData(std::move(records), std::move(completion));
}

} // namespace zuvi
