#pragma once

#include <ZuviSDK/UIKit/NSLayoutConstraint.h>
#include <ZuviSDK/UIKit/UIView.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zuvi {

/// What the owner of a nib expects of it: every outlet and every action by name. A nib that lacks
/// one, or names another, is refused.
class NibDeclaration {
public:
  /// `field` gets the view of that outlet; the nib must give it a class that fits.
  template <class View> void outlet(const std::string& name, std::weak_ptr<View>& field) {
    outlets_.push_back({name, [&field](const std::shared_ptr<UIView>& view) {
                          auto typed = std::dynamic_pointer_cast<View>(view);
                          field = typed;
                          return typed != nullptr;
                        }});
  }

  /// `field` gets the constraint of that outlet.
  void outlet(const std::string& name, std::weak_ptr<NSLayoutConstraint>& field) {
    constraints_.push_back({name, &field});
  }

  /// `run` is called when a control that names the action is tapped.
  void action(const std::string& name, std::function<void()> run) {
    actions_.emplace_back(name, std::move(run));
  }

private:
  friend class NibLoader;
  struct Outlet {
    std::string name;
    std::function<bool(const std::shared_ptr<UIView>&)> connect;
    bool connected = false;
  };
  struct ConstraintOutlet {
    std::string name;
    std::weak_ptr<NSLayoutConstraint>* field;
    bool connected = false;
  };
  std::vector<Outlet> outlets_;
  std::vector<ConstraintOutlet> constraints_;
  std::vector<std::pair<std::string, std::function<void()>>> actions_;
};

} // namespace zuvi
