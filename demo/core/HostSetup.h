#pragma once

#include "demo/core/DriveScript.h"
#include "demo/core/Options.h"

#include <string>
#include <variant>
#include <vector>

namespace zuvi::demo {

/// Does what a host does at its start: names services and cameras, and registers the client id.
/// Without a client id it does not register. Set the delegate before.
void setUpKit(const Options& options);

/// The commands of `options.drive`, which must be there, or "FILE:" and what is wrong with it.
std::variant<std::vector<DriveCommand>, std::string> readDrive(const Options& options);

/// Makes the folder that the command line names for pictures. Empty, or why it can't be made.
std::string preparePictures(const Options& options);
/// Writes a picture of the screen there; does nothing where none is named. False: it failed.
bool writePicture(const Options& options, const std::string& name);

} // namespace zuvi::demo
