#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zuvi {

// Numbers in texts that programs read: with a decimal point, whatever the process's locale has.

/// The whole text as a finite number; absent when it is none.
std::optional<double> decimalNumber(std::string_view text);
/// At most so many digits, without needless noughts.
std::string decimalText(double number, int digits);

} // namespace zuvi
