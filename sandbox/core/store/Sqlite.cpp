#include "sandbox/core/store/Sqlite.h"

namespace zuvi::sandbox {

Statement::Statement(sqlite3* database, std::string_view sql) {
  failed_ = sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &statement_,
                               nullptr) != SQLITE_OK;
}

bool Statement::next() {
  if (failed_) return false;
  const int result = sqlite3_step(statement_);
  failed_ = result != SQLITE_ROW && result != SQLITE_DONE;
  return result == SQLITE_ROW;
}

std::string Statement::text(int column) const {
  const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
  if (bytes == nullptr) return {};
  return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

void Statement::bindOne(int column, std::string_view value) {
  if (failed_) return;
  // A null pointer would bind NULL, not the empty text.
  const char* bytes = value.data() == nullptr ? "" : value.data();
  failed_ = sqlite3_bind_text64(statement_, column, bytes, value.size(), SQLITE_TRANSIENT,
                                SQLITE_UTF8) != SQLITE_OK;
}

void Statement::bindOne(int column, std::int64_t value) {
  if (!failed_) failed_ = sqlite3_bind_int64(statement_, column, value) != SQLITE_OK;
}

bool Database::open(const std::filesystem::path& file) {
  constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
  if (sqlite3_open_v2(file.c_str(), &handle_, flags, nullptr) != SQLITE_OK) return false;
  sqlite3_busy_timeout(handle_, 5000);
  return true;
}

bool Database::execute(const char* sql) {
  return sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

} // namespace zuvi::sandbox
