#pragma once

#include "sandbox/core/store/Records.h"

#include <string>
#include <string_view>
#include <vector>

namespace zuvi::sandbox {

/// A picture that a page shows besides what arrived.
struct GalleryPicture {
  std::string link;
  std::string caption;
};

/// The page that a running server answers; its script and style are files of their own.
std::string livePage(const Arrivals& arrivals);

/// The same without a server: style inside, no script, links as given.
std::string snapshotPage(const Arrivals& arrivals, std::string_view files,
                         const std::vector<GalleryPicture>& gallery);

} // namespace zuvi::sandbox
