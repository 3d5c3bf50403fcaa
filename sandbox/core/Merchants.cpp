#include "sandbox/core/Merchants.h"

#include "sandbox/core/Embedded.h"
#include "sandbox/core/File.h"
#include "sandbox/core/text/Json.h"

namespace zuvi::sandbox {

Merchants Merchants::samples() {
  auto merchants = fromText(embeddedFile("merchants.json"));
  return merchants ? std::move(*merchants) : Merchants();
}

Result<Merchants> Merchants::fromFile(const std::filesystem::path& file) {
  auto text = readFile(file);
  if (!text) return text.error();
  auto merchants = fromText(*text);
  if (!merchants) return Error{file.string() + ": " + merchants.error().message};
  return merchants;
}

Result<Merchants> Merchants::fromText(std::string_view text) {
  const auto json = parseJson(text);
  if (!json || !json->is_object() || json->empty())
    return Error{"is no JSON object that holds a merchant under each client id"};
  Merchants merchants;
  for (const auto& [clientId, merchant] : json->items()) {
    if (clientId.empty()) return Error{"holds a merchant under an empty client id"};
    if (!merchant.is_object())
      return Error{"what stands under the client id " + clientId + " is no JSON object"};
    merchants.answers_[clientId] = jsonText(merchant);
  }
  return merchants;
}

std::optional<std::string> Merchants::answer(std::string_view clientId,
                                             std::string_view address) const {
  static constexpr std::string_view placeholder = "{sandbox}";
  const auto found = answers_.find(clientId);
  if (found == answers_.end()) return std::nullopt;
  std::string text = found->second;
  for (auto at = text.find(placeholder); at != std::string::npos; at = text.find(placeholder, at)) {
    text.replace(at, placeholder.size(), address);
    at += address.size();
  }
  return text;
}

std::vector<std::string> Merchants::clientIds() const {
  std::vector<std::string> ids;
  ids.reserve(answers_.size());
  for (const auto& [id, answer] : answers_)
    ids.push_back(id);
  return ids;
}

} // namespace zuvi::sandbox
