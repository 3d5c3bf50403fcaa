#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace zuvi {

class UIView;

/// The platform's own classes that a nib may name.
std::map<std::string, std::function<std::shared_ptr<UIView>()>> standardNibClasses();

} // namespace zuvi
