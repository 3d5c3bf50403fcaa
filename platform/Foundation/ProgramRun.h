#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zuvi {

/// Starts a program, writes `input` to its standard input, and closes that. It ends with this one.
/// `line` gets each line of its standard output. `ended` is called once, after the last line, with
/// the exit status; -1: it could not be started, or a signal ended it. Main queue only; needs
/// GLib's default loop.
void runProgram(const std::vector<std::string>& command, const std::string& input,
                std::function<void(const std::string&)> line, std::function<void(int)> ended);

} // namespace zuvi
