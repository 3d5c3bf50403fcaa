#pragma once

#include "sandbox/core/Result.h"

#include <filesystem>

namespace zuvi::sandbox {

struct SnapshotOptions {
  std::filesystem::path page;           ///< the file to write
  std::filesystem::path dataFolder;     ///< must hold a store
  std::filesystem::path picturesFolder; ///< its PNG pictures are shown too; may be empty
};

/// Writes a page of all that is stored. Its links are relative to the page.
Result<Done> writeSnapshot(const SnapshotOptions& options);

} // namespace zuvi::sandbox
