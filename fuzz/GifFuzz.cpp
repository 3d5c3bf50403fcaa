// Animated pictures, of any bytes.

#include "fuzz/Json.h"
#include "kit/Helper/UIImage+Gif.h"

#include <cstdio>

using namespace zuvi;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  return std::freopen("/dev/null", "w", stdout) ? 0 : 1; // what can't be read prints a line
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const Data data{std::string(fuzz::textOf(bytes, size))};
  const auto source = CGImageSource::createWithData(data);
  if (!source) {
    fuzz::expect(!gifFromData(data));
    return 0;
  }
  for (std::size_t i = 0; i < source->count(); i++)
    fuzz::expect(delayForImageAtIndex(i, source.get()) >= 0.1);
  const auto image = animatedImageWithSource(*source);
  if (image) fuzz::expect(image->duration() > 0 && !image->images().empty());
  return 0;
}
