#pragma once

#include "sandbox/core/http/Router.h"
#include "sandbox/core/store/Store.h"

namespace zuvi::sandbox {

/// An event as it travels in the query.
struct TrackedEvent {
  std::string name;
  std::string properties; ///< JSON text
};

/// Undoes percent-encoding, line breaks, Base64 and JSON; the error says which of them failed.
Result<TrackedEvent> readTrackedEvent(std::string_view query);

/// The endpoint of user actions. It knows no clients: events come without Authorization.
void addTrackingRoutes(Router& router, Store& store);

} // namespace zuvi::sandbox
