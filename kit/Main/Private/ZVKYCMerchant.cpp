#include "kit/Main/Private/ZVKYCMerchant.h"

namespace zuvi {

namespace {

std::optional<UIColor> colorNamed(const std::string& name) {
  static const std::map<std::string, UIColor> colors{
      {"blue", UIColor::bytes(33, 150, 243)},   {"green", UIColor::bytes(0, 178, 87)},
      {"red", UIColor::bytes(235, 87, 87)},     {"pink", UIColor::bytes(255, 82, 126)},
      {"orange", UIColor::bytes(242, 153, 74)}, {"yellow", UIColor::bytes(255, 189, 0)}};
  const auto found = colors.find(name);
  return found == colors.end() ? std::nullopt : std::optional(found->second);
}

/// A list with other elements than strings gives no documents; unknown documents are left out.
std::vector<ZVDocument> documentsIn(const Value::Dictionary& dictionary, const std::string& key) {
  std::vector<ZVDocument> documents;
  const Value* value = valueForKey(dictionary, key);
  const auto names = value ? value->listOfStrings() : std::nullopt;
  for (const std::string& name : names.value_or(std::vector<std::string>{}))
    if (const auto document = fromRawValue<ZVDocument>(name)) documents.push_back(*document);
  return documents;
}

} // namespace

ZVKYCMerchant::ZVKYCMerchant(const Value::Dictionary& parameters) {
  displayName = stringValue(parameters, "name");
  photoUrl = stringValue(parameters, "photo");

  const Value* list = valueForKey(parameters, "configurations");
  const auto configurations = list ? list->listOfDictionaries() : std::nullopt;
  if (!configurations || configurations->empty()) return;
  const Value::Dictionary& configuration = configurations->front();
  if (const auto name = stringValue(configuration, "color"))
    color = colorNamed(*name).value_or(color);
  if (const auto code = stringValue(configuration, "language"))
    currentLanguage = fromRawValue<ZVLanguage>(*code).value_or(ZVLanguage::english);

  const Value* value = valueForKey(configuration, "documents");
  const Value::Dictionary* documents = value ? value->dictionary() : nullptr;
  if (!documents) return;
  requiredDocuments = documentsIn(*documents, "required");
  optionalDocuments = documentsIn(*documents, "optional");
}

std::optional<ZVDocument> ZVKYCMerchant::document(bool isRequired, int index) const {
  const auto& documents = isRequired ? requiredDocuments : optionalDocuments;
  if (index < 0 || index >= static_cast<int>(documents.size())) return std::nullopt;
  return documents[static_cast<std::size_t>(index)];
}

} // namespace zuvi
