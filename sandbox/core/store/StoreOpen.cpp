#include "sandbox/core/store/StoreState.h"

#include "sandbox/core/File.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zuvi::sandbox {
namespace {

constexpr auto databaseName = "sandbox.db";
constexpr std::int64_t schemaVersion = 1;

constexpr auto schema = R"(
  CREATE TABLE identities (id TEXT PRIMARY KEY, client TEXT NOT NULL, film TEXT NOT NULL,
                           size INTEGER NOT NULL, still TEXT NOT NULL,
                           still_size INTEGER NOT NULL, arrived TEXT NOT NULL);
  CREATE TABLE faces (id TEXT PRIMARY KEY, identity TEXT NOT NULL REFERENCES identities(id),
                      kind TEXT NOT NULL, photo TEXT NOT NULL, size INTEGER NOT NULL,
                      arrived TEXT NOT NULL);
  CREATE TABLE metadata (owner TEXT NOT NULL, position INTEGER NOT NULL, key TEXT NOT NULL,
                         value TEXT NOT NULL, PRIMARY KEY (owner, position));
  CREATE TABLE documents (id TEXT PRIMARY KEY, identity TEXT NOT NULL REFERENCES identities(id),
                          type TEXT NOT NULL, card_type TEXT NOT NULL, arrived TEXT NOT NULL);
  CREATE TABLE sides (document TEXT NOT NULL REFERENCES documents(id), side TEXT NOT NULL,
                      picture TEXT NOT NULL, size INTEGER NOT NULL, arrived TEXT NOT NULL,
                      PRIMARY KEY (document, side));
  CREATE TABLE fields (document TEXT NOT NULL REFERENCES documents(id), position INTEGER NOT NULL,
                       id TEXT NOT NULL, label TEXT NOT NULL, required INTEGER NOT NULL,
                       value TEXT NOT NULL, verified INTEGER NOT NULL,
                       PRIMARY KEY (document, id));
  CREATE TABLE events (number INTEGER PRIMARY KEY, name TEXT NOT NULL, properties TEXT NOT NULL,
                       arrived TEXT NOT NULL);
  CREATE INDEX faces_of ON faces(identity);
  CREATE INDEX documents_of ON documents(identity);
)";

std::int64_t versionOf(Database& database) {
  Statement statement(database.handle(), "PRAGMA user_version");
  return statement.next() ? statement.integer(0) : -1;
}

bool isSound(Database& database) {
  Statement statement(database.handle(), "PRAGMA quick_check(1)");
  return statement.next() && statement.text(0) == "ok";
}

bool makeTables(Database& database) {
  Transaction transaction(database);
  // Another process may have been quicker.
  if (versionOf(database) == schemaVersion) return true;
  return database.execute(schema) &&
         database.execute(("PRAGMA user_version = " + std::to_string(schemaVersion)).c_str()) &&
         transaction.commit();
}

/// What arrives is personal. A folder that is there without our database may be for others too, but
/// not what is made in it.
void makePrivate(const std::filesystem::path& folder, const std::filesystem::path& file) {
  std::error_code ignored;
  const auto owner = std::filesystem::perms::owner_all;
  if (std::filesystem::exists(file, ignored)) std::filesystem::permissions(folder, owner, ignored);
  std::filesystem::permissions(folder / "files", owner, ignored);
  // The library's other files take the mode of the first.
  const int made = ::open(file.c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
  if (made < 0) return;
  ::fchmod(made, 0600);
  ::close(made);
}

} // namespace

Store::Store(std::unique_ptr<State> state) : state_(std::move(state)) {}

Store::~Store() = default;

Result<std::unique_ptr<Store>> Store::open(const std::filesystem::path& folder, OpenMode mode) {
  const auto unusable = [&](const std::string& why) {
    return Error{"the data folder " + folder.string() + " cannot be used: " + why};
  };
  const auto file = folder / databaseName;
  std::error_code ignored;
  if (mode == OpenMode::mustExist && !std::filesystem::is_regular_file(file, ignored))
    return unusable("nothing is stored in it");
  for (const auto& part : {folder, folder / "files"})
    if (auto made = makeFolder(part); !made) return unusable(made.error().message);
  makePrivate(folder, file);

  auto state = std::make_unique<State>();
  state->folder = folder;
  Database& database = state->database;
  if (!database.open(file) || !database.execute("PRAGMA journal_mode = WAL") ||
      !database.execute("PRAGMA synchronous = NORMAL; PRAGMA foreign_keys = ON"))
    return unusable(database.message());
  const auto version = versionOf(database);
  if (version != 0 && version != schemaVersion) return unusable("its version is not known");
  if (!isSound(database)) return unusable("its database is damaged");
  if (version == 0 && !makeTables(database)) return unusable(database.message());
  // Tells a folder that cannot be written before the first arrival is lost.
  if (Transaction probe(database); !database.run("DELETE FROM events WHERE number < 0"))
    return unusable(database.message());
  return std::unique_ptr<Store>(new Store(std::move(state)));
}

std::filesystem::path Store::filesFolder() const {
  return state_->folder / "files";
}

std::optional<std::filesystem::path> Store::file(std::string_view name) const {
  constexpr std::size_t idLength = 36;
  if (name.size() <= idLength) return std::nullopt;
  const auto id = name.substr(0, idLength);
  const auto ending = name.substr(idLength);
  const bool plain = std::all_of(id.begin(), id.end(), [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || c == '-';
  });
  if (!plain || (ending != ".mov" && ending != ".jpg")) return std::nullopt;
  return filesFolder() / name;
}

std::uint64_t Store::revision() const {
  return state_->revision;
}

} // namespace zuvi::sandbox
