#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zuvi::sandbox {

/// Keys and values as a host attached them, in the order in which they came.
using Metadata = std::vector<std::pair<std::string, std::string>>;

/// Bytes that lie in the data folder as a file.
struct StoredFile {
  std::string name; ///< empty when there is none
  std::uint64_t size = 0;
};

/// One piece of text that was read from a document.
struct OcrField {
  std::string id;
  std::string label;
  bool required = false;
  std::string value;
  bool verified = false; ///< a client sent its value back
};

struct DocumentSide {
  std::string side; ///< "front" or "back"
  StoredFile picture;
  std::string arrived;
};

struct Document {
  std::string id;
  std::string identityId;
  std::string type;
  std::string cardType;
  std::string arrived;
  std::vector<DocumentSide> sides;
  std::vector<OcrField> fields; ///< empty until every side is here
};

enum class FaceKind {
  appended, ///< put to the identity itself
  submitted ///< a resource of its own
};

struct Face {
  std::string id;
  FaceKind kind = FaceKind::submitted;
  StoredFile photo;
  std::string arrived;
  Metadata metadata;
};

struct Identity {
  std::string id;
  std::string clientId;
  StoredFile film;
  StoredFile still; ///< a frame of the film, when one could be taken out
  std::string arrived;
  Metadata metadata;
  std::vector<Face> faces;
  std::vector<Document> documents;
};

struct Event {
  std::int64_t number = 0; ///< counts up in the order of arrival
  std::string name;
  std::string properties; ///< JSON text
  std::string arrived;
};

/// All that is stored, oldest first.
struct Arrivals {
  std::vector<Identity> identities;
  std::vector<Event> events;
};

} // namespace zuvi::sandbox
