// The merchant's configuration, of any JSON.

#include "fuzz/Json.h"
#include "kit/Main/Private/ZVKYCMerchant.h"

using namespace zuvi;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const auto answer = fuzz::objectOf(bytes, size);
  if (!answer) return 0;
  const ZVKYCMerchant merchant(*answer);
  const int required = int(merchant.requiredDocuments.size());
  for (int i = -1; i <= required; i++)
    fuzz::expect(merchant.document(true, i).has_value() == (i >= 0 && i < required));
  fuzz::expect(!merchant.document(false, int(merchant.optionalDocuments.size())));
  return 0;
}
