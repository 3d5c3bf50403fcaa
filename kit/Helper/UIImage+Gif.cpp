#include "kit/Helper/UIImage+Gif.h"

#include <ZuviSDK/Dispatch/DispatchQueue.h>
#include <ZuviSDK/Foundation/Print.h>
#include <ZuviSDK/UIKit/UIImage.h>
#include "kit/Helper/ZVBundle.h"
#include "platform/Foundation/FileManager.h"
#include "platform/Foundation/URLSession.h"

#include <chrono>
#include <future>
#include <numeric>
#include <utility>

namespace zuvi {

namespace {

constexpr double leastDelay = 0.1; // seconds
constexpr std::chrono::seconds longestWait{60};
constexpr long mostSlices = 1L << 20; // of an animation; a file could ask for any number

std::optional<Data> contentsOf(const URL& url) {
  if (url.isFileURL()) return FileManager::contents(url.path());
  auto answer = std::make_shared<std::promise<std::optional<Data>>>();
  auto bytes = answer->get_future();
  // Only the request holds the promise. If the request is dropped, as at the end of the process,
  // the wait ends.
  URLSession::shared()
      .dataTask(URLRequest(url),
                [answer = std::move(answer)](const auto& data, const auto&, const auto&) {
                  answer->set_value(data);
                })
      ->resume();
  try {
    if (bytes.wait_for(longestWait) != std::future_status::ready) return std::nullopt;
    return bytes.get();
  } catch (const std::future_error&) {
    return std::nullopt;
  }
}

std::shared_ptr<const UIImage> gifOfURL(const std::string& name, const std::optional<URL>& url) {
  if (!url) {
    print("SwiftGif: This image named \"" + name + "\" does not exist");
    return nullptr;
  }
  const auto bytes = contentsOf(*url);
  if (!bytes) {
    print("SwiftGif: Cannot turn image named \"" + name + "\" into NSData");
    return nullptr;
  }
  return gifFromData(*bytes);
}

} // namespace

std::shared_ptr<const UIImage> gifNamed(const std::string& name) {
  const auto path = zvKitBundle()->path(name, "gif");
  return gifOfURL(name, path ? std::optional(URL::fromFilePath(*path)) : std::nullopt);
}

std::shared_ptr<const UIImage> gifFromURL(const std::string& text) {
  return gifOfURL(text, URL::fromString(text));
}

std::shared_ptr<const UIImage> gifFromData(const Data& data) {
  const auto source = CGImageSource::createWithData(data);
  if (!source) {
    print("SwiftGif: Source for the image does not exist");
    return nullptr;
  }
  return animatedImageWithSource(*source);
}

double delayOfProperties(const Value::Dictionary& properties) {
  const Value* gif = valueForKey(properties, kCGImagePropertyGIFDictionary);
  if (!gif || !gif->dictionary()) return leastDelay;
  const auto seconds = [&](const char* key) {
    const Value* value = valueForKey(*gif->dictionary(), key);
    return value ? value->number().value_or(0) : 0;
  };
  double delay = seconds(kCGImagePropertyGIFUnclampedDelayTime);
  if (delay == 0) delay = seconds(kCGImagePropertyGIFDelayTime);
  return delay < leastDelay ? leastDelay : delay;
}

double delayForImageAtIndex(std::size_t index, const CGImageSource* source) {
  return delayOfProperties(source ? source->copyPropertiesAtIndex(index) : Value::Dictionary());
}

int gcdForPair(std::optional<int> a, std::optional<int> b) {
  if (!a || !b) return a ? *a : b.value_or(0);
  return std::gcd(*a, *b);
}

int gcdForArray(const std::vector<int>& array) {
  if (array.empty()) return 1;
  int result = array.front();
  for (const int element : array)
    result = gcdForPair(element, result);
  return result;
}

std::shared_ptr<const UIImage> animatedImageWithSource(const CGImageSource& source) {
  std::vector<std::shared_ptr<const UIImage>> frames, slices;
  std::vector<int> delays; // milliseconds
  for (std::size_t i = 0; i < source.count(); i++) {
    auto frame = UIImage::fromCGImage(source.createImageAtIndex(i));
    if (!frame) continue; // its delay is left out, too
    frames.push_back(std::move(frame));
    delays.push_back(static_cast<int>(delayForImageAtIndex(i, &source) * 1000.0));
  }
  const int slice = gcdForArray(delays);
  const long total = std::accumulate(delays.begin(), delays.end(), 0L);
  if (frames.empty() || total / slice > mostSlices) {
    print(frames.empty() ? "SwiftGif: The image has no frames"
                         : "SwiftGif: The image repeats its frames too often");
    return nullptr;
  }
  for (std::size_t i = 0; i < frames.size(); i++)
    slices.insert(slices.end(), static_cast<std::size_t>(delays[i] / slice), frames[i]);
  return UIImage::animatedImage(std::move(slices), static_cast<double>(total) / 1000.0);
}

void loadGif(const std::shared_ptr<UIImageView>& view, const std::string& name) {
  zvKitBundle(); // made on the main queue
  DispatchQueue::global().async([view = std::weak_ptr(view), name] {
    DispatchQueue::main().async([view, image = gifNamed(name)] {
      if (const auto shown = view.lock()) shown->setImage(image);
    });
  });
}

} // namespace zuvi
