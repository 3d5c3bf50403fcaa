#pragma once

#include <ZuviSDK/Foundation/Value.h>

#include <optional>
#include <string>
#include <vector>

namespace zuvi {

/// One field that the back end read from a document.
class ZVOCRResult {
public:
  /// From one element of the answer's fields; never fails. `cardType` is the card's letter.
  ZVOCRResult(const Value::Dictionary& parameters, const std::string& cardType);

  const std::optional<std::string>& id() const { return id_; }
  const std::optional<std::string>& label() const { return label_; }
  bool isRequired() const { return isRequired_; }
  /// Lower case: the card's letter, "_" and the id.
  const std::string& imageName() const { return imageName_; }

  std::optional<std::string> value;

private:
  std::optional<std::string> id_, label_;
  bool isRequired_ = false;
  std::string imageName_;
};

/// The required fields in the back end's answer about a document; absent when the answer has no
/// list of fields.
std::optional<std::vector<ZVOCRResult>> requiredResults(const Value::Dictionary& answer);

} // namespace zuvi
