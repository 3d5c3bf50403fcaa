#pragma once

#include "sandbox/core/store/Records.h"

#include <string>
#include <string_view>

namespace zuvi::sandbox {

/// The identities with all that hangs on them, newest first. `files` is put before the name of
/// a stored file to make its link.
std::string identitiesHtml(const std::vector<Identity>& identities, std::string_view files);

/// The events, newest first.
std::string eventsHtml(const std::vector<Event>& events);

} // namespace zuvi::sandbox
