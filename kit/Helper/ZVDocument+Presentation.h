#pragma once

#include "kit/Main/Private/ZVDocument.h"

#include <memory>
#include <optional>
#include <string>

namespace zuvi {

class UIImage;

/// The kind's name in the merchant's language.
std::string name(ZVDocument document);
/// The title of a step for the document: the name and a full stop, which the shell colours. Absent
/// without a document.
std::optional<std::string> documentTitle(std::optional<ZVDocument> document);
/// Null when the bundle does not have it.
std::shared_ptr<const UIImage> icon(ZVDocument document);

} // namespace zuvi
