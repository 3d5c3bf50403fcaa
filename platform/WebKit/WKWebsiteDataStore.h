#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zuvi {

/// What one site left on this machine: cookies, stores, caches.
struct WKWebsiteDataRecord {
  std::string displayName; ///< the site's registrable domain
};

/// What sites left on this machine. Completions come once, on the main queue.
class WKWebsiteDataStore {
public:
  /// The one that all web views use.
  static WKWebsiteDataStore& defaultStore();
  /// Data of all types.
  void fetchDataRecords(std::function<void(std::vector<WKWebsiteDataRecord>)> completion);
  /// Data of all types of those sites, by name; a name that is not there is ignored.
  void removeData(std::vector<WKWebsiteDataRecord> records, std::function<void()> completion);
};

} // namespace zuvi
