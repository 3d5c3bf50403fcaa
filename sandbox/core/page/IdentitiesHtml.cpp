#include "sandbox/core/page/ArrivalsHtml.h"

#include "sandbox/core/api/DocumentTypes.h"
#include "sandbox/core/page/Html.h"
#include "sandbox/core/page/Words.h"

#include <algorithm>

namespace zuvi::sandbox {
namespace {

/// So many films show their first picture before they are played: a browser reads and keeps part of
/// each, and can't hold a thousand.
constexpr std::ptrdiff_t filmsShown = 20;

class IdentityWriter {
public:
  IdentityWriter(std::string_view files, bool showsFilm) : files_(files), showsFilm_(showsFilm) {}

  std::string write(const Identity& identity) {
    out_ += html(R"(<article class="identity" data-key="%">
<header><h2>Identity</h2><span class="chip">%</span><time datetime="%">%</time>
<code class="id">%</code></header>
<div class="first">)",
                 identity.id, identity.clientId, identity.arrived, timeWords(identity.arrived),
                 identity.id);
    film(identity);
    metadata(identity.metadata);
    out_ += "</div>\n";
    if (!identity.faces.empty()) faces(identity.faces);
    for (const Document& one : identity.documents)
      document(one);
    out_ += "</article>\n";
    return std::move(out_);
  }

private:
  std::string link(const StoredFile& file) const { return files_ + file.name; }

  void film(const Identity& identity) {
    out_ += html(R"(<figure class="film"><video controls playsinline preload="%" src="%")",
                 showsFilm_ ? "metadata" : "none", link(identity.film));
    if (!identity.still.name.empty()) out_ += html(R"( poster="%")", link(identity.still));
    out_ += html(R"(></video><figcaption><a href="%">Film</a>, %</figcaption></figure>
)",
                 link(identity.film), sizeWords(identity.film.size));
  }

  void metadata(const Metadata& metadata) {
    if (metadata.empty()) {
      out_ += R"(<p class="quiet">No metadata came with it.</p>)";
      return;
    }
    out_ += R"(<dl class="metadata">)";
    for (const auto& [key, value] : metadata)
      out_ += html("<div><dt>%</dt><dd>%</dd></div>", key, value);
    out_ += "</dl>";
  }

  void picture(const StoredFile& file, std::string_view caption) {
    out_ += html(R"(<figure><a href="%"><img src="%" alt="%" loading="lazy"></a>)", link(file),
                 link(file), caption);
    out_ += html("<figcaption>%, %</figcaption></figure>\n", caption, sizeWords(file.size));
  }

  void faces(const std::vector<Face>& faces) {
    out_ += "<section data-key=\"faces\"><h3>Faces</h3><div class=\"pictures\">\n";
    for (const Face& face : faces)
      picture(face.photo, face.kind == FaceKind::appended ? "Appended face" : "Face");
    out_ += "</div>";
    for (const Face& face : faces)
      if (!face.metadata.empty()) metadata(face.metadata);
    out_ += "</section>\n";
  }

  static std::string state(const Document& document) {
    const DocumentType* type = findDocumentType(document.type);
    if (type != nullptr && type->hasBack && document.sides.size() < 2) return "Back side missing";
    const bool verified = std::any_of(document.fields.begin(), document.fields.end(),
                                      [](const OcrField& field) { return field.verified; });
    return verified ? "Verified" : "Complete";
  }

  void document(const Document& document) {
    const std::string word = state(document);
    out_ += html(R"(<section class="document" data-key="%"><h3>%</h3><span class="state %">%</span>
<p class="quiet">Card type %, <time datetime="%">%</time></p>
<div class="pictures">
)",
                 document.id, documentWords(document.type),
                 word == "Back side missing" ? "open" : "done", word, document.cardType,
                 document.arrived, timeWords(document.arrived));
    for (const DocumentSide& side : document.sides)
      picture(side.picture, side.side == "back" ? "Back" : "Front");
    out_ += "</div>\n";
    if (!document.fields.empty()) fields(document.fields);
    out_ += "</section>\n";
  }

  void fields(const std::vector<OcrField>& fields) {
    out_ += "<table><thead><tr><th scope=\"col\">Field</th><th scope=\"col\">Value</th>"
            "<th scope=\"col\">Kind</th></tr></thead><tbody>\n";
    for (const OcrField& field : fields) {
      std::string kind = field.required ? "required" : "optional";
      if (field.verified) kind += ", verified";
      out_ += html("<tr><th scope=\"row\">%</th><td>%</td><td class=\"quiet\">%</td></tr>\n",
                   field.label, field.value, kind);
    }
    out_ += "</tbody></table>\n";
  }

  std::string files_;
  bool showsFilm_;
  std::string out_;
};

} // namespace

std::string identitiesHtml(const std::vector<Identity>& identities, std::string_view files) {
  if (identities.empty())
    return R"(<p class="empty" data-key="empty">No identity has arrived yet. )"
           "What a client sends appears here by itself.</p>\n";
  std::string out;
  for (auto identity = identities.rbegin(); identity != identities.rend(); ++identity)
    out += IdentityWriter(files, identity - identities.rbegin() < filmsShown).write(*identity);
  return out;
}

} // namespace zuvi::sandbox
