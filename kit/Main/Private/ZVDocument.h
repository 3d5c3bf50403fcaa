#pragma once

#include "kit/Main/Private/RawValue.h"

namespace zuvi {

/// The kinds of documents; the raw value is the back end's name.
enum class ZVDocument { drivingLicense, nationalId, proofOfResidency, passport };

template <> struct RawValues<ZVDocument> {
  static constexpr RawValue<ZVDocument> all[] = {
      {ZVDocument::drivingLicense, "driving-license"},
      {ZVDocument::nationalId, "national-id"},
      {ZVDocument::proofOfResidency, "proof-of-residency"},
      {ZVDocument::passport, "passport"}};
};

/// Whether there is a back side to photograph.
constexpr bool scanBackSide(ZVDocument document) {
  return document == ZVDocument::drivingLicense || document == ZVDocument::nationalId;
}

} // namespace zuvi
