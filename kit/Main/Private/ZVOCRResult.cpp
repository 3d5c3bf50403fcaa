#include "kit/Main/Private/ZVOCRResult.h"

#include "platform/Foundation/Utf8.h"

#include <utility>

namespace zuvi {

/// The letter of the card to which a document's fields belong.
static std::string cardTypeOf(const Value::Dictionary& answer) {
  const Value* metadata = valueForKey(answer, "metadata");
  const auto* entries = metadata ? metadata->dictionary() : nullptr;
  const auto letter = entries ? stringValue(*entries, "cardType") : std::nullopt;
  if (letter == "B") return "C";
  if (letter == "E") return "D";
  return letter.value_or("D");
}

ZVOCRResult::ZVOCRResult(const Value::Dictionary& parameters, const std::string& cardType)
    : value(stringValue(parameters, "value")), id_(stringValue(parameters, "id")),
      label_(stringValue(parameters, "label")) {
  if (const Value* required = valueForKey(parameters, "required"))
    isRequired_ = required->boolean() && *required->boolean();
  imageName_ = lowercased(cardType + "_" + id_.value_or(""));
}

std::optional<std::vector<ZVOCRResult>> requiredResults(const Value::Dictionary& answer) {
  const Value* value = valueForKey(answer, "fields");
  const auto fields = value ? value->listOfDictionaries() : std::nullopt;
  if (!fields) return std::nullopt;
  const std::string cardType = cardTypeOf(answer);
  std::vector<ZVOCRResult> results;
  for (const Value::Dictionary& field : *fields)
    if (ZVOCRResult result(field, cardType); result.isRequired())
      results.push_back(std::move(result));
  return results;
}

} // namespace zuvi
