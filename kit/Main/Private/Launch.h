#pragma once

namespace zuvi {

/// Whether a client id is registered. If none is, a printed line says so.
bool canLaunch();

/// Starts a run: presents a new shell over the host's current screen. Counts the tap.
void launch(bool animated);

} // namespace zuvi
