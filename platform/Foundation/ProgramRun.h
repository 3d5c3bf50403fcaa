#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zuvi {

/// Starts a program with `input` as its standard input. It ends with this one.
/// `line` gets each line of its standard output. `ended` is called once, after the last line, with
/// the exit status; -1: it could not be started, or a signal ended it, as it does to one that
/// prints a line of more than a MiB. Main queue only; needs GLib's default loop.
void runProgram(const std::vector<std::string>& command, const std::string& input,
                std::function<void(const std::string&)> line, std::function<void(int)> ended);

} // namespace zuvi
