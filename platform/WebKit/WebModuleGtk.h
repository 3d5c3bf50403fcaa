#pragma once

// What passes between a program and the module with the machine's browser engine. The module links
// nothing of the program's: all that it has of it are headers and the calls below.

#include "platform/UIKit/ForeignWidgetGtk.h"
#include "platform/WebKit/WebEngine.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zuvi {

/// What the module asks of the program.
class WebModuleHost {
public:
  virtual ~WebModuleHost() = default;
  virtual std::unique_ptr<ForeignWidget> place(UIView& view, GtkWidget* widget) = 0;
  virtual std::optional<URL> url(const std::string& text) = 0;
  /// Of JSON of any kind; absent when it is none or too deep.
  virtual std::optional<Value> value(std::string_view json) = 0;
  /// Certificates (PEM) that are trusted beside the system's; empty: none.
  virtual std::string additionalAuthorities() = 0;
  /// Of the program: what its pages leave on this machine belongs to it alone.
  virtual std::string programName() = 0;
};

/// The module's one symbol, `zuviWebEngine`: its engine, which lives as long as the process.
using WebModuleEntry = WebEngine*(WebModuleHost&);

} // namespace zuvi
