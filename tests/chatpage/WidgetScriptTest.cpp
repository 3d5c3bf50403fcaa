// The script between the page and the kit, in a real page.

#include "kit/Helper/LiveChat/ChatView.h"
#include "kit/Helper/ZVBundle.h"
#include "platform/Foundation/FileManager.h"
#include "testing/WebKit/WebFixtureGtk.h"

#include <gmock/gmock.h>

namespace zuvi::test {
namespace {

TEST_F(WebTest, WidgetScriptSpeaksForThePage) {
  const auto source = FileManager::contents(*zvKitBundle()->path("LiveChatWidget", "js"));
  configuration.userContentController->addUserScript({source->string()});
  configuration.userContentController->addScriptMessageHandler(listener, iOSMessageHandlerName);
  serve("/", R"(<script>
    var seen = [String(LiveChatWidget.focused)];
    addEventListener('chatfocus', function () { seen.push('focus ' + LiveChatWidget.focused); });
    addEventListener('chatblur', function () { seen.push('blur ' + LiveChatWidget.focused); });
  </script>)");
  const auto view = makeWebView();
  ASSERT_TRUE(show(*view, "/"));
  evaluate(*view, "LiveChatWidget_emitFocus();");
  evaluate(*view, "LiveChatWidget_emitBlur();");
  EXPECT_EQ(evaluate(*view, "seen.join()"), Value("null,focus true,blur false"));

  const Value wrong = evaluate(*view, R"(
    var circle = {}; circle.self = circle;
    [undefined, null, 7, 'text', [1], circle, function () {},
     {toJSON: function () { throw 1; }}, {get text() { throw 2; }}].map(function (detail) {
      LiveChatWidget.message(detail);
      return dispatchEvent(new CustomEvent('chatmessage', {detail: detail}));
    }).length)");
  EXPECT_EQ(wrong.number(), 9) << wrong.description() << ": nothing throws";
  evaluate(*view, R"(dispatchEvent(new CustomEvent('chatmessage', {detail: {messageType: 'mine',
      text: 'Hello', id: 'm', timestamp: 1, author: {name: 'Ann'}, skip: function () {}}})))");
  evaluate(*view, "LiveChatWidget.hide(); dispatchEvent(new CustomEvent('chatready'))");
  ASSERT_TRUE(waitFor([&] { return listener->messages.size() >= 3; }));
  ASSERT_EQ(listener->messages.size(), 3U);
  const Value::Dictionary& message = *listener->messages[0].dictionary();
  EXPECT_EQ(stringValue(message, "messageType"), "newMessage");
  EXPECT_EQ(message.size(), 5U);
  const auto type = [](const char* name) {
    return Value(Value::Dictionary{{"messageType", name}});
  };
  EXPECT_EQ(listener->messages[1], type("hideChatWindow"));
  EXPECT_EQ(listener->messages[2], type("ready"));
}

} // namespace
} // namespace zuvi::test
