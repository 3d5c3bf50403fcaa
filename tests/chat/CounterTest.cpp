// What outlives the process: messages seen and not seen, and whether the chat was ever opened.

#include "kit/Helper/LiveChat/LiveChatState.h"
#include "kit/Helper/LiveChat/UnreadMessagesCounter.h"
#include "tests/chat/ChatTest.h"

namespace zuvi::test {
namespace {

using Counter = UnreadMessagesCounter;
constexpr const char* unreadKey = "LiveChat_unreadMessagesKey";
constexpr const char* readKey = "LiveChat_readMessagesKey";

TEST_F(ChatTest, CountersHoldOverDamagedDefaults) {
  UserDefaults& defaults = UserDefaults::standard();
  for (const Value& damaged :
       {Value(), Value(7), Value(Value::List{"a", 1}), Value(Value::Dictionary{{"a", "a"}})}) {
    for (const char* key : {unreadKey, readKey, "LiveChat_chatOpenedKey"})
      defaults.set(key, damaged);
    const std::string what = damaged.description();
    EXPECT_FALSE(LiveChatState::isChatOpenedBefore()) << what;
    EXPECT_EQ(Counter::counterValue(), 0) << what;
    EXPECT_TRUE(Counter::handleUnreadMessage("a")) << what;
    EXPECT_FALSE(Counter::handleUnreadMessage("a")) << what;
    EXPECT_EQ(defaults.value(unreadKey), Value(Value::List{"a"})) << what;
    Counter::resetCounter();
    EXPECT_TRUE(defaults.value(unreadKey).isNull()) << "an empty set is no key";
    EXPECT_FALSE(Counter::handleUnreadMessage("a")) << what;
    EXPECT_TRUE(Counter::handleUnreadMessage("c") && Counter::handleUnreadMessage("b"));
    EXPECT_EQ(Counter::counterValue(), 2);
    Counter::resetCounter();
    EXPECT_EQ(defaults.value(readKey), Value(Value::List{"a", "b", "c"})) << "it only grows";
    LiveChatState::markChatAsOpened();
    EXPECT_TRUE(LiveChatState::isChatOpenedBefore()) << what;
  }
}

} // namespace
} // namespace zuvi::test
