#pragma once

#include "kit/Main/Private/RawValue.h"

#include <memory>
#include <optional>
#include <string>

namespace zuvi {

class UIImage;

/// The kinds of documents; the raw value is the back end's name.
enum class ZVDocument { drivingLicense, nationalId, proofOfResidency, passport };

template <> struct RawValues<ZVDocument> {
  static constexpr RawValue<ZVDocument> all[] = {
      {ZVDocument::drivingLicense, "driving-license"},
      {ZVDocument::nationalId, "national-id"},
      {ZVDocument::proofOfResidency, "proof-of-residency"},
      {ZVDocument::passport, "passport"}};
};

/// The kind's name in the merchant's language.
std::string name(ZVDocument document);
/// The title of a step for the document: the name and a full stop, which the shell colours. Absent
/// without a document.
std::optional<std::string> documentTitle(std::optional<ZVDocument> document);
/// Null when the bundle does not have it.
std::shared_ptr<const UIImage> icon(ZVDocument document);
/// Whether there is a back side to photograph.
bool scanBackSide(ZVDocument document);

} // namespace zuvi
