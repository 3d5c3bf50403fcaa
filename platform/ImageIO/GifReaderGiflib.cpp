#include "platform/ImageIO/GifReader.h"

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
constexpr long pixelsPerByte = 1024;    // beside one whole canvas; no real animation has more

struct Close {
  void operator()(GifFileType* file) const { DGifCloseFile(file, nullptr); }
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

} // namespace

struct GifReader::File {
  explicit File(const Data& data)
      : bytes(data), gif(DGifOpen(this, &File::read, nullptr)),
        pixelsLeft(std::min(mostPixels, mostCanvasPixels + long(data.size()) * pixelsPerByte)) {}

  static int read(GifFileType* gif, GifByteType* buffer, int size) {
    auto& file = *static_cast<File*>(gif->UserData);
    const auto room = std::min(static_cast<std::size_t>(size), file.bytes.size() - file.at);
    if (room > 0) std::memcpy(buffer, file.bytes.bytes() + file.at, room);
    file.at += room;
    return static_cast<int>(room);
  }

  std::optional<GifFrame> readFrame(const GraphicsControlBlock* control);

  Data bytes;
  std::size_t at = 0;
  std::unique_ptr<GifFileType, Close> gif;
  long pixelsLeft;
  bool ended = false;
};

std::optional<GifFrame> GifReader::File::readFrame(const GraphicsControlBlock* control) {
  if (DGifGetImageDesc(gif.get()) == GIF_ERROR) return std::nullopt;
  const GifImageDesc& place = gif->Image;
  GifFrame frame;
  frame.left = place.Left;
  frame.top = place.Top;
  frame.width = place.Width;
  frame.height = place.Height;
  if (control) readControl(*control, frame);
  const ColorMapObject* map = place.ColorMap ? place.ColorMap : gif->SColorMap;
  for (int i = 0; map && i < std::min(map->ColorCount, 256); i++)
    frame.colors[static_cast<std::size_t>(i)] = opaque(map->Colors[i]);
  if (control && control->TransparentColor >= 0 && control->TransparentColor < 256)
    frame.colors[static_cast<std::size_t>(control->TransparentColor)] = 0;
  // The smallest frame makes a picture of the whole canvas.
  pixelsLeft -= std::max(long{frame.width} * frame.height, long{gif->SWidth} * gif->SHeight);
  ended = frame.width <= 0 || frame.height <= 0 || pixelsLeft < 0 || !map ||
          !readNumbers(gif.get(), frame);
  return frame;
}

std::optional<GifReader> GifReader::open(const Data& bytes) {
  auto file = std::make_shared<File>(bytes);
  const GifFileType* gif = file->gif.get();
  if (!gif || gif->SWidth <= 0 || gif->SHeight <= 0 ||
      long{gif->SWidth} * gif->SHeight > mostCanvasPixels)
    return std::nullopt;
  return GifReader(std::move(file));
}

int GifReader::width() const {
  return file_->gif->SWidth;
}

int GifReader::height() const {
  return file_->gif->SHeight;
}

std::optional<GifFrame> GifReader::next() {
  GifFileType* gif = file_->gif.get();
  GraphicsControlBlock control{};
  bool controlled = false;
  for (GifRecordType type = UNDEFINED_RECORD_TYPE;
       !file_->ended && DGifGetRecordType(gif, &type) == GIF_OK && type != TERMINATE_RECORD_TYPE;) {
    if (type == EXTENSION_RECORD_TYPE && !readExtension(gif, control, controlled)) break;
    if (type == IMAGE_DESC_RECORD_TYPE) {
      auto frame = file_->readFrame(controlled ? &control : nullptr);
      file_->ended = file_->ended || !frame;
      return frame;
    }
  }
  file_->ended = true;
  return std::nullopt;
}

} // namespace zuvi
