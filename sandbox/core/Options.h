#pragma once

#include "sandbox/core/Result.h"
#include "sandbox/core/Server.h"
#include "sandbox/core/page/Snapshot.h"

#include <string>
#include <string_view>
#include <vector>

namespace zuvi::sandbox {

enum class Task { serve, snapshot, help };

/// What the command line asks for.
struct Options {
  Task task = Task::serve;
  ServerOptions server;     ///< of `serve`
  SnapshotOptions snapshot; ///< of `snapshot`
};

/// Reads the arguments behind the program's name, and the merchants file that they name.
Result<Options> readOptions(const std::vector<std::string>& arguments);

std::string_view usage();

} // namespace zuvi::sandbox
