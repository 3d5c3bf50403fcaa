#pragma once

#include <optional>
#include <set>
#include <string>

namespace zuvi {

/// The ids of unread and of read messages. A message counts once, even if the page sends it again.
/// Stored in the defaults, so that they outlive the process.
class UnreadMessagesCounter {
public:
  static int counterValue();
  /// Marks all received messages as read.
  static void resetCounter();
  /// True when the message is new.
  static bool handleUnreadMessage(const std::string& id);

private:
  static constexpr const char* unreadMessagesKey = "LiveChat_unreadMessagesKey";
  static constexpr const char* readMessagesKey = "LiveChat_readMessagesKey";

  /// Whether the stored list contains the id; absent when there is no list of texts.
  static std::optional<bool> find(const std::string& key, const std::string& id);
  /// A value of another type gives the empty set.
  static std::set<std::string> currentSet(const std::string& key);
  /// An absent set removes the key.
  static void persist(const std::optional<std::set<std::string>>& set, const std::string& key);
};

} // namespace zuvi
