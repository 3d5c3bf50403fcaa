#pragma once

#include "sandbox/core/store/Sqlite.h"
#include "sandbox/core/store/Store.h"

#include <atomic>
#include <mutex>

namespace zuvi::sandbox {

struct Store::State {
  std::filesystem::path folder;
  mutable std::mutex mutex; ///< guards the database
  mutable Database database;
  std::atomic<std::uint64_t> revision = 0;

  Error databaseError() const { return {"the database: " + database.message()}; }
};

} // namespace zuvi::sandbox
