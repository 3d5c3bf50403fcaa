#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zuvi {

/// Immutable bytes, shared by their holders: a copy costs a reference, whatever the size.
class ZUVI_API Data {
public:
  Data() = default;
  explicit Data(std::string bytes);
  explicit Data(const std::vector<std::uint8_t>& bytes);
  /// Bytes that live elsewhere; `owner` keeps them alive.
  Data(std::shared_ptr<const void> owner, const void* bytes, std::size_t size);

  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  const std::uint8_t* bytes() const { return bytes_; }
  std::span<const std::uint8_t> span() const { return {bytes_, size_}; }
  /// The bytes as text; valid as long as this object or a copy of it lives.
  std::string_view view() const { return {reinterpret_cast<const char*>(bytes_), size_}; }
  std::string string() const { return std::string(view()); }

  bool operator==(const Data& other) const { return view() == other.view(); }

private:
  std::shared_ptr<const void> owner_;
  const std::uint8_t* bytes_ = nullptr;
  std::size_t size_ = 0;
};

} // namespace zuvi
