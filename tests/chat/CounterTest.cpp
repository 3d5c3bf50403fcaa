// What outlives the process: messages seen and not seen, and whether the chat was ever opened.

#include "kit/Helper/LiveChat/LiveChatState.h"
#include "kit/Helper/LiveChat/UnreadMessagesCounter.h"
#include "tests/chat/ChatTest.h"

namespace zuvi::test {
namespace {

using Counter = UnreadMessagesCounter;
constexpr const char* unreadKey = "LiveChat_unreadMessagesKey";
constexpr const char* readKey = "LiveChat_readMessagesKey";

class CounterTest : public ChatTest {
protected:
  static Value stored(const char* key) { return UserDefaults::standard().value(key); }
};

TEST_F(CounterTest, CountsAMessageOnce) {
  Counter::resetCounter();
  EXPECT_TRUE(stored(unreadKey).isNull());
  EXPECT_EQ(stored(readKey), Value(Value::List{}));
  EXPECT_TRUE(Counter::handleUnreadMessage("a"));
  EXPECT_FALSE(Counter::handleUnreadMessage("a"));
  EXPECT_TRUE(Counter::handleUnreadMessage(""));
  EXPECT_EQ(Counter::counterValue(), 2);
  EXPECT_TRUE(stored(readKey).list()->empty()) << "not seen yet";
  Counter::resetCounter();
  EXPECT_EQ(Counter::counterValue(), 0);
  EXPECT_TRUE(stored(unreadKey).isNull()) << "an empty set is no key";
  EXPECT_FALSE(Counter::handleUnreadMessage("a"));
  EXPECT_TRUE(Counter::handleUnreadMessage("b"));
  Counter::resetCounter();
  EXPECT_EQ(stored(readKey), Value(Value::List{"", "a", "b"})) << "it only grows";
}

TEST_F(CounterTest, DamagedValuesReadAsEmptyAndAreReplaced) {
  for (const Value& damaged : {Value(7), Value("a"), Value(Value::List{"a", 1}), Value(true),
                               Value(Value::Dictionary{{"a", "a"}})}) {
    for (const char* key : {unreadKey, readKey, "LiveChat_chatOpenedKey"})
      UserDefaults::standard().set(key, damaged);
    const std::string what = damaged.description();
    EXPECT_EQ(LiveChatState::isChatOpenedBefore(), damaged == Value(true)) << what;
    EXPECT_EQ(Counter::counterValue(), 0) << what;
    EXPECT_TRUE(Counter::handleUnreadMessage("a")) << what;
    EXPECT_EQ(stored(unreadKey), Value(Value::List{"a"})) << what;
    Counter::resetCounter();
    EXPECT_EQ(stored(readKey), Value(Value::List{"a"})) << what;
    LiveChatState::markChatAsOpened();
    EXPECT_TRUE(LiveChatState::isChatOpenedBefore()) << what;
  }
}

} // namespace
} // namespace zuvi::test
