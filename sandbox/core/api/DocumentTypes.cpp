#include "sandbox/core/api/DocumentTypes.h"

namespace zuvi::sandbox {
namespace {

constexpr DocumentType types[] = {{"driving-license", "E", true},
                                  {"national-id", "B", true},
                                  {"proof-of-residency", "A", false},
                                  {"passport", "D", false}};

OcrField required(const char* id, const char* label, const char* value) {
  return {id, label, true, value, false};
}

OcrField optional(const char* id, const char* label, const char* value) {
  return {id, label, false, value, false};
}

} // namespace

const DocumentType* findDocumentType(std::string_view name) {
  for (const DocumentType& type : types)
    if (type.name == name) return &type;
  return nullptr;
}

std::vector<OcrField> readFields(const DocumentType& type) {
  if (type.name == "proof-of-residency")
    return {required("fullName", "Full name", "Maria Sample"),
            required("address", "Address", "12 Harbour Road, 4000 Porto"),
            optional("issued", "Date of issue", "2024-02-01")};
  std::vector<OcrField> fields = {required("fullName", "Full name", "Maria Sample"),
                                  required("birthDate", "Date of birth", "1990-05-17"),
                                  required("documentNumber", "Document number", "X4093127"),
                                  optional("expires", "Valid until", "2031-08-30")};
  if (type.name == "driving-license")
    fields.push_back(optional("categories", "Categories", "A1, B"));
  if (type.name == "national-id")
    fields.push_back(optional("address", "Address", "12 Harbour Road, 4000 Porto"));
  if (type.name == "passport")
    fields.push_back(required("nationality", "Nationality", "Portuguese"));
  return fields;
}

} // namespace zuvi::sandbox
