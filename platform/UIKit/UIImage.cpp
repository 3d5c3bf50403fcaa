#include <ZuviSDK/UIKit/UIImage.h>

#include <ZuviSDK/CoreGraphics/CGImage.h>
#include <ZuviSDK/Foundation/Bundle.h>
#include "platform/Foundation/FileManager.h"
#include "platform/ImageIO/ImageFile.h"
#include "platform/ImageIO/SvgImage.h"
#include "platform/UIKit/UIImageNames.h"

#include <cmath>
#include <mutex>

namespace zuvi {

namespace {
const Bundle* scopeBundle = nullptr;
}

ImageBundleScope::ImageBundleScope(const Bundle& bundle)
    : outer_(std::exchange(scopeBundle, &bundle)) {}

ImageBundleScope::~ImageBundleScope() {
  scopeBundle = outer_;
}

std::shared_ptr<const UIImage> ImageBundleScope::imageNamed(const std::string& name) {
  return scopeBundle ? UIImage::named(name, *scopeBundle) : nullptr;
}

std::shared_ptr<const UIImage> UIImage::named(const std::string& name, const Bundle& bundle) {
  // A picture that somebody shows is not read again.
  static std::map<std::string, std::weak_ptr<const UIImage>> shown;
  static std::mutex lock;
  for (const char* type : {"svg", "png", "jpg"}) {
    const auto path = bundle.path(name, type);
    if (!path) continue;
    const std::lock_guard guard(lock);
    if (auto known = shown[*path].lock()) return known;
    const auto bytes = FileManager::contents(*path);
    const auto image = bytes ? fromData(*bytes) : nullptr;
    if (!image) continue;
    auto withName = std::make_shared<UIImage>(*image);
    withName->name_ = name;
    shown[*path] = withName;
    return withName;
  }
  return nullptr;
}

std::shared_ptr<const UIImage> UIImage::fromData(const Data& bytes) {
  auto image = std::make_shared<UIImage>();
  image->bitmap_ = decodeImage(bytes);
  if (!image->bitmap_) image->drawing_ = SvgImage::fromData(bytes);
  if (!image->bitmap_ && !image->drawing_) return nullptr;
  return image;
}

std::shared_ptr<const UIImage> UIImage::fromCGImage(std::shared_ptr<const CGImage> bitmap,
                                                    double scale) {
  if (!bitmap) return nullptr;
  auto image = std::make_shared<UIImage>();
  image->bitmap_ = std::move(bitmap);
  image->bitmapScale_ = scale;
  return image;
}

std::shared_ptr<const UIImage>
UIImage::animatedImage(std::vector<std::shared_ptr<const UIImage>> images, double duration) {
  if (images.empty()) return nullptr;
  auto image = std::make_shared<UIImage>();
  image->images_ = std::move(images);
  image->duration_ = duration;
  return image;
}

CGSize UIImage::size() const {
  if (drawing_) return drawing_->size();
  if (bitmap_) return {bitmap_->width() / bitmapScale_, bitmap_->height() / bitmapScale_};
  return images_.empty() ? CGSize{} : images_.front()->size();
}

std::shared_ptr<const CGImage> UIImage::pixels(CGSize area, double scale) const {
  if (bitmap_) return bitmap_;
  if (!drawing_) return images_.empty() ? nullptr : images_.front()->pixels(area, scale);
  const std::pair pixels{static_cast<int>(std::lround(area.width * scale)),
                         static_cast<int>(std::lround(area.height * scale))};
  auto& held = rasterized_[pixels];
  if (auto known = held.lock()) return known;
  auto made = drawing_->rasterize(pixels.first, pixels.second);
  held = made;
  return made;
}

} // namespace zuvi
