#pragma once

#include <string>
#include <vector>

namespace zuvi {

/// How the face of the instruction looks at one moment.
struct FacePose {
  double turn = 0;  ///< -1 to its left, as seen, to 1
  double smile = 0; ///< 0 to 1
  int delay = 10;   ///< how long it is held, in hundredths of a second
};

/// Looks straight, turns to one side and the other, smiles; begins anew.
std::vector<FacePose> faceMovement();

/// The face below the oval that a person's own belongs in, as an SVG drawing of `width` by `height`
/// pixels.
std::string faceDrawing(const FacePose& pose, int width, int height);

} // namespace zuvi
