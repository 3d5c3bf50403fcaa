#pragma once

#include <functional>
#include <utility>

namespace zuvi {

/// A property whose observer runs after every assignment, also when the value is unchanged.
template <class T> class Observed {
public:
  /// `observer` must not be null and does not hear of the first value.
  Observed(T value, std::function<void()> observer)
      : value_(std::move(value)), observer_(std::move(observer)) {}
  /// The observer belongs to one owner.
  Observed(const Observed&) = delete;

  /// Stores the value, then runs the observer, on the writing thread.
  /// @{
  Observed& operator=(T value) {
    value_ = std::move(value);
    observer_();
    return *this;
  }
  Observed& operator=(const Observed& other) { return *this = other.value_; }
  /// @}

  /// The value as it was last written.
  /// @{
  operator const T&() const { return value_; } // NOLINT: reads like the field that it is
  const T& operator*() const { return value_; }
  const T* operator->() const { return &value_; }
  /// @}

private:
  T value_;
  std::function<void()> observer_;
};

} // namespace zuvi
