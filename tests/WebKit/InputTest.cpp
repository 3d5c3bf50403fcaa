#include "testing/WebKit/WebFixtureGtk.h"

#include "platform/UIKit/UITextField.h"

namespace zuvi::test {

namespace {

class InputTest : public WebTest {
protected:
  InputTest() {
    serve("/", R"(<body style='margin:0'><input id=a style='position:absolute;top:300px'>
      <input id=b style='position:absolute;top:340px'><script>
      window.clicks = [];
      onmousedown = e => clicks.push(e.clientX + ':' + e.clientY);
      window.keys = ''; onkeydown = e => keys += e.key</script></body>)");
  }
  const std::string clicks = "clicks.join()";
};

TEST_F(InputTest, ClicksReachThePageOnlyWhereNothingOfOursLiesOverIt) {
  const auto view = makeWebView();
  view->setFrame({20, 40, 300, 500});
  ASSERT_TRUE(show(*view, "/"));
  runFor(0.3);
  click(30, 60);
  EXPECT_TRUE(becomes(*view, clicks, "10:20"));

  const auto over = make<UIControl>();
  over->setFrame({0, 0, 360, 100});
  int taps = 0;
  over->addTarget(UIControlEvent::TouchUpInside, [&] { taps++; });
  window->addSubview(over);
  click(30, 70);
  EXPECT_EQ(taps, 1);
  click(30, 120);
  EXPECT_TRUE(becomes(*view, clicks, "10:20,10:80"));
  EXPECT_EQ(taps, 1);

  over->removeFromSuperview();
  view->setTransform(CGAffineTransform::scale(0.5, 0.5)); // about (170, 290)
  runFor(0.1);
  click(30, 60); // beside it now
  click(105, 185);
  EXPECT_TRUE(becomes(*view, clicks, "10:20,10:80,20:40"));
}

TEST_F(InputTest, KeysGoWhereTheFocusIs) {
  const auto sheet = make<UIView>(window->bounds());
  window->addSubview(sheet);
  const auto view = makeWebView();
  view->setFrame({0, 0, 360, 400});
  sheet->addSubview(view);
  const auto field = make<UITextField>(CGRect{20, 500, 200, 40});
  sheet->addSubview(field);
  ASSERT_TRUE(show(*view, "/"));
  runFor(0.3);
  click(50, 310);
  EXPECT_TRUE(view->isFirstResponder());
  type("x");
  EXPECT_TRUE(becomes(*view, "a.value", "x"));
  EXPECT_EQ(field->text(), "");
  click(50, 520);
  EXPECT_TRUE(field->isEditing());
  type("y");
  EXPECT_EQ(field->text(), "y");
  EXPECT_EQ(evaluate(*view, "a.value + keys"), Value("xx"));

  type("Tab"); // round to the page
  EXPECT_TRUE(view->isFirstResponder());
  EXPECT_FALSE(field->isEditing());
  type("z");
  EXPECT_TRUE(becomes(*view, "keys", "xz"));
  click(50, 350);
  EXPECT_EQ(evaluate(*view, "document.activeElement.id"), Value("b"));

  // Another window takes the keyboard for a while.
  GtkWidget* second = gtk_window_new();
  gtk_window_present(GTK_WINDOW(second));
  runFor(0.2);
  activate(second);
  EXPECT_FALSE(gtk_window_is_active(GTK_WINDOW(top)));
  activate(top);
  gtk_window_destroy(GTK_WINDOW(second));
  EXPECT_TRUE(view->isFirstResponder());
  type("w");
  EXPECT_TRUE(becomes(*view, "b.value", "w"));

  type("Tab"); // past the page's last
  EXPECT_TRUE(waitFor([&] { return field->isEditing(); }, 5));
  runFor(0.3);
  EXPECT_TRUE(field->isEditing()) << "one step too many";
}

TEST_F(InputTest, TellsAPersonFromAScript) {
  serve("/", R"(<body style='margin:0'><a id=a href='/next' style='position:absolute;top:100px'>
      <b style='font-size:60px'>link</b></a>
      <input type=file style='position:absolute;top:300px;height:60px'>
      <button style='position:absolute;top:400px;width:100px;height:60px'
        onclick='for (;;);'>hang</button></body>)");
  const auto view = makeWebView();
  ASSERT_TRUE(show(*view, "/"));
  listener->linkPolicy = WKNavigationActionPolicy::Cancel;
  const std::string link = "link to /next";
  evaluate(*view, "a.click(), setTimeout(() => a.click(), 100), 0"); // the engine believes both
  EXPECT_TRUE(waitFor([&] { return listener->count(link) == 2; }));
  click(40, 140);
  EXPECT_TRUE(waitFor([&] { return listener->has(link + " by a person"); }));
  EXPECT_EQ(listener->count(link), 2);
  click(30, 330);
  EXPECT_TRUE(waitFor([&] { return listener->has("no files"); }));
  click(30, 430);
  type("a"); // to which there is no answer
  EXPECT_TRUE(waitFor([&] { return listener->has("hangs"); }));
  std::optional<Value> name;
  view->evaluateJavaScript("navigator.userAgent", [&](const auto& value, auto) { name = value; });
  EXPECT_TRUE(waitFor([&] { return name && name->string(); }, 2)) << "asks no page that hangs";
}

} // namespace

} // namespace zuvi::test
