#pragma once

namespace zuvi {

/// Says so when `what` is touched on another thread than the main one: in a debug build by ending
/// the program, else in one line on standard error, once.
void assertMainQueue(const char* what);

} // namespace zuvi
