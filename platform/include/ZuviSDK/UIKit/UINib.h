#pragma once

#include <ZuviSDK/Export.h>
#include <ZuviSDK/Foundation/Bundle.h>
#include <ZuviSDK/UIKit/NibDeclaration.h>
#include <ZuviSDK/UIKit/UIView.h>

#include <functional>
#include <memory>
#include <string>

namespace zuvi {

/// A tree of views described in an XML file of a bundle:
///
///     <nib owner="ZVUploadViewController">
///       <UIView background="#FFFFFF">
///         <UILabel outlet="textLabel" font="SFProText-Regular 16" lines="0" align="center"
///                  layout="left = super.left + 24; right = super.right - 24; top = icon.bottom +
///                  8"/>
///         <constraint outlet="space" rule="super.bottom = textLabel.bottom + 88"/>
///       </UIView>
///     </nib>
///
/// Elements are classes; attributes are theirs, but for `outlet` and `id` (its name), `action` (of
/// a control) and `layout` (constraints, held by the superview; "super", "safe" or a sibling's name
/// stand before the edge: left, right, top, bottom, centerX, centerY, width, height). An attribute
/// such as `text.fr` takes the place of `text` where French is the bundle's language.
///
/// Where the bundle has values for nibs (`Bundle::setNibValues`), an attribute may name them:
/// `color="@ink"`, or a list of them, `colors="@paper @ink"`. A name without value is refused.
/// Where the bundle has none, "@" is a plain character. Main queue only.
class ZUVI_API UINib {
public:
  /// The view, or why the nib was refused: one line with file, line and name.
  struct Result {
    std::shared_ptr<UIView> view; ///< null when refused
    std::string error;            ///< empty when there is a view
  };

  /// The file NAME.xml of that bundle, read at each instantiation.
  UINib(std::string name, std::shared_ptr<const Bundle> bundle)
      : name_(std::move(name)), bundle_(std::move(bundle)) {}

  /// Makes the tree anew and connects it to an owner outside of it, such as a screen.
  Result instantiate(NibDeclaration owner) const;
  /// Makes the tree anew; its topmost view is the owner, such as a table's row.
  Result instantiate() const;

  /// Makes a class known by name, for all nibs.
  static void registerClass(const std::string& name,
                            std::function<std::shared_ptr<UIView>()> factory);
  /// The same for a class that is made without arguments.
  template <class View> static void registerClass(const std::string& name) {
    registerClass(name, [] { return make<View>(); });
  }

private:
  std::string name_;
  std::shared_ptr<const Bundle> bundle_;
};

} // namespace zuvi
