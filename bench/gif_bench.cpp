// Sixty composed frames of 480 x 480 beside the GIF library alone reading the same bytes, and the
// memory that they take beside that of their pixels.

#include "bench/Measure.h"
#include "platform/ImageIO/CGImageSource.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>

#include <gif_lib.h>

using namespace zuvi;
using namespace zuvi::bench;

namespace {

constexpr int side = 480, frames = 60, colors = 256;

/// Discs of many shades that move, over a plain ground.
std::string movingDiscs() {
  std::string bytes;
  GifFileType* file = EGifOpen(
      &bytes,
      [](GifFileType* to, const GifByteType* from, int size) {
        static_cast<std::string*>(to->UserData)
            ->append(reinterpret_cast<const char*>(from), std::size_t(size));
        return size;
      },
      nullptr);
  ColorMapObject* map = GifMakeMapObject(colors, nullptr);
  for (int i = 0; i < colors; i++)
    map->Colors[i] = {GifByteType(i), GifByteType(255 - i), GifByteType(i / 2)};
  EGifSetGifVersion(file, true);
  EGifPutScreenDesc(file, side, side, 8, 0, map);
  std::string numbers(std::size_t{side} * side, '\0');
  for (int frame = 0; frame < frames; frame++) {
    const GraphicsControlBlock control{DISPOSE_DO_NOT, false, 5, NO_TRANSPARENT_COLOR};
    GifByteType extension[4];
    EGifPutExtension(file, GRAPHICS_EXT_FUNC_CODE, int(EGifGCBToExtension(&control, extension)),
                     extension);
    EGifPutImageDesc(file, 0, 0, side, side, false, nullptr);
    for (int y = 0; y < side; y++)
      for (int x = 0; x < side; x++) {
        const int dx = (x + 4 * frame) % 120 - 60, dy = y % 120 - 60;
        const int distance = dx * dx + dy * dy;
        numbers[std::size_t(y) * side + std::size_t(x)] =
            char(distance < 2500 ? 1 + distance * 254 / 2500 : 0);
      }
    EGifPutLine(file, reinterpret_cast<GifPixelType*>(numbers.data()), int(numbers.size()));
  }
  EGifCloseFile(file, nullptr);
  GifFreeMapObject(map);
  return bytes;
}

struct Cursor {
  const std::string& bytes;
  std::size_t at = 0;
};

/// `withPixels`: also the least that has to be done to see something, one colour for each number.
void readWithLibrary(const std::string& bytes, bool withPixels) {
  Cursor cursor{bytes};
  GifFileType* file = DGifOpen(
      &cursor,
      [](GifFileType* from, GifByteType* buffer, int size) {
        auto& at = *static_cast<Cursor*>(from->UserData);
        const auto room = std::min(std::size_t(size), at.bytes.size() - at.at);
        std::memcpy(buffer, at.bytes.data() + at.at, room);
        at.at += room;
        return int(room);
      },
      nullptr);
  if (!file || DGifSlurp(file) != GIF_OK || file->ImageCount != frames) std::abort();
  constexpr std::size_t size = std::size_t{side} * side;
  std::vector<std::unique_ptr<std::uint32_t[]>> pictures;
  for (int i = 0; withPixels && i < frames; i++) {
    std::uint32_t palette[colors];
    for (int color = 0; color < colors; color++) {
      const GifColorType& c = file->SColorMap->Colors[color];
      palette[color] = 0xff000000U | std::uint32_t(c.Red << 16 | c.Green << 8 | c.Blue);
    }
    pictures.push_back(std::make_unique_for_overwrite<std::uint32_t[]>(size));
    std::transform(file->SavedImages[i].RasterBits, file->SavedImages[i].RasterBits + size,
                   pictures.back().get(), [&](GifByteType number) { return palette[number]; });
  }
  DGifCloseFile(file, nullptr);
}

std::vector<std::shared_ptr<const CGImage>> compose(const Data& bytes) {
  const auto source = CGImageSource::createWithData(bytes);
  std::vector<std::shared_ptr<const CGImage>> images;
  for (std::size_t i = 0; source && i < source->count(); i++)
    images.push_back(source->createImageAtIndex(i));
  if (images.size() != frames) std::abort();
  return images;
}

double peakMiB() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return double(usage.ru_maxrss) / 1024;
}

} // namespace

int main() {
  const std::string bytes = movingDiscs();
  const Data data{std::string(bytes)};
  const double before = peakMiB();
  compose(data);
  const double taken = peakMiB() - before;

  struct Times {
    std::vector<double> wall, processor;
    void measure(const std::function<void()>& work) {
      const double start = wallSeconds(), busy = processorSeconds();
      work();
      wall.push_back(wallSeconds() - start);
      processor.push_back(processorSeconds() - busy);
    }
  } alone, least, ours;
  for (int i = 0; i < 15; i++) {
    alone.measure([&] { readWithLibrary(bytes, false); });
    least.measure([&] { readWithLibrary(bytes, true); });
    ours.measure([&] { compose(data); });
  }
  const auto print = [&](const char* what, std::vector<double> Times::*times) {
    std::printf("%s\n", what);
    const Figures baseline = figuresOf(alone.*times);
    report("  library alone, numbers of 60 frames", baseline);
    report("  library and one lookup a pixel", figuresOf(least.*times), &baseline);
    report("  CGImageSource, pixels of 60 frames", figuresOf(ours.*times), &baseline);
  };
  print("time that passes", &Times::wall);
  print("time of processors", &Times::processor);
  const double pixels = double(side) * side * 4 * frames / (1 << 20);
  std::printf("%-44s %.1f MiB, the pixels alone %.1f MiB, ratio %.2f\n", "memory at the peak",
              taken, pixels, taken / pixels);
}
