#include "sandbox/core/store/StoreState.h"

namespace zuvi::sandbox {
namespace {

/// Reads records while the store's lock is held. A failure empties what follows and is told once.
class Reader {
public:
  explicit Reader(Database& database) : database_(database) {}

  bool failed() const { return failed_; }

  template <typename Take, typename... Values>
  void each(std::string_view sql, Take take, const Values&... values) {
    Statement statement(database_.handle(), sql);
    statement.bind(values...);
    while (statement.next())
      take(statement);
    failed_ = failed_ || statement.failed();
  }

  Metadata metadata(const std::string& owner) {
    Metadata metadata;
    each(
        "SELECT key, value FROM metadata WHERE owner = ? ORDER BY position",
        [&](const Statement& row) { metadata.emplace_back(row.text(0), row.text(1)); }, owner);
    return metadata;
  }

  std::vector<Face> faces(const std::string& identityId) {
    std::vector<Face> faces;
    each(
        "SELECT id, kind, photo, size, arrived FROM faces WHERE identity = ? ORDER BY rowid",
        [&](const Statement& row) {
          const auto kind = row.text(1) == "appended" ? FaceKind::appended : FaceKind::submitted;
          faces.push_back({row.text(0), kind, stored(row, 2), row.text(4), {}});
        },
        identityId);
    for (Face& face : faces)
      face.metadata = metadata(face.id);
    return faces;
  }

  /// Those for which the column holds the value; each with its sides and fields.
  std::vector<Document> documents(std::string_view column, const std::string& value) {
    std::vector<Document> documents;
    each(
        "SELECT id, identity, type, card_type, arrived FROM documents WHERE " +
            std::string(column) + " = ? ORDER BY rowid",
        [&](const Statement& row) {
          documents.push_back(
              {row.text(0), row.text(1), row.text(2), row.text(3), row.text(4), {}, {}});
        },
        value);
    for (Document& document : documents)
      complete(document);
    return documents;
  }

  std::vector<Identity> identities() {
    std::vector<Identity> identities;
    each("SELECT id, client, film, size, still, still_size, arrived FROM identities ORDER BY rowid",
         [&](const Statement& row) {
           identities.push_back(
               {row.text(0), row.text(1), stored(row, 2), stored(row, 4), row.text(6), {}, {}, {}});
         });
    for (Identity& identity : identities) {
      identity.metadata = metadata(identity.id);
      identity.faces = faces(identity.id);
      identity.documents = documents("identity", identity.id);
    }
    return identities;
  }

  std::vector<Event> events() {
    std::vector<Event> events;
    each("SELECT number, name, properties, arrived FROM events ORDER BY number",
         [&](const Statement& row) {
           events.push_back({row.integer(0), row.text(1), row.text(2), row.text(3)});
         });
    return events;
  }

  std::optional<std::string> oneText(std::string_view sql, const std::string& value) {
    std::optional<std::string> text;
    each(
        sql, [&](const Statement& row) { text = row.text(0); }, value);
    return text;
  }

private:
  static StoredFile stored(const Statement& row, int column) {
    return {row.text(column), static_cast<std::uint64_t>(row.integer(column + 1))};
  }

  void complete(Document& document) {
    each(
        "SELECT side, picture, size, arrived FROM sides WHERE document = ? ORDER BY rowid",
        [&](const Statement& row) {
          document.sides.push_back({row.text(0), stored(row, 1), row.text(3)});
        },
        document.id);
    each(
        "SELECT id, label, required, value, verified FROM fields WHERE document = ? "
        "ORDER BY position",
        [&](const Statement& row) {
          document.fields.push_back(
              {row.text(0), row.text(1), row.integer(2) != 0, row.text(3), row.integer(4) != 0});
        },
        document.id);
  }

  Database& database_;
  bool failed_ = false;
};

} // namespace

Result<std::optional<std::string>> Store::ownerOfIdentity(const std::string& identityId) const {
  const std::lock_guard lock(state_->mutex);
  Reader reader(state_->database);
  auto owner = reader.oneText("SELECT client FROM identities WHERE id = ?", identityId);
  if (reader.failed()) return state_->databaseError();
  return owner;
}

Result<std::optional<std::string>> Store::ownerOfDocument(const std::string& documentId) const {
  const std::lock_guard lock(state_->mutex);
  Reader reader(state_->database);
  auto owner = reader.oneText("SELECT client FROM identities JOIN documents "
                              "ON documents.identity = identities.id WHERE documents.id = ?",
                              documentId);
  if (reader.failed()) return state_->databaseError();
  return owner;
}

Result<Document> Store::document(const std::string& documentId) const {
  const std::lock_guard lock(state_->mutex);
  Reader reader(state_->database);
  auto found = reader.documents("id", documentId);
  if (reader.failed()) return state_->databaseError();
  if (found.empty()) return Error{"there is no document of that id"};
  return std::move(found.front());
}

Result<Arrivals> Store::arrivals() const {
  const std::lock_guard lock(state_->mutex);
  Reader reader(state_->database);
  Arrivals arrivals{reader.identities(), reader.events()};
  if (reader.failed()) return state_->databaseError();
  return arrivals;
}

} // namespace zuvi::sandbox
