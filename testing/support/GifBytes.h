#pragma once

#include <ZuviSDK/Foundation/Data.h>

#include <string>
#include <vector>

#include <gif_lib.h>

namespace zuvi::test {

/// A frame of a GIF of the test's own. Colours: 0 red, 1 green, 2 blue, 3 white.
struct GifBlock {
  int left = 0, top = 0, width = 1, height = 1;
  std::string colors = {}; ///< a digit for each pixel
  int delay = -1;          ///< in hundredths of a second; negative: the frame has no control block
  int disposal = DISPOSAL_UNSPECIFIED;
  int transparent = NO_TRANSPARENT_COLOR;
  bool interlaced = false;
  bool ownColors = false; ///< the same four, backwards
};

/// Built with the library's own writer, which is not what is tested.
inline Data makeGif(int width, int height, const std::vector<GifBlock>& blocks) {
  std::string bytes;
  GifFileType* file = EGifOpen(
      &bytes,
      [](GifFileType* to, const GifByteType* from, int size) {
        static_cast<std::string*>(to->UserData)
            ->append(reinterpret_cast<const char*>(from), static_cast<std::size_t>(size));
        return size;
      },
      nullptr);
  const GifColorType colors[] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}};
  const GifColorType backwards[] = {colors[3], colors[2], colors[1], colors[0]};
  ColorMapObject* map = GifMakeMapObject(4, colors);
  ColorMapObject* own = GifMakeMapObject(4, backwards);
  EGifSetGifVersion(file, true);
  EGifPutScreenDesc(file, width, height, 2, 0, map);
  for (const GifBlock& block : blocks) {
    if (block.delay >= 0) {
      const GraphicsControlBlock control{block.disposal, false, block.delay, block.transparent};
      GifByteType extension[4];
      EGifPutExtension(file, GRAPHICS_EXT_FUNC_CODE,
                       static_cast<int>(EGifGCBToExtension(&control, extension)), extension);
    }
    EGifPutImageDesc(file, block.left, block.top, block.width, block.height, block.interlaced,
                     block.ownColors ? own : nullptr);
    std::string numbers = block.colors;
    numbers.resize(static_cast<std::size_t>(block.width) * static_cast<std::size_t>(block.height),
                   '0');
    for (char& number : numbers)
      number = static_cast<char>(number - '0');
    EGifPutLine(file, reinterpret_cast<GifPixelType*>(numbers.data()),
                static_cast<int>(numbers.size()));
    GifFreeMapObject(file->Image.ColorMap); // which the writer forgets
    file->Image.ColorMap = nullptr;
  }
  EGifCloseFile(file, nullptr);
  GifFreeMapObject(map);
  GifFreeMapObject(own);
  return Data(bytes);
}

} // namespace zuvi::test
