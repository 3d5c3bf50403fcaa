#include <ZuviSDK/UIKit/UINib.h>

#include <ZuviSDK/UIKit/UIControl.h>
#include "platform/Foundation/ClassName.h"
#include "platform/Foundation/FileManager.h"
#include "platform/UIKit/NibConstraintRule.h"
#include "platform/UIKit/NibValues.h"
#include "platform/UIKit/StandardNibClasses.h"
#include "platform/UIKit/UIImageNames.h"

#include <pugixml.hpp>

#include <algorithm>
#include <map>
#include <tuple>

namespace zuvi {

namespace {

std::map<std::string, std::function<std::shared_ptr<UIView>()>>& classes() {
  static auto known = standardNibClasses();
  return known;
}

} // namespace

/// Reads one file; the first fault ends it.
class NibLoader {
public:
  NibLoader(std::string file, std::string text, const Bundle& bundle)
      : file_(std::move(file)), text_(std::move(text)), language_(bundle.language()),
        values_(bundle.nibValues()) {}

  /// `outside`: what an owner that is not in the tree declares; null: the topmost view owns it.
  UINib::Result load(NibDeclaration* outside) {
    const auto parsed = document_.load_buffer(text_.data(), text_.size());
    if (!parsed) {
      refuse(parsed.offset, parsed.description());
      return result();
    }
    const pugi::xml_node root = document_.child("nib");
    const pugi::xml_node top = root.first_child();
    if (!root || !top || top.next_sibling()) {
      refuse(0, "a nib element with one view is wanted");
      return result();
    }
    view_ = build(top, 0);
    if (!view_ || !error_.empty()) return result();
    if (outside) {
      declaration_ = std::move(*outside);
    } else {
      view_->declareNib(declaration_);
    }
    connect();
    if (error_.empty()) awake(*view_);
    return result();
  }

private:
  struct Named {
    std::shared_ptr<UIView> view;
    pugi::xml_node node;
  };

  UINib::Result result() {
    if (!error_.empty()) view_ = nullptr;
    return {view_, error_};
  }

  void refuse(std::ptrdiff_t offset, const std::string& what) {
    if (!error_.empty()) return;
    const auto end = text_.begin() + std::clamp<std::ptrdiff_t>(offset, 0, std::ssize(text_));
    const auto line = 1 + std::count(text_.begin(), end, '\n');
    error_ = file_ + ":" + std::to_string(line) + ": " + what;
  }

  void refuse(pugi::xml_node node, const std::string& what) { refuse(node.offset_debug(), what); }

  std::shared_ptr<UIView> build(pugi::xml_node node, int depth) {
    if (depth > 200) {
      refuse(node, "the views are nested too deep");
      return nullptr;
    }
    const auto factory = classes().find(node.name());
    if (factory == classes().end()) {
      refuse(node, std::string("no class is named ") + node.name());
      return nullptr;
    }
    auto view = factory->second();
    for (const pugi::xml_attribute attribute : node.attributes()) {
      const std::string name = attribute.name();
      if (const auto dot = name.find('.'); dot != std::string::npos) { // of one language
        if (!node.attribute(name.substr(0, dot).c_str()))
          refuse(node, name + " takes the place of nothing");
        continue;
      }
      const pugi::xml_attribute own = node.attribute((name + "." + language_).c_str());
      if (const auto value = resolve(node, name, own ? own.value() : attribute.value()))
        applyAttribute(*view, node, name, *value);
    }
    views_.push_back({view, node});
    std::vector<Named> children;
    for (const pugi::xml_node child : node.children()) {
      if (child.type() != pugi::node_element || std::string(child.name()) == "constraint") continue;
      auto subview = build(child, depth + 1);
      if (!subview) return nullptr;
      view->addSubview(subview);
      children.push_back({subview, child});
    }
    constrain(view, node, children);
    return view;
  }

  /// The attribute's value, where each "@name" has got its own; absent when one has none.
  std::optional<std::string> resolve(pugi::xml_node node, const std::string& attribute,
                                     const std::string& value) {
    if (!values_ || !value.starts_with('@')) return value;
    std::string result;
    for (const std::string& word : nib::words(value)) {
      const auto known = word.starts_with('@') ? values_(attribute, word.substr(1)) : std::nullopt;
      if (!known) {
        refuse(node, attribute + "=\"" + value + "\" has no value for " + word);
        return std::nullopt;
      }
      result += (result.empty() ? "" : " ") + *known;
    }
    return result;
  }

  void applyAttribute(UIView& view, pugi::xml_node node, const std::string& name,
                      const std::string& value) {
    if (name == "layout") return; // once the siblings are there
    if (name == "outlet" || name == "id") {
      view.outletName = value;
    } else if (name == "action") {
      auto* control = dynamic_cast<UIControl*>(&view);
      if (!control) return refuse(node, "only a control has an action, " + value);
      control->actionName = value;
    } else if (!view.setNibAttribute(name, value)) {
      refuse(node, className(view) + " takes no " + name + "=\"" + value + "\"");
    }
  }

