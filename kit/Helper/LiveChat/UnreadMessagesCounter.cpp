#include "kit/Helper/LiveChat/UnreadMessagesCounter.h"

#include "platform/Foundation/UserDefaults.h"

namespace zuvi {

std::set<std::string> UnreadMessagesCounter::currentSet(const std::string& key) {
  const auto stored = UserDefaults::standard().value(key).listOfStrings();
  return stored ? std::set<std::string>(stored->begin(), stored->end()) : std::set<std::string>();
}

void UnreadMessagesCounter::persist(const std::optional<std::set<std::string>>& set,
                                    const std::string& key) {
  Value stored;
  if (set) stored = Value::List(set->begin(), set->end());
  UserDefaults::standard().set(key, stored);
}

int UnreadMessagesCounter::counterValue() {
  return static_cast<int>(currentSet(unreadMessagesKey).size());
}

bool UnreadMessagesCounter::handleUnreadMessage(const std::string& id) {
  std::set<std::string> unread = currentSet(unreadMessagesKey);
  const std::set<std::string> read = currentSet(readMessagesKey);
  if (unread.contains(id) || read.contains(id)) return false;
  unread.insert(id);
  persist(unread, unreadMessagesKey);
  return true;
}

void UnreadMessagesCounter::resetCounter() {
  const std::set<std::string> unread = currentSet(unreadMessagesKey);
  std::set<std::string> read = currentSet(readMessagesKey);
  read.insert(unread.begin(), unread.end());
  persist(read, readMessagesKey);
  persist(std::nullopt, unreadMessagesKey);
}

} // namespace zuvi
