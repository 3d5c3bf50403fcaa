#include <ZuviSDK/Foundation/Bundle.h>

#include "platform/Foundation/ProcessInfo.h"

#include <filesystem>
#include <system_error>

namespace zuvi {

namespace {

bool leavesFolder(const std::string& name) {
  const std::filesystem::path path(name);
  if (path.is_absolute() || name.find('\0') != std::string::npos) return true;
  for (const auto& part : path)
    if (part == "..") return true;
  return false;
}

} // namespace

Bundle& Bundle::main() {
  static Bundle bundle(std::filesystem::path(ProcessInfo::executablePath()).parent_path().string());
  return bundle;
}

std::optional<std::string> Bundle::path(const std::string& name, const std::string& type) const {
  const std::string file = type.empty() ? name : name + '.' + type;
  if (name.empty() || leavesFolder(file)) return std::nullopt;
  const std::string variant = variant_ ? variant_() : std::string();
  for (const std::string& folder : {variant.empty() ? folder_ : folder_ + '/' + variant, folder_}) {
    std::string path = folder + '/' + file;
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error)) return path;
  }
  return std::nullopt;
}

} // namespace zuvi
