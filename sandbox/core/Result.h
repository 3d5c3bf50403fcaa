#pragma once

#include <cassert>
#include <string>
#include <utility>
#include <variant>

namespace zuvi::sandbox {

/// What went wrong, in one line that a developer can act on.
struct Error {
  std::string message;
};

/// The value of an operation that yields nothing but its success.
struct Done {};

/// A value, or why there is none.
template <typename T> class [[nodiscard]] Result {
public:
  Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}
  Result(Error error) : content_(std::in_place_index<1>, std::move(error)) {}

  explicit operator bool() const { return content_.index() == 0; }

  T& operator*() & { return value(); }
  const T& operator*() const& { return const_cast<Result*>(this)->value(); }
  T&& operator*() && { return std::move(value()); }
  T* operator->() { return &value(); }
  const T* operator->() const { return &**this; }

  const Error& error() const {
    assert(!*this);
    return *std::get_if<1>(&content_);
  }

private:
  T& value() {
    assert(*this);
    return *std::get_if<0>(&content_);
  }

  std::variant<T, Error> content_;
};

} // namespace zuvi::sandbox
