// Draws the animated instruction of the recorder:   zuvi-liveness-gif FILE

#include "kit/Resources/liveness/Face.h"
#include "platform/ImageIO/SvgImage.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>

#include <gif_lib.h>

using namespace zuvi;

namespace {

constexpr int width = 390, height = 510; // one and a half times its size in points
constexpr int transparent = 0;
constexpr int shades = 63; // from the rim's dark to white

struct MapFree {
  void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};
using MapPointer = std::unique_ptr<ColorMapObject, MapFree>;

MapPointer makeColors() {
  MapPointer map(GifMakeMapObject(shades + 1, nullptr));
  const auto mix = [](int from, int shade) {
    return static_cast<GifByteType>(from + (255 - from) * shade / (shades - 1));
  };
  for (int shade = 0; map && shade < shades; shade++)
    map->Colors[shade + 1] = {mix(0x0b, shade), mix(0x13, shade), mix(0x20, shade)};
  return map;
}

/// The colour numbers of a drawing; a pixel is there or not, as GIFs know no half.
std::optional<std::vector<GifByteType>> numbersOf(const FacePose& pose) {
  const auto drawing = SvgImage::fromData(Data(faceDrawing(pose, width, height)));
  const auto picture = drawing ? drawing->rasterize(width, height) : nullptr;
  if (!picture || picture->width() != width || picture->height() != height) return std::nullopt;
  const Data pixels = picture->pixels();
  std::vector<GifByteType> numbers(std::size_t{width} * height, transparent);
  for (std::size_t i = 0; i < numbers.size(); i++) {
    const auto* bgra = pixels.bytes() + 4 * i;
    if (bgra[3] < 128) continue;
    const int green = std::min(255, bgra[1] * 255 / bgra[3]); // its share without the alpha
    numbers[i] = static_cast<GifByteType>(
        1 + std::clamp((green - 0x13) * (shades - 1) / (255 - 0x13), 0, shades - 1));
  }
  return numbers;
}

bool writeFrame(GifFileType* file, const FacePose& pose) {
  auto numbers = numbersOf(pose);
  if (!numbers) return false;
  const GraphicsControlBlock control{DISPOSE_BACKGROUND, false, pose.delay, transparent};
  GifByteType block[4];
  const auto size = static_cast<int>(EGifGCBToExtension(&control, block));
  return EGifPutExtension(file, GRAPHICS_EXT_FUNC_CODE, size, block) == GIF_OK &&
         EGifPutImageDesc(file, 0, 0, width, height, false, nullptr) == GIF_OK &&
         EGifPutLine(file, numbers->data(), static_cast<int>(numbers->size())) == GIF_OK;
}

bool write(const char* path) {
  GifFileType* file = EGifOpenFileName(path, false, nullptr);
  if (!file) return false;
  EGifSetGifVersion(file, true);
  const MapPointer colors = makeColors();
  bool good = colors && EGifPutScreenDesc(file, width, height, 6, 0, colors.get()) == GIF_OK;
  for (const FacePose& pose : faceMovement())
    good = good && writeFrame(file, pose);
  good = EGifCloseFile(file, nullptr) == GIF_OK && good;
  // The library keeps its files to their maker.
  std::error_code failed;
  using std::filesystem::perms;
  std::filesystem::permissions(path, perms(0644), failed);
  return good && !failed;
}

} // namespace

int main(int argc, char** argv) {
  if (argc == 2 && write(argv[1])) return 0;
  std::fprintf(stderr, "zuvi-liveness-gif: the picture can't be written\n");
  return 1;
}
