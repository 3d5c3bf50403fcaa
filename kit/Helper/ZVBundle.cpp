#include "kit/Helper/ZVBundle.h"

#include "platform/Foundation/ProcessInfo.h"

#include <atomic>
#include <filesystem>

namespace zuvi {

namespace {

std::atomic<bool> dark = false; // pictures are also looked for on other threads

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
  static const std::shared_ptr<const Bundle> bundle = [] {
    auto made = std::make_shared<Bundle>(bundleFolder());
    made->setVariant([] { return dark ? "dark" : ""; });
    return made;
  }();
  return bundle;
}

bool isDark() {
  return dark;
}

void setDark(bool isWanted) {
  dark = isWanted;
}

} // namespace zuvi
