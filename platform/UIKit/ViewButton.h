#pragma once

#include <ZuviSDK/CoreGraphics/CGGeometry.h>
#include <ZuviSDK/UIKit/ToolkitTypes.h>

#include <functional>
#include <memory>

namespace zuvi {

class UIView;

/// A button of the toolkit that looks like `view`, which lies in no window of the kit's. It is at
/// least as large as `size`, in points, and speaks the view's accessibility name. `clicked` gets
/// the window that the button lies in; null: none. Like all new widgets it has a floating
/// reference. Main queue only.
GtkWidget* viewButtonNew(std::shared_ptr<UIView> view, CGSize size,
                         std::function<void(GtkWindow*)> clicked);

} // namespace zuvi
