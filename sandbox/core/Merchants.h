#pragma once

#include "sandbox/core/Result.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zuvi::sandbox {

/// The merchants that this back end knows, each under the client id that it registers with.
class Merchants {
public:
  /// Those that are built into the program.
  static Merchants samples();
  /// Reads a JSON object whose keys are client ids and whose values are the answers to give.
  static Result<Merchants> fromFile(const std::filesystem::path& file);
  static Result<Merchants> fromText(std::string_view text);

  bool knows(std::string_view clientId) const { return answers_.contains(clientId); }
  /// The merchant's JSON text. "{sandbox}" in it stands for the address of this server.
  std::optional<std::string> answer(std::string_view clientId, std::string_view address) const;
  std::vector<std::string> clientIds() const;

private:
  std::map<std::string, std::string, std::less<>> answers_;
};

} // namespace zuvi::sandbox
