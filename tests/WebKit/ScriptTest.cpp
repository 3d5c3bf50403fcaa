#include "testing/WebKit/WebFixtureGtk.h"

namespace zuvi::test {

namespace {

using ScriptTest = WebTest;

TEST_F(ScriptTest, GivesAResultOrAnError) {
  const auto view = makeWebView();
  EXPECT_EQ(evaluate(*view, "undefined"), Value(nullptr));
  const auto errorOf = [&](const std::string& script) {
    std::optional<Error> found;
    view->evaluateJavaScript(script, [&](const auto&, const auto& error) { found = error; });
    EXPECT_TRUE(waitFor([&] { return found.has_value(); })) << script;
    return found.value_or(Error{});
  };
  EXPECT_EQ(errorOf("throw new Error('broken')").code, 4);
  EXPECT_NE(errorOf("throw new Error('broken')").description.find("broken"), std::string::npos);
  EXPECT_EQ(errorOf("}{").code, 4);
  EXPECT_EQ(errorOf("Promise.resolve(1)").code, 5);
  EXPECT_EQ(errorOf("(function () {})").code, 5);
  EXPECT_EQ(evaluate(*view, "1"), Value(1)); // unharmed
}

TEST_F(ScriptTest, MessagesKeepTheirTypes) {
  serve("/", R"(<script>
    const post = body => window.webkit.messageHandlers.host.postMessage(body);
    [{method: 'ready', count: 2, nested: {yes: true}}, [1, 'two'], 'text', 7, -1.5, true, false,
     null, 'half \ud83d of one', 'a \\ud800 b'].forEach(post);
    let deep = 0;
    for (let i = 0; i < 1000; i++) deep = [deep];
    post(deep);
    post('x'.repeat(10000000));
    post('last');
  </script>)");
  const auto view = makeWebView();
  ASSERT_TRUE(show(*view, "/"));
  ASSERT_TRUE(waitFor(
      [&] { return !listener->messages.empty() && listener->messages.back() == Value("last"); }));
  const auto& messages = listener->messages;
  ASSERT_EQ(messages.size(), 13U);
  EXPECT_EQ(Value(Value::List(messages.begin(), messages.begin() + 10)).description(),
            R"([["count": 2, "method": "ready", "nested": ["yes": true]], [1, "two"], "text", 7, )"
            R"(-1.5, true, false, nil, "half � of one", "a \\ud800 b"])");
  int depth = 0;
  for (const Value* at = &messages[10]; at->list(); at = &at->list()->front())
    depth++;
  EXPECT_EQ(depth, 1000);
  ASSERT_TRUE(messages[11].string());
  EXPECT_EQ(messages[11].string()->size(), 10000000U);
}

TEST_F(ScriptTest, RunsOnlyWhereItWasAskedTo) {
  serve("/", "<body><iframe src='/inner'></iframe></body>");
  // Same as for a stranger's frame: nothing to post through, and no name of it.
  serve("/inner", "<script>const to = window.webkit?.messageHandlers; parent.inner = "
                  "[window.main, window.all, to?.host, Object.getOwnPropertyNames(to || {})].join()"
                  "</script>");
  auto& controller = *configuration.userContentController;
  controller.addUserScript({"window.main = 1"});
  controller.addUserScript({"window.all = 2", WKUserScriptInjectionTime::AtDocumentStart, false});
  controller.addUserScript(
      {"window.end = document.body !== null", WKUserScriptInjectionTime::AtDocumentEnd});
  auto gone = std::make_shared<Listener>();
  controller.addScriptMessageHandler(gone, "gone");
  gone = nullptr;
  const auto view = makeWebView();
  ASSERT_TRUE(show(*view, "/"));
  EXPECT_EQ(evaluate(*view, "[window.main, window.all, window.end].join()"), Value("1,2,true"));
  EXPECT_EQ(evaluate(*view, "window.inner"), Value(",2,,"));
  EXPECT_EQ(evaluate(*view, "window.webkit.messageHandlers.gone.postMessage(1), 'sent'"),
            Value("sent"));
}

} // namespace

} // namespace zuvi::test
