#pragma once

#include "sandbox/core/http/Router.h"
#include "sandbox/core/store/Store.h"

namespace zuvi::sandbox {

/// The page at "/", what it is made of, and the stored files.
void addPageRoutes(Router& router, const Store& store);

} // namespace zuvi::sandbox
