#include "sandbox/core/store/StoreState.h"

#include "sandbox/core/File.h"
#include "sandbox/core/store/FilmStill.h"
#include "sandbox/core/text/Timestamp.h"
#include "sandbox/core/text/Uuid.h"

namespace zuvi::sandbox {
namespace {

/// A file that is taken away again unless the database took note of it.
class NewFile {
public:
  NewFile(const std::filesystem::path& folder, const std::string& ending, std::string_view bytes)
      : file_{newUuid() + ending, bytes.size()}, path_(folder / file_.name),
        written_(writeFile(path_, bytes)) {}
  ~NewFile() {
    std::error_code ignored;
    if (!kept_) std::filesystem::remove(path_, ignored);
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  explicit operator bool() const { return static_cast<bool>(written_); }
  const Error& error() const { return written_.error(); }
  const StoredFile& file() const { return file_; }
  std::int64_t size() const { return static_cast<std::int64_t>(file_.size); }
  void keep() { kept_ = true; }

private:
  StoredFile file_;
  std::filesystem::path path_;
  Result<Done> written_;
  bool kept_ = false;
};

bool addMetadata(Database& database, const std::string& owner, const Metadata& metadata) {
  std::int64_t position = 0;
  for (const auto& [key, value] : metadata)
    if (!database.run("INSERT INTO metadata VALUES (?, ?, ?, ?)", owner, position++, key, value))
      return false;
  return true;
}

bool addFields(Database& database, const std::string& documentId,
               const std::vector<OcrField>& fields) {
  std::int64_t position = 0;
  for (const OcrField& field : fields)
    if (!database.run("INSERT INTO fields VALUES (?, ?, ?, ?, ?, ?, 0)", documentId, position++,
                      field.id, field.label, std::int64_t{field.required}, field.value))
      return false;
  return true;
}

bool addSide(Database& database, const std::string& documentId, const DocumentSide& side) {
  return database.run("INSERT INTO sides VALUES (?, ?, ?, ?, ?)", documentId, side.side,
                      side.picture.name, static_cast<std::int64_t>(side.picture.size),
                      side.arrived);
}

} // namespace

Result<Identity> Store::addIdentity(const std::string& clientId, std::string_view film,
                                    const Metadata& metadata) {
  NewFile file(filesFolder(), ".mov", film);
  if (!file) return file.error();
  Identity identity{newUuid(), clientId, file.file(), {}, timestampNow(), metadata, {}, {}};
  std::optional<NewFile> still;
  if (const auto frame = firstJpegFrame(film); !frame.empty()) {
    still.emplace(filesFolder(), ".jpg", frame);
    if (!*still) return still->error();
    identity.still = still->file();
  }

  const std::lock_guard lock(state_->mutex);
  Database& database = state_->database;
  Transaction transaction(database);
  const bool done =
      database.run("INSERT INTO identities VALUES (?, ?, ?, ?, ?, ?, ?)", identity.id, clientId,
                   identity.film.name, file.size(), identity.still.name,
                   static_cast<std::int64_t>(identity.still.size), identity.arrived) &&
      addMetadata(database, identity.id, metadata) && transaction.commit();
  if (!done) return state_->databaseError();
  file.keep();
  if (still) still->keep();
  ++state_->revision;
  return identity;
}

Result<Face> Store::addFace(const std::string& identityId, FaceKind kind, std::string_view photo,
                            const Metadata& metadata) {
  NewFile file(filesFolder(), ".jpg", photo);
  if (!file) return file.error();
  Face face{newUuid(), kind, file.file(), timestampNow(), metadata};

  const std::lock_guard lock(state_->mutex);
  Database& database = state_->database;
  Transaction transaction(database);
  const std::string_view word = kind == FaceKind::appended ? "appended" : "submitted";
  const bool done = database.run("INSERT INTO faces VALUES (?, ?, ?, ?, ?, ?)", face.id, identityId,
                                 word, face.photo.name, file.size(), face.arrived) &&
                    addMetadata(database, face.id, metadata) && transaction.commit();
  if (!done) return state_->databaseError();
  file.keep();
  ++state_->revision;
  return face;
}

Result<Document> Store::addDocument(Document document, std::string_view frontPicture) {
  NewFile file(filesFolder(), ".jpg", frontPicture);
  if (!file) return file.error();
  document.id = newUuid();
  document.arrived = timestampNow();
  document.sides = {{"front", file.file(), document.arrived}};

  const std::lock_guard lock(state_->mutex);
  Database& database = state_->database;
  Transaction transaction(database);
  const bool done =
      database.run("INSERT INTO documents VALUES (?, ?, ?, ?, ?)", document.id, document.identityId,
                   document.type, document.cardType, document.arrived) &&
      addSide(database, document.id, document.sides.front()) &&
      addFields(database, document.id, document.fields) && transaction.commit();
  if (!done) return state_->databaseError();
  file.keep();
  ++state_->revision;
  return document;
}

Result<Done> Store::addBack(const std::string& documentId, std::string_view picture,
                            const std::vector<OcrField>& fields) {
  NewFile file(filesFolder(), ".jpg", picture);
  if (!file) return file.error();
  const DocumentSide side{"back", file.file(), timestampNow()};

  const std::lock_guard lock(state_->mutex);
  Database& database = state_->database;
  Transaction transaction(database);
  const bool done = addSide(database, documentId, side) &&
                    addFields(database, documentId, fields) && transaction.commit();
  if (!done) return state_->databaseError();
  file.keep();
  ++state_->revision;
  return Done{};
}

Result<Done> Store::setFields(const std::string& documentId, const FieldValues& values) {
  const std::lock_guard lock(state_->mutex);
  Database& database = state_->database;
  Transaction transaction(database);
  bool done = true;
  for (const auto& [id, value] : values)
    done = done && database.run("UPDATE fields SET value = ?, verified = 1 "
                                "WHERE document = ? AND id = ?",
                                value, documentId, id);
  if (!done || !transaction.commit()) return state_->databaseError();
  ++state_->revision;
  return Done{};
}

Result<Done> Store::addEvent(const std::string& name, const std::string& properties) {
  const std::lock_guard lock(state_->mutex);
  if (!state_->database.run("INSERT INTO events (name, properties, arrived) VALUES (?, ?, ?)", name,
                            properties, timestampNow()))
    return state_->databaseError();
  ++state_->revision;
  return Done{};
}

} // namespace zuvi::sandbox
