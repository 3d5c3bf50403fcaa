// The fields that the back end read off a document, of any JSON.

#include "fuzz/Json.h"
#include "kit/Main/Private/ZVOCRResult.h"

using namespace zuvi;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const auto answer = fuzz::objectOf(bytes, size);
  if (!answer) return 0;
  const auto results = requiredResults(*answer);
  if (!results) return 0;
  for (const ZVOCRResult& result : *results) {
    fuzz::expect(result.isRequired());
    fuzz::expect(result.imageName().find('_') != std::string::npos);
  }
  return 0;
}
