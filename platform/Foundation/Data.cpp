#include <ZuviSDK/Foundation/Data.h>

#include <utility>

namespace zuvi {

Data::Data(std::string bytes) {
  auto owner = std::make_shared<const std::string>(std::move(bytes));
  bytes_ = reinterpret_cast<const std::uint8_t*>(owner->data());
  size_ = owner->size();
  owner_ = std::move(owner);
}

Data::Data(const std::vector<std::uint8_t>& bytes) {
  auto owner = std::make_shared<const std::vector<std::uint8_t>>(bytes);
  bytes_ = owner->data();
  size_ = owner->size();
  owner_ = std::move(owner);
}

Data::Data(std::shared_ptr<const void> owner, const void* bytes, std::size_t size)
    : owner_(std::move(owner)), bytes_(static_cast<const std::uint8_t*>(bytes)), size_(size) {}

} // namespace zuvi
