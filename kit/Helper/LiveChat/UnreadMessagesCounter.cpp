#include "kit/Helper/LiveChat/UnreadMessagesCounter.h"

#include "platform/Foundation/UserDefaults.h"

namespace zuvi {

namespace {

// Far more than people write, so that a page which makes up ids can't fill memory and disk.
constexpr std::size_t mostIds = 10'000; // in each set
constexpr std::size_t longestId = 256;  // bytes

} // namespace

std::optional<bool> UnreadMessagesCounter::find(const std::string& key, const std::string& id) {
  const Value::List* list = UserDefaults::standard().value(key).list();
  if (!list) return std::nullopt;
  bool found = false;
  for (const Value& element : *list) {
    const std::string* text = element.string();
    if (!text) return std::nullopt;
    found = found || *text == id;
  }
  return found;
}

std::set<std::string> UnreadMessagesCounter::currentSet(const std::string& key) {
  std::set<std::string> found;
  if (const Value::List* list = UserDefaults::standard().value(key).list())
    for (const Value& element : *list) {
      if (!element.string()) return {};
      found.insert(*element.string());
    }
  return found;
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
  // A page may send thousands: do not rebuild and store a whole set for each.
  const std::optional<bool> unread = find(unreadMessagesKey, id);
  if (unread.value_or(false) || find(readMessagesKey, id).value_or(false)) return false;
  if (id.size() > longestId ||
      (unread && UserDefaults::standard().value(unreadMessagesKey).list()->size() >= mostIds))
    return false;
  if (!unread || !UserDefaults::standard().append(unreadMessagesKey, id))
    persist(std::set<std::string>{id}, unreadMessagesKey);
  return true;
}

void UnreadMessagesCounter::resetCounter() {
  const std::set<std::string> unread = currentSet(unreadMessagesKey);
  std::set<std::string> read = currentSet(readMessagesKey);
  while (!read.empty() && read.size() + unread.size() > mostIds)
    read.erase(read.begin());
  read.insert(unread.begin(), unread.end());
  persist(read, readMessagesKey);
  persist(std::nullopt, unreadMessagesKey);
}

} // namespace zuvi
