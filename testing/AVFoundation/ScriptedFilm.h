#pragma once

#include "platform/AVFoundation/CameraStream.h"

namespace zuvi {

class ScriptedCamera;

/// A film whose file holds what the test gave.
class ScriptedFilm final : public CameraFilm, public std::enable_shared_from_this<ScriptedFilm> {
public:
  ScriptedFilm(std::shared_ptr<ScriptedCamera> camera, DispatchQueue& queue,
               std::shared_ptr<FilmFile> file, CameraStream::FilmHandler ended);

  void stop() override;
  void discard() override;
  /// Ends the film with an error beside what was filmed.
  void complete(std::optional<Error> error);

private:
  void end(std::optional<Error> error);

  std::shared_ptr<ScriptedCamera> camera_;
  DispatchQueue& queue_;
  std::shared_ptr<FilmFile> file_;
  CameraStream::FilmHandler ended_; // empty once the film has ended
};

} // namespace zuvi
