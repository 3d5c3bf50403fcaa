#include "platform/Foundation/Ascii.h"

#include <memory>

#include <unicode/translit.h>
#include <unicode/unistr.h>

namespace zuvi {

std::string asciiLossy(const std::string& text) {
  auto characters = icu::UnicodeString::fromUTF8(text);
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::Transliterator> nearest(
      icu::Transliterator::createInstance("Latin-ASCII", UTRANS_FORWARD, status));
  if (U_SUCCESS(status) && nearest) nearest->transliterate(characters);
  std::string ascii;
  for (int32_t at = 0; at < characters.length(); at = characters.moveIndex32(at, 1)) {
    const UChar32 character = characters.char32At(at);
    ascii += character < 0x80 ? static_cast<char>(character) : '?';
  }
  return ascii;
}

} // namespace zuvi
