#include "sandbox/core/page/Snapshot.h"

#include "sandbox/core/File.h"
#include "sandbox/core/page/Page.h"
#include "sandbox/core/store/Store.h"
#include "sandbox/core/text/PercentCoding.h"

#include <algorithm>

namespace zuvi::sandbox {
namespace {

namespace fs = std::filesystem;

std::string linkTo(const fs::path& target, const fs::path& fromFolder) {
  std::error_code error;
  const auto relative = fs::relative(target, fromFolder, error);
  return encodePath((error || relative.empty() ? target : relative).generic_string());
}

Result<std::vector<fs::path>> picturesIn(const fs::path& folder) {
  std::vector<fs::path> pictures;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error))
    if (entry->path().extension() == ".png") pictures.push_back(entry->path());
  if (error) return Error{"cannot read the folder " + folder.string() + ": " + error.message()};
  std::sort(pictures.begin(), pictures.end());
  return pictures;
}

} // namespace

Result<Done> writeSnapshot(const SnapshotOptions& options) {
  const auto store = Store::open(options.dataFolder, OpenMode::mustExist);
  if (!store) return store.error();
  const auto arrivals = (*store)->arrivals();
  if (!arrivals) return arrivals.error();

  const auto parent = options.page.parent_path();
  const auto folder = parent.empty() ? fs::path(".") : parent;
  if (auto made = makeFolder(folder); !made) return made;
  std::vector<GalleryPicture> gallery;
  if (!options.picturesFolder.empty()) {
    const auto pictures = picturesIn(options.picturesFolder);
    if (!pictures) return pictures.error();
    for (const auto& picture : *pictures)
      gallery.push_back({linkTo(picture, folder), picture.stem().string()});
  }
  const std::string files = linkTo((*store)->filesFolder(), folder) + "/";
  return writeFile(options.page, snapshotPage(*arrivals, files, gallery));
}

} // namespace zuvi::sandbox
