#include "kit/Helper/ZVBundle.h"

#include "platform/Foundation/ProcessInfo.h"

#include <filesystem>

namespace zuvi {

namespace {

std::string bundleFolder() {
  const std::filesystem::path code =
      ProcessInfo::folderOfCode(reinterpret_cast<const void*>(&bundleFolder));
  for (const std::filesystem::path& place :
       {code / "ZuviSDK.bundle", code / "../share/zuvisdk/ZuviSDK.bundle",
        code / "../../share/zuvisdk/ZuviSDK.bundle"}) { // from lib/ARCHITECTURE
    std::error_code failed;
    if (std::filesystem::is_directory(place, failed)) return place.string();
  }
  return (code / "ZuviSDK.bundle").string();
}

} // namespace

std::shared_ptr<const Bundle> zvKitBundle() {
  static const auto bundle = std::make_shared<const Bundle>(bundleFolder());
  return bundle;
}

} // namespace zuvi
