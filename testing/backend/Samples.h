#pragma once

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace zuvi::sandbox::test {

inline const std::string jpeg("\xff\xd8\xff\xe0 a picture \xff\xd9");
inline constexpr char filmBytes[] = "\0\0\0\x14"
                                    "ftypqt  a film with \r\n and \0 in it";
inline const std::string film(filmBytes, sizeof filmBytes - 1);
inline constexpr auto boundary = "Boundary-3F2504E0-4F89-41D3-9A0C-0305E82C3301";

/// A form with one file, framed as a client must frame it.
struct SampleForm {
  std::vector<std::pair<std::string, std::string>> fields;
  std::string fileField = "picture";
  std::string fileName = "user-profile.jpg";
  std::string type = "image/jpeg";
  std::string bytes = jpeg;

  static SampleForm ofFilm() { return {{}, "video", "liveness.mov", "video/quicktime", film}; }
  static SampleForm ofPhoto() { return {{}, "photo", "user-profile.jpg", "image/jpeg", jpeg}; }
  static SampleForm ofDocument(const std::string& documentType, const std::string& side) {
    SampleForm form;
    form.fields = {{"type", documentType}, {"side", side}};
    return form;
  }

  std::string body() const {
    const std::string line = std::string("--") + boundary, end = "\r\n";
    const std::string disposition = end + "Content-Disposition: form-data; name=\"";
    std::ostringstream text;
    for (const auto& [name, value] : fields)
      text << line << disposition << name << '"' << end << end << value << end;
    text << line << disposition << fileField << "\"; filename=\"" << fileName << '"' << end
         << "Content-Type: " << type << end << end << bytes << end << line << "--" << end;
    return text.str();
  }
};

inline const std::string formType = "multipart/form-data; boundary=" + std::string(boundary);

} // namespace zuvi::sandbox::test
