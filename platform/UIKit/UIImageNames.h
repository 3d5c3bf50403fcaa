#pragma once

#include <ZuviSDK/Foundation/Bundle.h>

#include <memory>
#include <string>

namespace zuvi {

class UIImage;

/// While one lives, the pictures that nib attributes name are looked up in this bundle.
class ImageBundleScope {
public:
  explicit ImageBundleScope(const Bundle& bundle);
  ~ImageBundleScope();
  ImageBundleScope(const ImageBundleScope&) = delete;

  /// Null when there is no scope or no such picture.
  static std::shared_ptr<const UIImage> imageNamed(const std::string& name);

private:
  const Bundle* outer_;
};

} // namespace zuvi
