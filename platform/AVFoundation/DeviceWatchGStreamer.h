#pragma once

#include "platform/AVFoundation/DevicesGStreamer.h"
#include "platform/AVFoundation/MediaServerLink.h"

#include <mutex>

namespace zuvi {

/// The cameras of a machine as they come and go, watched on a thread of its own until the process
/// ends, with `AVCaptureDevicesDidChange` at each change: a driver, a bus or a media server may
/// take its time to answer, and some can't bear to be asked anew while one of their cameras runs.
/// Any thread; no call waits.
class DeviceWatch {
public:
  /// The machine's own cameras. The first call begins the watch.
  static DeviceWatch& machine();

  /// The cameras behind the descriptor that `connect` gives on the watching thread; none below 0.
  /// Never destroyed.
  static DeviceWatch& remote(std::function<int()> connect);

  /// Whether there is nothing to watch: the cameras can't be reached, or no longer.
  bool hasFailed() const;
  /// Whether the cameras that were there at the beginning are known.
  bool isComplete() const;
  /// The cameras that are there, as far as they are known.
  std::vector<FoundCamera> cameras() const;

private:
  struct Source;
  DeviceWatch() = default;
  void watchMachine();
  void watchBehind(int descriptor);
  void begin(const Source& source);
  void follow(const Source& source, const MediaServerLink* link, int patience);
  bool hear(const Source& source, GstClockTime patience);
  void add(const std::shared_ptr<GstDevice>& device);
  void remove(GstDevice* device);
  void serverHasGone();
  static void announce();

  mutable std::mutex mutex_;
  bool complete_ = false, failed_ = false;
  std::vector<std::pair<std::shared_ptr<GstDevice>, FoundCamera>> found_;
};

} // namespace zuvi
