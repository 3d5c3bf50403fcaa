#pragma once

#include <ZuviSDK/AVFoundation/CameraProvider.h>
#include "platform/AVFoundation/CameraStream.h"

#include <optional>
#include <vector>

namespace zuvi {

class ScriptedStream;

/// A camera without pictures of its own, for tests of what is built on cameras. The test sets what
/// it does and reads what was asked of it. Main queue only.
class ScriptedCamera {
public:
  // What it does
  std::string id;            ///< its unique id; empty: the name of its side
  bool opens = true;         ///< whether an input can be made
  bool fails = false;        ///< a run ends as soon as it was started
  bool answersStills = true; ///< false: stills wait for `answerStills` or the session's stop
  std::optional<Data> still; ///< what a still is; absent: none comes
  std::optional<Data> film;  ///< what the file of a stopped film holds; absent: it got no picture

  // What was asked
  int starts = 0;
  int stops = 0;
  int stills = 0;
  std::vector<std::string> films; ///< paths of started films
  int filmsStopped = 0;
  int filmsDiscarded = 0;

  /// Whether any session runs on it.
  bool isRunning() const;
  /// Answers the stills that wait with `still`.
  void answerStills();
  /// Ends every run, as pulling the plug does.
  void unplug();
  /// Ends every run, as the user's refusal does.
  void refuse();
  /// Hands a picture to the previews of running sessions that want one.
  void showFrame(const std::shared_ptr<const CGImage>& image);

private:
  friend class ScriptedCameraProvider;
  std::vector<std::shared_ptr<ScriptedStream>> liveStreams() const;
  std::vector<std::weak_ptr<ScriptedStream>> streams_;
};

/// Scripted cameras by position. Main queue only; every answer comes through the given queue.
class ScriptedCameraProvider final : public CameraProvider {
public:
  /// Starts with a front and a back camera, and authorized.
  explicit ScriptedCameraProvider(DispatchQueue& queue = DispatchQueue::main());

  std::shared_ptr<ScriptedCamera> front, back; ///< null: none on that side
  AVAuthorizationStatus status = AVAuthorizationStatus::Authorized;
  bool grants = true;          ///< the answer to a request while not determined
  bool answersRequests = true; ///< false: requests wait for `answerRequests`
  int requests = 0;            ///< how often the permission was asked for

  void answerRequests();

  AVAuthorizationStatus authorizationStatus() override { return status; }
  void requestAccess(std::function<void(bool granted)> answer) override;
  std::vector<CameraDescription> devices() override;
  std::shared_ptr<CameraStream> open(const std::string& uniqueID) override;
  DispatchQueue& callbackQueue() override { return queue_; }

private:
  DispatchQueue& queue_;
  std::vector<std::function<void(bool)>> waiting_;
};

} // namespace zuvi
