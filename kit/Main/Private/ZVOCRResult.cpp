#include "kit/Main/Private/ZVOCRResult.h"

#include "platform/Foundation/Utf8.h"

namespace zuvi {

ZVOCRResult::ZVOCRResult(const Value::Dictionary& parameters, const std::string& cardType)
    : value(stringValue(parameters, "value")), id_(stringValue(parameters, "id")),
      label_(stringValue(parameters, "label")) {
  if (const Value* required = valueForKey(parameters, "required"))
    isRequired_ = required->boolean() && *required->boolean();
  imageName_ = lowercased(cardType + "_" + id_.value_or(""));
}

} // namespace zuvi
