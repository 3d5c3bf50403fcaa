#pragma once

#include <memory>

namespace zuvi {

/// A connection to the desktop's media server that says nothing: it ends when the server does,
/// which GStreamer's devices and cameras are not told.
class MediaServerLink {
public:
  /// A link to the machine's own server; null when there is none. May start the server.
  static std::unique_ptr<MediaServerLink> toMachine();
  /// A link by a connection that is there; the caller keeps its descriptor.
  static std::unique_ptr<MediaServerLink> by(int descriptor);
  ~MediaServerLink();
  MediaServerLink(const MediaServerLink&) = delete;
  MediaServerLink& operator=(const MediaServerLink&) = delete;

  /// To be polled for no event at all: a hang-up tells that the server has ended.
  int descriptor() const { return descriptor_; }

private:
  explicit MediaServerLink(int adopted) : descriptor_(adopted) {}
  const int descriptor_;
};

} // namespace zuvi
