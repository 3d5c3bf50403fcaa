#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zuvi::sandbox {

/// "1 event", "2 events".
std::string countWords(std::size_t count, std::string_view one, std::string_view many);
/// "820 bytes", "14 KB", "4.2 MB".
std::string sizeWords(std::uint64_t bytes);
/// A stored time for readers: without its fraction, with its zone.
std::string timeWords(std::string_view timestamp);
/// What a document is called on the page.
std::string documentWords(std::string_view type);

} // namespace zuvi::sandbox
