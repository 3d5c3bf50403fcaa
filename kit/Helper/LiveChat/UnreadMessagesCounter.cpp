#include "kit/Helper/LiveChat/UnreadMessagesCounter.h"

#include "platform/Foundation/UserDefaults.h"

#include <algorithm>

namespace zuvi {

namespace {

/// Null when the value is no list of texts.
const Value::List* storedTexts(const std::string& key) {
  const Value::List* list = UserDefaults::standard().value(key).list();
  const auto isText = [](const Value& element) { return element.string() != nullptr; };
  return list && std::all_of(list->begin(), list->end(), isText) ? list : nullptr;
}

} // namespace

std::set<std::string> UnreadMessagesCounter::currentSet(const std::string& key) {
  std::set<std::string> found;
  if (const Value::List* stored = storedTexts(key))
    for (const Value& id : *stored)
      found.insert(*id.string());
  return found;
}

bool UnreadMessagesCounter::contains(const std::string& key, const std::string& id) {
  const Value::List* stored = storedTexts(key);
  return stored && std::any_of(stored->begin(), stored->end(),
                               [&id](const Value& element) { return *element.string() == id; });
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
  if (contains(unreadMessagesKey, id) || contains(readMessagesKey, id)) return false;
  // A page may send thousands: no set is built and stored anew for each.
  if (!storedTexts(unreadMessagesKey) || !UserDefaults::standard().append(unreadMessagesKey, id))
    persist(std::set<std::string>{id}, unreadMessagesKey);
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
