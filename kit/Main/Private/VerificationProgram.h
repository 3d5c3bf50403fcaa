#pragma once

#include <string>
#include <vector>

namespace zuvi {

/// The command with its program's path: a name without "/" is looked for where the kit's programs
/// are installed, seen from the library. What is not found there is left to PATH.
std::vector<std::string> locateProgram(std::vector<std::string> command);

/// What the host told the kit in this process, as `zuvi-verify --input` reads it.
std::string verificationInput();

} // namespace zuvi
