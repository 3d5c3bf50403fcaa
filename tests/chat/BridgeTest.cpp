// What the page says to the kit and the kit to the page.

#include <ZuviSDK/LiveChatMessage.h>
#include "kit/Helper/LiveChat/WebViewBridge.h"
#include "tests/chat/ChatTest.h"

namespace zuvi::test {
namespace {

struct Hearer final : WebViewBridgeDelegate {
  std::vector<LiveChatMessage> messages;
  std::vector<std::string> events;
  std::function<void()> onMessage;
  void received(const LiveChatMessage& message) override {
    messages.push_back(message);
    events.push_back(message.id);
    if (onMessage) onMessage();
  }
  void hideChatWindow() override { events.emplace_back("hide"); }
};

class BridgeTest : public ChatTest {
protected:
  BridgeTest() {
    bridge.webView = view;
    bridge.delegate = hearer;
  }
  static Value::Dictionary message() {
    return {{"messageType", "newMessage"},
            {"text", "Hello"},
            {"id", "m1"},
            {"timestamp", 1500000000000},
            {"author", Value::Dictionary{{"name", "Ann"}}},
            {"more", Value::List{1}}};
  }
  static Value::Dictionary with(const std::string& key, const Value& value) {
    Value::Dictionary changed = message();
    changed[key] = value;
    return changed;
  }
  std::vector<std::string> scripts() {
    return page() ? page()->scripts : std::vector<std::string>();
  }

  WebViewBridge bridge;
  std::shared_ptr<WKWebView> view = make<WKWebView>(CGRect{}, WKWebViewConfiguration());
  std::shared_ptr<Hearer> hearer = std::make_shared<Hearer>();
};

const std::string focus = "LiveChatWidget_emitFocus();", blur = "LiveChatWidget_emitBlur();";

TEST_F(BridgeTest, ThePageHearsNothingBeforeItHasSpoken) {
  bridge.postFocusEvent();
  bridge.postBlurEvent();
  bridge.postFocusEvent();
  bridge.handle({{"text", "no type"}});
  bridge.handle({{"messageType", 7}});
  EXPECT_EQ(page(), nullptr) << "a script would have made the page";
  EXPECT_THAT(printed(), IsEmpty());
  std::vector<std::string> before;
  hearer->onMessage = [&] { before = scripts(); };
  bridge.handle(message());
  EXPECT_THAT(before, ElementsAre(focus, blur, focus)) << "they go before the message is heard";
  time.settle();
  EXPECT_THAT(printed(),
              Contains("Sending message to iOS web bridge error: 'no such function' message: '" +
                       blur + "'"));
  engine->results[blur] = nullptr;
  bridge.postBlurEvent();
  time.settle();
  EXPECT_EQ(scripts().back(), blur);
  EXPECT_THAT(printed(), IsEmpty()) << "success is silent";
  view = nullptr;
  bridge.postFocusEvent();
  bridge.handle({{"messageType", "ready"}}); // of our own script
  bridge.handle({{"messageType", "other"}});
  EXPECT_THAT(printed(), ElementsAre("WebViewBridge unknown messageType: "
                                     R"(["messageType": "other"])"));
}

TEST_F(BridgeTest, AMessageIsTakenWholeOrDroppedWithItsLine) {
  const Value::Dictionary unnamed{{"name", 7}};
  const std::tuple<std::string, Value, std::string> wrong[] = {
      {"text", 7, "text"},
      {"id", 1, "id"},
      {"timestamp", nullptr, "timestamp"},
      {"timestamp", true, "timestamp"},
      {"timestamp", "soon", "timestamp"},
      {"timestamp", "15 ", "timestamp"},
      {"author", "Ann", "author"},
      {"author", unnamed, "author.name"},
  };
  for (const auto& [key, value, named] : wrong) {
    bridge.handle(with(key, value));
    EXPECT_THAT(printed(), ElementsAre("'" + named + "' key not valid in 'newMessage'"))
        << key << " " << value.description();
  }
  EXPECT_TRUE(hearer->events.empty());

  bridge.handle(message());
  bridge.handle(with("timestamp", "1500000000"));
  bridge.handle(with("timestamp", 1500.5));
  bridge.handle({{"messageType", "hideChatWindow"}});
  EXPECT_THAT(hearer->events, ElementsAre("m1", "m1", "m1", "hide"));
  const LiveChatMessage& first = hearer->messages[0];
  EXPECT_EQ(first.text + "|" + first.authorName, "Hello|Ann");
  EXPECT_EQ(first.rawMessage, message());
  EXPECT_EQ(first.date, Date{1500000000});
  EXPECT_EQ(hearer->messages[1].date, first.date) << "a text counts seconds";
  EXPECT_EQ(hearer->messages[2].date, Date{1.5005});
  hearer = nullptr;
  bridge.handle({{"messageType", "hideChatWindow"}});
}

} // namespace
} // namespace zuvi::test
