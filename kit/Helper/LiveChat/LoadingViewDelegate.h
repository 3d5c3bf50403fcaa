#pragma once

namespace zuvi {

/// Who acts on the buttons of the loading view.
class LoadingViewDelegate {
public:
  virtual ~LoadingViewDelegate() = default;
  virtual void reload() = 0;
  virtual void close() = 0;
};

} // namespace zuvi
