#pragma once

/// @cond
// What hosts link against: a class with what it declares, or one function. Within such a class
// ZUVI_HIDDEN marks what only the kit itself calls. cmake/abi lists the outcome.
#define ZUVI_API __attribute__((visibility("default")))
#define ZUVI_HIDDEN __attribute__((visibility("hidden")))
/// @endcond
