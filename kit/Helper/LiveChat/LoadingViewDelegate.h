#pragma once

namespace zuvi {

/// Handles the buttons of the loading view.
class LoadingViewDelegate {
public:
  virtual ~LoadingViewDelegate() = default;
  virtual void reload() = 0;
  virtual void close() = 0;
};

} // namespace zuvi
