#pragma once

#include <ZuviSDK/Export.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zuvi {

/// Immutable bytes, shared by their holders: a copy costs a reference, whatever the size.
class Data {
public:
  Data() = default; ///< no bytes
  /// The bytes of a text, moved in, or of a list, copied.
  /// @{
  ZUVI_API explicit Data(std::string bytes);
  explicit Data(const std::vector<std::uint8_t>& bytes);
  /// @}
  /// Bytes that live elsewhere; `owner` keeps them alive.
  Data(std::shared_ptr<const void> owner, const void* bytes, std::size_t size);

  /// In bytes.
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; } ///< the same as a size of 0
  /// The bytes; valid as long as this object or a copy of it lives. May be null when empty.
  /// @{
  const std::uint8_t* bytes() const { return bytes_; }
  std::span<const std::uint8_t> span() const { return {bytes_, size_}; }
  /// @}
  /// The bytes as text; valid as long as this object or a copy of it lives.
  std::string_view view() const { return {reinterpret_cast<const char*>(bytes_), size_}; }
  /// A copy of the bytes as text; whether they are UTF-8 is not asked.
  std::string string() const { return std::string(view()); }

  /// Byte for byte.
  bool operator==(const Data& other) const { return view() == other.view(); }

private:
  std::shared_ptr<const void> owner_;
  const std::uint8_t* bytes_ = nullptr;
  std::size_t size_ = 0;
};

} // namespace zuvi
