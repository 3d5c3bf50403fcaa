#pragma once

#include <ZuviSDK/Export.h>

#include <memory>
#include <string>

namespace zuvi {

/// How heavy the strokes are.
enum class FontWeight { Regular, SemiBold, Bold };

/// A face at a size. Main thread.
class CTFont {
public:
  /// The face of that PostScript name, size in points; null when no registered or installed font
  /// bears it.
  ZUVI_API static std::shared_ptr<const CTFont> named(const std::string& postScriptName,
                                                      double size);
  /// The desktop's plain face.
  ZUVI_API static std::shared_ptr<const CTFont> system(double size,
                                                       FontWeight weight = FontWeight::Regular);

  /// The same face at another size.
  ZUVI_API std::shared_ptr<const CTFont> withSize(double size) const;

  /// The PostScript name that was asked for; "Sans" for the system's face.
  const std::string& name() const { return name_; }
  /// In points, before the person's wish for larger text.
  double pointSize() const { return size_; }
  /// Of one line, in points, with the person's wish for larger text.
  ZUVI_API double lineHeight() const;

  /// @cond
  /// The toolkit's description of the face; for files that draw text.
  const void* native() const { return description_.get(); }
  /// @endcond

private:
  std::string name_;
  double size_ = 0;
  std::shared_ptr<void> description_;
};

/// Posted after a font file was registered.
inline constexpr const char* CTFontManagerRegisteredFontsChangedNotification =
    "CTFontManagerFontChangedNotification";

/// Makes the faces of a font file known to this process. False when the file cannot be read as a
/// font or has been registered before.
ZUVI_API bool CTFontManagerRegisterFontsForURL(const std::string& path);

} // namespace zuvi
