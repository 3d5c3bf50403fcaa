#include "testing/UIKit/ScreenText.h"

#include <ZuviSDK/UIKit/UIButton.h>
#include <ZuviSDK/UIKit/UILabel.h>
#include <ZuviSDK/UIKit/UIWindow.h>
#include "platform/Foundation/ClassName.h"
#include "platform/UIKit/UIPageControl.h"
#include "platform/UIKit/UIScreen.h"
#include "platform/UIKit/UIScrollView.h"
#include "testing/UIKit/ViewTree.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zuvi {

namespace {

/// A view, and what a person reads or touches of it.
struct Line {
  const UIView* view;
  std::string text;
  CGRect place{}; ///< of its letters, or its own
  bool isText = false, isControl = false;
};

/// Layout rounds.
constexpr double tolerance = 1;

bool holds(const CGRect& outer, const CGRect& inner) {
  return inner.minX() >= outer.minX() - tolerance && inner.minY() >= outer.minY() - tolerance &&
         inner.maxX() <= outer.maxX() + tolerance && inner.maxY() <= outer.maxY() + tolerance;
}

bool overlap(const CGRect& a, const CGRect& b) {
  const CGRect both = CGRectIntersection(a, b);
  return both.width > tolerance && both.height > tolerance;
}

CGRect onScreen(const UIView& view) {
  return view.convertToScreen(view.bounds());
}

/// The place of the letters within a label.
CGRect placeOfText(const UILabel& label) {
  const CGRect bounds = label.bounds();
  const CGSize size = label.sizeThatFits(bounds.size());
  const double free = bounds.width - size.width;
  const auto alignment = label.textAlignment();
  const double left = alignment == NSTextAlignment::Left    ? 0
                      : alignment == NSTextAlignment::Right ? free
                                                            : free / 2;
  return label.convertToScreen(CGRect{bounds.x + left, bounds.y + (bounds.height - size.height) / 2,
                                      size.width, size.height});
}

/// To a tenth of a point, without what does not matter.
std::string inWords(double number) {
  const double rounded = std::round(number * 10) / 10 + 0.0; // no -0
  std::string text = std::to_string(rounded);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

std::string inWords(const CGRect& frame) {
  return inWords(frame.x) + "," + inWords(frame.y) + " " + inWords(frame.width) + "x" +
         inWords(frame.height);
}

std::string quoted(const std::string& text) {
  std::string all = "\"";
  for (const char letter : text)
    all += letter == '\n' ? "\\n" : std::string(1, letter);
  return all + '"';
}

/// Its class and place, and what is not as usual.
std::string inWords(const UIView& view) {
  Value::Dictionary words = describeView(view);
  std::string text = className(view) + " " + inWords(onScreen(view));
  if (!view.outletName.empty()) text.insert(text.find(' '), " " + view.outletName);
  for (const char* known : {"class", "outlet", "frame", "label", "clipped"})
    words.erase(known);
  const Value::Dictionary usual{{"alpha", 1.0}, {"hidden", false}, {"enabled", true}};
  for (const auto& [key, value] : words) {
    if (const auto found = usual.find(key); found != usual.end() && found->second == value)
      continue;
    const auto number = value.number();
    text += " " + key + "=" +
            (value.string() ? quoted(*value.string())
             : number       ? inWords(*number)
                            : value.description());
  }
  return text;
}

/// The name is left out where it is the words that are seen.
std::string spoken(const UIAccessibilityElement& element, const std::string& seen) {
  constexpr std::array roles{"nothing",      "text",     "header", "image", "button", "field",
                             "page control", "progress", "list",   "row",   "dialog"};
  std::string text = std::string(" says ") + roles.at(std::size_t(element.role));
  const std::string name = quoted(element.name);
  if (seen.find("text=" + name) == seen.npos && seen.find("title=" + name) == seen.npos)
    text += " " + name;
  if (!element.value.empty()) text += " " + quoted(element.value);
  if (!element.enabled) text += " disabled";
  if (element.busy) text += " busy";
  if (element.count > 0)
    text += " " + std::to_string(element.position) + " of " + std::to_string(element.count);
  return text;
}

/// In drawing order; what a screen's opaque ground covers afterwards is out of reach again.
class Reader {
public:
  void read(const UIView& view, const std::string& indent = {},
            const UIScrollView* scroller = nullptr) {
    const CGRect frame = onScreen(view), all = UIScreen::main().bounds();
    if (frame.isEmpty() && view.subviews().empty()) return; // such as a button's absent picture
    Line line{&view, indent + inWords(view)};
    if (view.isHidden() || view.alpha() < 0.01) {
      lines_.push_back(std::move(line));
      return;
    }
    if (view.backgroundColor().alpha > 0.99 &&
        frame.width * frame.height > all.width * all.height / 8)
      for (Line& below : lines_)
        if (holds(frame, below.place)) below.isText = below.isControl = false;
    if (const auto* label = dynamic_cast<const UILabel*>(&view)) {
      line.isText = label->text().value_or(" ").find_first_not_of(' ') != std::string::npos;
      line.place = placeOfText(*label);
      if (label->isClipped()) line.text += " FAULT clipped";
    } else {
      line.isControl =
          dynamic_cast<const UIControl*>(&view) || dynamic_cast<const UIPageControl*>(&view);
      line.place = frame;
    }
    if (scroller && (line.isText || line.isControl)) scroll(line, *scroller);
    lines_.push_back(std::move(line));
    if (const auto* own = dynamic_cast<const UIScrollView*>(&view); own && own->canScroll())
      scroller = own;
    for (const auto& subview : view.subviews())
      read(*subview, indent + "  ", scroller);
  }

  std::string text() {
    for (const auto& item : UIAccessibility::items())
      for (Line& line : lines_)
        if (line.view == item.view) line.text += spoken(item.element, line.text);
    std::string all;
    for (auto line = lines_.begin(); line != lines_.end(); ++line) {
      if (line->isText || line->isControl) judge(*line, std::next(line));
      all += line->text + '\n';
    }
    return all;
  }

private:
  /// What is in sight of something that can be scrolled there as a whole.
  static void scroll(Line& line, const UIScrollView& scroller) {
    const CGSize all = scroller.contentSize();
    if (!holds({0, 0, all.width, all.height}, scroller.convertFromScreen(line.place)))
      line.text += " FAULT beyond what scrolls";
    const CGRect port = onScreen(scroller), part = CGRectIntersection(line.place, port);
    line.place = part.isEmpty() ? CGRect{port.x, port.y, 0, 0} : part;
  }

  void judge(Line& line, std::vector<Line>::const_iterator next) const {
    if (!holds(UIScreen::main().bounds(), line.place)) line.text += " FAULT off the screen";
    for (const UIView* up = line.view->superview(); up; up = up->superview())
      if (up->clipsToBounds() && !holds(onScreen(*up), line.place))
        line.text += " FAULT cut off by " + className(*up) + " " + up->outletName;
    for (; next != lines_.end(); ++next)
      if ((next->isText || next->isControl) && overlap(line.place, next->place) &&
          !belongs(line, *next) && !belongs(*next, line))
        line.text += " FAULT under " + className(*next->view) + " " + next->view->outletName;
  }

  /// A text may stand on the control that it is a part of, or that has no words of its own.
  static bool belongs(const Line& text, const Line& control) {
    if (!text.isText || !control.isControl) return false;
    if (text.view->isDescendantOf(*control.view)) return true;
    const auto* button = dynamic_cast<const UIButton*>(control.view);
    return button && !button->title() && holds(control.place, text.place);
  }

  std::vector<Line> lines_;
};

} // namespace

std::string screenText() {
  UIScreen::main().layoutIfNeeded();
  const auto& windows = UIScreen::main().windows();
  if (windows.empty() || windows.back()->subviews().empty()) return {};
  Reader reader;
  reader.read(*windows.back()->subviews().back());
  return reader.text();
}

} // namespace zuvi
