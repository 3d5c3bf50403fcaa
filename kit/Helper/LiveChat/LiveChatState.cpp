#include "kit/Helper/LiveChat/LiveChatState.h"

#include "platform/Foundation/UserDefaults.h"

namespace zuvi {

bool LiveChatState::isChatOpenedBefore() {
  const Value stored = UserDefaults::standard().value(chatOpenedKey);
  return stored.boolean() && *stored.boolean();
}

void LiveChatState::markChatAsOpened() {
  if (isChatOpenedBefore()) return;
  UserDefaults::standard().set(chatOpenedKey, true);
  UserDefaults::standard().synchronize();
}

} // namespace zuvi
