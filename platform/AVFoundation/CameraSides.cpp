#include "platform/AVFoundation/CameraSides.h"

#include <algorithm>

namespace zuvi {

namespace {

using Position = AVCaptureDevicePosition;

/// How well a camera without a position suits a side: built-in ones face the person.
int fit(const CameraCandidate& camera, Position side) {
  if (!camera.builtIn) return 1;
  return *camera.builtIn == (side == Position::Front) ? 2 : 0;
}

/// The camera that suits `side` best among those that `mayServe`, of equal ones the first; null for
/// none.
template <class MayServe>
const CameraCandidate* bestFor(Position side, const std::vector<CameraCandidate>& cameras,
                               MayServe mayServe) {
  const CameraCandidate* best = nullptr;
  for (const auto& camera : cameras)
    if (mayServe(camera) && (!best || fit(camera, side) > fit(*best, side))) best = &camera;
  return best;
}

CameraDescription describe(const CameraCandidate& camera, Position side) {
  return {camera.uniqueID, camera.localizedName, side, false};
}

} // namespace

std::vector<CameraDescription> assignSides(const std::vector<CameraCandidate>& cameras) {
  const bool anyColour = std::ranges::any_of(cameras, &CameraCandidate::colour);
  const CameraCandidate* taken[2] = {nullptr, nullptr};
  constexpr Position sides[2] = {Position::Front, Position::Back};
  const auto serves = [&](const CameraCandidate& camera) { return camera.colour || !anyColour; };

  for (int side = 0; side < 2; side++)
    taken[side] = bestFor(sides[side], cameras, [&](const auto& one) {
      return one.position == sides[side] && serves(one);
    });
  // Those without a position fill what is free: first the person's side, then the documents'.
  for (int side = 0; side < 2; side++) {
    if (taken[side]) continue;
    taken[side] = bestFor(sides[side], cameras, [&](const auto& one) {
      return one.position == Position::Unspecified && serves(one) && &one != taken[1 - side];
    });
  }
  for (int side = 0; side < 2; side++)
    if (!taken[side]) taken[side] = taken[1 - side];

  std::vector<CameraDescription> described;
  for (int side = 0; side < 2; side++)
    if (taken[side]) described.push_back(describe(*taken[side], sides[side]));
  for (const auto& camera : cameras)
    if (&camera != taken[0] && &camera != taken[1])
      described.push_back(describe(camera, camera.position));
  return described;
}

} // namespace zuvi
