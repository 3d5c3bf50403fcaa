#include "platform/ImageIO/GifFramesGiflib.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include <gif_lib.h>

namespace zuvi {

namespace {

// A file of a few bytes may claim sizes of gigabytes.
constexpr long mostCanvasPixels = 4096L * 4096;
constexpr long mostPixels = 256L << 20; // of the pictures of all frames

struct Close {
  void operator()(GifFileType* file) const { DGifCloseFile(file, nullptr); }
};

struct Cursor {
  Data bytes;
  std::size_t at = 0;

  static int read(GifFileType* file, GifByteType* buffer, int size) {
    auto& cursor = *static_cast<Cursor*>(file->UserData);
    const auto room = std::min(static_cast<std::size_t>(size), cursor.bytes.size() - cursor.at);
    if (room > 0) std::memcpy(buffer, cursor.bytes.bytes() + cursor.at, room);
    cursor.at += room;
    return static_cast<int>(room);
  }
};

std::uint32_t opaque(const GifColorType& color) {
  return 0xff000000U | std::uint32_t{color.Red} << 16 | std::uint32_t{color.Green} << 8 |
         color.Blue;
}

void readControl(const GraphicsControlBlock& control, GifFrame& frame) {
  frame.delay = control.DelayTime;
  if (control.DisposalMode == DISPOSE_BACKGROUND) frame.disposal = GifFrame::Disposal::Clear;
  if (control.DisposalMode == DISPOSE_PREVIOUS) frame.disposal = GifFrame::Disposal::Restore;
}

/// The extensions before a frame; the last control block holds.
bool readExtension(GifFileType* file, GraphicsControlBlock& control, bool& controlled) {
  int function = 0;
  GifByteType* block = nullptr;
  if (DGifGetExtension(file, &function, &block) == GIF_ERROR) return false;
  if (function == GRAPHICS_EXT_FUNC_CODE && block)
    controlled = DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK;
  while (block)
    if (DGifGetExtensionNext(file, &block) == GIF_ERROR) return false;
  return true;
}

bool readNumbers(GifFileType* file, GifFrame& frame) {
  const auto width = static_cast<std::size_t>(frame.width);
  const std::size_t size = width * static_cast<std::size_t>(frame.height);
  auto numbers = std::make_unique_for_overwrite<std::uint8_t[]>(size);
  const auto readLine = [&](int line) {
    return DGifGetLine(file, numbers.get() + width * static_cast<std::size_t>(line), frame.width) ==
           GIF_OK;
  };
  // An interlaced frame comes in four passes.
  constexpr std::pair<int, int> passes[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
  if (!file->Image.Interlace) {
    if (DGifGetLine(file, numbers.get(), static_cast<int>(size)) == GIF_ERROR) return false;
  } else {
    for (const auto& [first, step] : passes)
      for (int line = first; line < frame.height; line += step)
        if (!readLine(line)) return false;
  }
  frame.numbers = std::move(numbers);
  return true;
}

/// False when nothing after it can be read.
bool readFrame(GifFileType* file, GifFile& gif, const GraphicsControlBlock* control,
               long& pixelsLeft) {
  if (DGifGetImageDesc(file) == GIF_ERROR) return false;
  const GifImageDesc& place = file->Image;
  GifFrame frame;
  frame.left = place.Left;
  frame.top = place.Top;
  frame.width = place.Width;
  frame.height = place.Height;
  if (control) readControl(*control, frame);
  const ColorMapObject* map = place.ColorMap ? place.ColorMap : file->SColorMap;
  for (int i = 0; map && i < std::min(map->ColorCount, 256); i++)
    frame.colors[static_cast<std::size_t>(i)] = opaque(map->Colors[i]);
  if (control && control->TransparentColor >= 0 && control->TransparentColor < 256)
    frame.colors[static_cast<std::size_t>(control->TransparentColor)] = 0;
  // The smallest frame makes a picture of the whole canvas.
  pixelsLeft -= std::max(long{frame.width} * frame.height, long{gif.width} * gif.height);
  const bool read =
      frame.width > 0 && frame.height > 0 && pixelsLeft >= 0 && map && readNumbers(file, frame);
  gif.frames.push_back(std::move(frame));
  return read;
}

} // namespace

std::optional<GifFile> readGif(const Data& bytes) {
  Cursor cursor{bytes};
  const std::unique_ptr<GifFileType, Close> file(DGifOpen(&cursor, &Cursor::read, nullptr));
  if (!file) return std::nullopt;
  GifFile gif{file->SWidth, file->SHeight, {}};
  if (gif.width <= 0 || gif.height <= 0 || long{gif.width} * gif.height > mostCanvasPixels)
    return std::nullopt;
  GraphicsControlBlock control{};
  bool controlled = false;
  long pixelsLeft = mostPixels;
  for (GifRecordType type = UNDEFINED_RECORD_TYPE;
       DGifGetRecordType(file.get(), &type) == GIF_OK && type != TERMINATE_RECORD_TYPE;) {
    if (type == EXTENSION_RECORD_TYPE && !readExtension(file.get(), control, controlled)) break;
    if (type != IMAGE_DESC_RECORD_TYPE) continue;
    if (!readFrame(file.get(), gif, controlled ? &control : nullptr, pixelsLeft)) break;
    controlled = false;
  }
  return gif;
}

} // namespace zuvi
