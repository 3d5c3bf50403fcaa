#pragma once

/// Marks what a host may call: all else stays inside the shared library.
#define ZUVI_API __attribute__((visibility("default")))
