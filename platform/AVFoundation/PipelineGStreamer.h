#pragma once

#include <ZuviSDK/Foundation/Error.h>
#include "platform/AVFoundation/PointersGStreamer.h"

#include <functional>
#include <string>
#include <variant>

namespace zuvi {

/// Starts the library on first use. False, with a line on the console, when it cannot be used.
bool startGStreamer();

/// Whether an element of that name can be made.
bool hasElement(const char* name);

/// A pipeline that reports its end and sets itself to null when it goes.
class Pipeline {
public:
  /// What happened; on one of the pipeline's threads, which must not be held up.
  struct Event {
    enum class Kind { Ended, Failed } kind;
    Error error;         ///< of a failure
    std::string element; ///< the name of the one that failed
  };
  using Listener = std::function<void(const Event&)>;

  /// Builds what `description` says. A plugin that is not installed gives an error that names its
  /// package, also on the console.
  static std::variant<std::unique_ptr<Pipeline>, Error> launch(const std::string& description,
                                                               Listener listener);
  ~Pipeline();
  Pipeline(const Pipeline&) = delete;
  Pipeline& operator=(const Pipeline&) = delete;

  /// The element of that name; null for a name that is not in the description.
  GstElement* element(const char* name) const;
  GstElement* native() const { return pipeline_.get(); }
  /// False when an element refuses; the listener may hear why.
  bool play();

private:
  explicit Pipeline(GstElement* adopted, Listener listener);

  GstRef<GstElement> pipeline_;
};

} // namespace zuvi
