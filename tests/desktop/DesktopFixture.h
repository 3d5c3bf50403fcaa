#pragma once

#include "testing/demo/ProgramFixture.h"
#include "testing/desktop/Compositor.h"
#include "testing/support/EngineAsRoot.h"

namespace zuvi::test {

/// The real program on a desktop of Wayland. A drive script dumps the screens that the pointer is
/// to be moved on, and says what must come of it.
class DesktopFixture : public sandbox::test::ProgramFixture {
protected:
  /// A desktop whose outputs have that size, and a back end.
  void open(CGSize output, int outputs = 1) {
    size_ = output;
    compositor_.emplace(output, outputs);
    ASSERT_TRUE(compositor_->isThere());
    runtime_.emplace("XDG_RUNTIME_DIR", compositor_->runtimeFolder());
    wayland_.emplace("WAYLAND_DISPLAY", Compositor::display);
    x_.emplace("DISPLAY", std::nullopt);
    ASSERT_NO_FATAL_FAILURE(startWith({}, merchant("en")));
  }

  void moveWhenDumped(const std::string& dump, const std::string& view) {
    const auto middle = middleOf(dump, view);
    ASSERT_TRUE(middle);
    compositor_->pointer().moveTo({middle->x, size_.height - middle->y});
  }
  void clickWhenDumped(const std::string& dump, const std::string& view) {
    ASSERT_NO_FATAL_FAILURE(moveWhenDumped(dump, view));
    compositor_->pointer().click();
  }

  CGSize size_;
  std::optional<Compositor> compositor_;
  std::optional<ScopedEnvironment> runtime_, wayland_, x_;
};

} // namespace zuvi::test