  void constrain(const std::shared_ptr<UIView>& view, pugi::xml_node node,
                 const std::vector<Named>& children) {
    for (const Named& child : children) {
      const pugi::xml_attribute layout = child.node.attribute("layout");
      if (!layout) continue;
      const auto rules = NibConstraintRule::parseList(layout.value());
      if (!rules) return refuse(child.node, std::string("malformed layout ") + layout.value());
      for (const NibConstraintRule& rule : *rules)
        add(rule, view, child.view, child.node, children);
    }
    for (const pugi::xml_node element : node.children("constraint")) {
      const auto rule = NibConstraintRule::parse(element.attribute("rule").value());
      if (!rule || rule->firstItem.empty()) return refuse(element, "malformed constraint");
      for (const pugi::xml_attribute attribute : element.attributes())
        if (const std::string name = attribute.name(); name != "rule" && name != "outlet")
          return refuse(element, "a constraint takes no " + name);
      const auto added = add(*rule, view, nullptr, element, children);
      if (const pugi::xml_attribute outlet = element.attribute("outlet"); outlet && added)
        constraintOutlets_.push_back({outlet.value(), added, element});
    }
  }

  std::shared_ptr<NSLayoutConstraint> add(const NibConstraintRule& rule,
                                          const std::shared_ptr<UIView>& holder,
                                          const std::shared_ptr<UIView>& self, pugi::xml_node node,
                                          const std::vector<Named>& siblings) {
    const auto item = [&](const std::string& name) -> LayoutItem {
      if (name.empty()) return {LayoutItem::Kind::View, self};
      if (name == "super") return {LayoutItem::Kind::View, holder};
      if (name == "safe") return {LayoutItem::Kind::SafeArea, {}};
      for (const Named& sibling : siblings)
        if (sibling.view->outletName == name) return {LayoutItem::Kind::View, sibling.view};
      refuse(node, "no sibling is named " + name);
      return {};
    };
    auto constraint = std::make_shared<NSLayoutConstraint>();
    constraint->firstItem = item(rule.firstItem);
    constraint->firstAttribute = rule.first;
    if (rule.hasSecond) constraint->secondItem = item(rule.secondItem);
    constraint->secondAttribute = rule.second;
    constraint->multiplier = rule.multiplier;
    constraint->setConstant(rule.constant);
    holder->addConstraint(constraint);
    return constraint;
  }

  void connect() {
    for (const Named& named : views_) {
      if (named.node.attribute("outlet")) connectOutlet(named);
      if (const auto* control = dynamic_cast<UIControl*>(named.view.get());
          control && !control->actionName.empty())
        connectAction(named);
    }
    for (const auto& [name, constraint, node] : constraintOutlets_) {
      const auto declared =
          std::find_if(declaration_.constraints_.begin(), declaration_.constraints_.end(),
                       [&wanted = name](const auto& o) { return o.name == wanted; });
      if (declared == declaration_.constraints_.end())
        return refuse(node, "the owner has no outlet " + name);
      if (declared->connected) return refuse(node, "the outlet " + name + " is connected twice");
      *declared->field = constraint;
      declared->connected = true;
    }
    const pugi::xml_node root = document_.child("nib");
    for (const auto& outlet : declaration_.outlets_)
      if (!outlet.connected) refuse(root, "the outlet " + outlet.name + " is missing");
    for (const auto& outlet : declaration_.constraints_)
      if (!outlet.connected) refuse(root, "the outlet " + outlet.name + " is missing");
    for (const auto& [name, run] : declaration_.actions_)
      if (std::none_of(views_.begin(), views_.end(), [&wanted = name](const Named& named) {
            return named.node.attribute("action").value() == wanted;
          }))
        refuse(root, "the action " + name + " is missing");
  }

  void connectOutlet(const Named& named) {
    const std::string name = named.view->outletName;
    for (auto& outlet : declaration_.outlets_)
      if (outlet.name == name) {
        if (outlet.connected) refuse(named.node, "the outlet " + name + " is connected twice");
        if (!outlet.connect(named.view))
          refuse(named.node, "the outlet " + name + " is of another class");
        outlet.connected = true;
        return;
      }
    refuse(named.node, "the owner has no outlet " + name);
  }

  void connectAction(const Named& named) {
    auto& control = static_cast<UIControl&>(*named.view);
    for (const auto& [name, run] : declaration_.actions_)
      if (name == control.actionName) {
        control.addTarget(UIControlEvent::TouchUpInside, run);
        return;
      }
    refuse(named.node, "the owner has no action " + control.actionName);
  }

  static void awake(UIView& view) {
    for (const auto& subview : view.subviews())
      awake(*subview);
    view.awakeFromNib();
  }

  std::string file_, text_, language_, error_;
  Bundle::NibValues values_;
  pugi::xml_document document_;
  std::shared_ptr<UIView> view_;
  std::vector<Named> views_;
  std::vector<std::tuple<std::string, std::shared_ptr<NSLayoutConstraint>, pugi::xml_node>>
      constraintOutlets_;
  NibDeclaration declaration_;
};

namespace {

UINib::Result load(const std::string& name, const Bundle* bundle, NibDeclaration* owner) {
  const auto path = bundle ? bundle->path(name, "xml") : std::nullopt;
  const auto bytes = path ? FileManager::contents(*path) : std::nullopt;
  if (!bytes) return {nullptr, name + ".xml: there is no such nib"};
  const ImageBundleScope images(*bundle);
  return NibLoader(name + ".xml", bytes->string(), *bundle).load(owner);
}

} // namespace

UINib::Result UINib::instantiate(NibDeclaration owner) const {
  return load(name_, bundle_.get(), &owner);
}

UINib::Result UINib::instantiate() const {
  return load(name_, bundle_.get(), nullptr);
}

void UINib::registerClass(const std::string& name,
                          std::function<std::shared_ptr<UIView>()> factory) {
  classes()[name] = std::move(factory);
}

} // namespace zuvi
