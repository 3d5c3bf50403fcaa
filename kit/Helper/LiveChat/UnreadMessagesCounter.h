#pragma once

#include <optional>
#include <set>
#include <string>

namespace zuvi {

/// Which messages were received and not yet seen, and which were seen, so that a message counts
/// once also when the page sends it again. Outlives the process.
class UnreadMessagesCounter {
public:
  static int counterValue();
  /// Everything received counts as seen.
  static void resetCounter();
  /// True when the message is new.
  static bool handleUnreadMessage(const std::string& id);

private:
  static constexpr const char* unreadMessagesKey = "LiveChat_unreadMessagesKey";
  static constexpr const char* readMessagesKey = "LiveChat_readMessagesKey";

  /// Whether the stored list holds the id; absent when there is no list of texts.
  static std::optional<bool> find(const std::string& key, const std::string& id);
  /// A value of another type reads as the empty set.
  static std::set<std::string> currentSet(const std::string& key);
  /// An absent set removes the key.
  static void persist(const std::optional<std::set<std::string>>& set, const std::string& key);
};

} // namespace zuvi
