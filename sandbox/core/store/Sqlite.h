#pragma once

#include "sandbox/core/Result.h"

#include <cstdint>
#include <filesystem>
#include <sqlite3.h>
#include <string>
#include <string_view>

namespace zuvi::sandbox {

/// A prepared statement. After a failure every further call does nothing, and `failed` says so.
class Statement {
public:
  Statement(sqlite3* database, std::string_view sql);
  ~Statement() { sqlite3_finalize(statement_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  /// Binds the values from left to right.
  template <typename... Values> Statement& bind(const Values&... values) {
    int column = 0;
    (bindOne(++column, values), ...);
    return *this;
  }

  /// Moves to the next row; false behind the last one and after a failure.
  bool next();
  bool failed() const { return failed_; }
  std::string text(int column) const;
  std::int64_t integer(int column) const { return sqlite3_column_int64(statement_, column); }

private:
  void bindOne(int column, std::string_view value);
  void bindOne(int column, std::int64_t value);

  sqlite3_stmt* statement_ = nullptr;
  bool failed_ = false;
};

/// One database file.
class Database {
public:
  Database() = default;
  ~Database() { sqlite3_close(handle_); }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  bool open(const std::filesystem::path& file);
  bool execute(const char* sql);
  template <typename... Values> bool run(std::string_view sql, const Values&... values) {
    Statement statement(handle_, sql);
    statement.bind(values...).next();
    return !statement.failed();
  }
  std::string message() const { return sqlite3_errmsg(handle_); }
  sqlite3* handle() const { return handle_; }

private:
  sqlite3* handle_ = nullptr;
};

/// Undoes what was written since it was made, unless `commit` succeeded.
class Transaction {
public:
  explicit Transaction(Database& database)
      : database_(database), open_(database.execute("BEGIN IMMEDIATE")) {}
  ~Transaction() {
    if (open_) database_.execute("ROLLBACK");
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  bool commit() {
    if (!open_ || !database_.execute("COMMIT")) return false;
    open_ = false;
    return true;
  }

private:
  Database& database_;
  bool open_;
};

} // namespace zuvi::sandbox
