#pragma once

#include "sandbox/core/Result.h"
#include "sandbox/core/store/Records.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zuvi::sandbox {

/// New values of a document's fields, by their ids.
using FieldValues = std::vector<std::pair<std::string, std::string>>;

enum class OpenMode { createIfAbsent, mustExist };

/// What arrived, kept in a folder: a database, and films and pictures as files beside it.
/// Everything that was stored is there again after a restart. Safe on every thread.
class Store {
public:
  static Result<std::unique_ptr<Store>> open(const std::filesystem::path& folder, OpenMode mode);
  ~Store();
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  /// Each of these stores one resource and gives it back with its new id.
  Result<Identity> addIdentity(const std::string& clientId, std::string_view film,
                               const Metadata& metadata);
  Result<Face> addFace(const std::string& identityId, FaceKind kind, std::string_view photo,
                       const Metadata& metadata);
  Result<Document> addDocument(Document document, std::string_view frontPicture);
  /// Stores the back and the fields that are known with it.
  Result<Done> addBack(const std::string& documentId, std::string_view picture,
                       const std::vector<OcrField>& fields);
  /// All of them or none.
  Result<Done> setFields(const std::string& documentId, const FieldValues& values);
  Result<Done> addEvent(const std::string& name, const std::string& properties);

  /// The client that made the identity; absent when there is none of that id.
  Result<std::optional<std::string>> ownerOfIdentity(const std::string& identityId) const;
  Result<std::optional<std::string>> ownerOfDocument(const std::string& documentId) const;
  Result<Document> document(const std::string& documentId) const;
  Result<Arrivals> arrivals() const;

  /// Where a stored file lies. Absent for every name that is not one this store gives.
  std::optional<std::filesystem::path> file(std::string_view name) const;
  std::filesystem::path filesFolder() const;
  /// Grows with everything that is stored.
  std::uint64_t revision() const;

private:
  struct State;
  explicit Store(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

} // namespace zuvi::sandbox
