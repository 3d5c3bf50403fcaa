// Every screen in every language on small and large screens, with text at its own size and as large
// as a person may ask for: nothing is cut off, nothing collides.

#include "kit/UI/ViewControllers/ZVCardVerifyViewController.h"
#include "platform/CoreText/TextLayout.h"
#include "tests/flow/FlowTest.h"

namespace zuvi {
namespace {

/// Something that a person reads or touches, where it stands on the screen.
struct Item {
  const UIView* view;
  CGRect place;
  bool isText;
};

std::string words(const Item& item) {
  const auto* label = dynamic_cast<const UILabel*>(item.view);
  return className(*item.view) + " " + item.view->outletName + " " +
         (label ? label->text().value_or("") : "");
}

bool overlap(const CGRect& a, const CGRect& b) {
  const CGRect both = CGRectIntersection(a, b);
  return both.width > 1 && both.height > 1; // layout rounds
}

bool holds(const CGRect& outer, const CGRect& inner) {
  return inner.minX() >= outer.minX() - 1 && inner.minY() >= outer.minY() - 1 &&
         inner.maxX() <= outer.maxX() + 1 && inner.maxY() <= outer.maxY() + 1;
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

class LayoutTest : public FlowTest {
protected:
  void see(const std::string& step) override {
    inspect(step);
    if (step == "start") {
      shell().mainNC()->pushViewController(make<ZVCardVerifyViewController>(), true);
      settle();
      inspect("review of a card");
      tap("retakeButtonTap");
      tap("closeButtonTap");
      inspect("cancel alert");
      tap("continueButton");
    } else if (const auto camera = this->step<ZVKYCCameraViewController>()) {
      const CGRect guide = camera->cardImageView.lock()->bounds();
      const double card = std::min(guide.width, guide.height * 1.586);
      EXPECT_TRUE(card >= leastCard || textScale() > 1) << step << " " << place_ << " " << card;
      if (camera->type == ZVKYCCameraType::ineFront) {
        camera->showError(true);
        settle();
        inspect("failed " + step);
        tapBottom();
        time.advance(3);
      }
    } else if (const auto list = this->step<ZVDocumentListViewController>()) {
      list->tableView.lock()->setContentOffset({0, 1e6});
      settle();
      inspect("end of the list");
    }
    // An upload stays until it was seen.
    step == "upload" || step == "verified" ? backend.release() : backend.hold();
  }

  std::string place_;

private:
  void inspect(const std::string& screen) {
    UIScreen::main().layoutIfNeeded();
    items_.clear();
    // The sheet in front; what lies under it is out of reach.
    collect(*window->subviews().back());
    EXPECT_GE(items_.size(), 2U) << screen;
    const std::string where = screen + " " + place_ + ": ";
    for (auto a = items_.begin(); a != items_.end(); ++a) {
      const auto* label = dynamic_cast<const UILabel*>(a->view);
      EXPECT_FALSE(label && label->isClipped()) << where << words(*a) << " is clipped";
      EXPECT_TRUE(holds(UIScreen::main().bounds(), a->place))
          << where << words(*a) << " is outside";
      for (const UIView* up = a->view->superview(); up; up = up->superview()) {
        const bool whole =
            !up->clipsToBounds() || holds(up->convertToScreen(up->bounds()), a->place);
        EXPECT_TRUE(whole) << where << words(*a) << " is cut off by " << className(*up) << " "
                           << up->outletName;
      }
      for (auto b = std::next(a); b != items_.end(); ++b) {
        if (!overlap(a->place, b->place) || belongs(*a, *b) || belongs(*b, *a)) continue;
        ADD_FAILURE() << where << words(*a) << " overlaps " << words(*b);
      }
    }
  }

  /// A text may stand on the control that it is a part of, or that has no words of its own.
  static bool belongs(const Item& text, const Item& control) {
    if (!text.isText || control.isText) return false;
    if (text.view->isDescendantOf(*control.view)) return true;
    const auto* button = dynamic_cast<const UIButton*>(control.view);
    return button && !button->title() && holds(control.place, text.place);
  }

  /// In drawing order; what a screen's opaque ground covers afterwards is taken out again.
  void collect(const UIView& view, const UIScrollView* scroller = nullptr) {
    if (view.isHidden() || view.alpha() < 0.01) return;
    const CGRect frame = view.convertToScreen(view.bounds());
    const CGRect all = UIScreen::main().bounds();
    if (view.backgroundColor().alpha > 0.99 &&
        frame.width * frame.height > all.width * all.height / 3)
      std::erase_if(items_, [&](const Item& item) { return holds(frame, item.place); });
    if (const auto* label = dynamic_cast<const UILabel*>(&view)) {
      if (label->text().value_or(" ").find_first_not_of(' ') != std::string::npos)
        items_.push_back({&view, seen(placeOfText(*label), scroller), true});
    } else if (dynamic_cast<const UIControl*>(&view) || dynamic_cast<const UIPageControl*>(&view)) {
      items_.push_back({&view, seen(frame, scroller), false});
    }
    if (const auto* own = dynamic_cast<const UIScrollView*>(&view); own && own->canScroll())
      scroller = own;
    for (const auto& subview : view.subviews())
      collect(*subview, scroller);
  }

  /// What is in sight of something that can be scrolled there as a whole.
  static CGRect seen(const CGRect& place, const UIScrollView* scroller) {
    if (!scroller) return place;
    const CGSize all = scroller->contentSize();
    EXPECT_TRUE(holds({0, 0, all.width, all.height}, scroller->convertFromScreen(place)));
    const CGRect port = scroller->convertToScreen(scroller->bounds());
    const CGRect part = CGRectIntersection(place, port);
    return part.isEmpty() ? CGRect{port.x, port.y, 0, 0} : part;
  }

  static constexpr double leastCard = 96; // points; in a smaller one nobody can aim
  std::vector<Item> items_;
};

TEST_F(LayoutTest, HoldsInEveryLanguageOnEveryScreenAndWithTheLargestText) {
  const struct {
    CGSize size;
    UIEdgeInsets safe;
    double textScale = 1;
  } screens[] = {{{320, 568}, {20, 0, 0, 0}},
                 {{375, 812}, {44, 0, 34, 0}},
                 {{768, 1024}, {}},
                 {{700, 320}, {}},
                 {{240, 480}, {}},
                 {{320, 568}, {20, 0, 0, 0}, 9}, // more than anybody gets
                 {{375, 812}, {44, 0, 34, 0}, 9},
                 {{768, 1024}, {}, 9}};
  const std::string all = R"(["national-id","proof-of-residency","driving-license","passport"])";
  for (const auto& screen : screens) {
    UIScreen::main().configure(screen.size, 2, screen.safe);
    UIScreen::main().setTextScale(screen.textScale);
    for (const auto& language : RawValues<ZVLanguage>::all) {
      place_ = std::string(language.text) + " " + std::to_string(int(screen.size.width)) + " x " +
               std::to_string(int(screen.size.height)) + " " + std::to_string(textScale());
      registerMerchant(R"({"required":)" + all + R"(,"optional":)" + all + "}",
                       std::string(language.text));
      launch();
      EXPECT_TRUE(walk("passport").ends_with("verified(-1) "));
      tapBottom();
    }
  }
  UIScreen::main().setTextScale(1);
}

} // namespace
} // namespace zuvi
