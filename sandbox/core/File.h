#pragma once

#include "sandbox/core/Result.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace zuvi::sandbox {

Result<std::string> readFile(const std::filesystem::path& path);

enum class FileAccess { everyone, ownerOnly };

/// Writes beside the file first, so that a reader never sees half of it.
Result<Done> writeFile(const std::filesystem::path& path, std::string_view bytes,
                       FileAccess access = FileAccess::everyone);

/// Makes the folder, for its owner alone, and those above it, if they are not there.
Result<Done> makeFolder(const std::filesystem::path& path);

} // namespace zuvi::sandbox
