#include <ZuviSDK/CoreText/CTFont.h>

#include <ZuviSDK/Foundation/NotificationCenter.h>
#include "platform/CoreText/TextLayoutPango.h"

#include <fontconfig/fontconfig.h>
#include <pango/pangofc-fontmap.h>

#include <cmath>
#include <set>

namespace zuvi {

namespace {

using PatternPointer = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;

PatternPointer patternOf(const std::string& postScriptName) {
  PatternPointer query(FcPatternCreate(), FcPatternDestroy);
  FcPatternAddString(query.get(), FC_POSTSCRIPT_NAME,
                     reinterpret_cast<const FcChar8*>(postScriptName.c_str()));
  FcObjectSet* wanted = FcObjectSetBuild(FC_FAMILY, FC_STYLE, FC_WEIGHT, FC_SLANT, FC_WIDTH,
                                         FC_POSTSCRIPT_NAME, nullptr);
  FcFontSet* found = FcFontList(nullptr, query.get(), wanted);
  FcObjectSetDestroy(wanted);
  PatternPointer pattern(nullptr, FcPatternDestroy);
  if (found && found->nfont > 0) {
    FcPatternReference(found->fonts[0]);
    pattern.reset(found->fonts[0]);
  }
  if (found) FcFontSetDestroy(found);
  return pattern;
}

std::shared_ptr<void> hold(PangoFontDescription* description, double size) {
  // One point is one unit of the layer tree, times the text's scale: the context sees to that.
  pango_font_description_set_size(description, static_cast<int>(std::lround(size * PANGO_SCALE)));
  return {description, [](void* held) {
            pango_font_description_free(static_cast<PangoFontDescription*>(held));
          }};
}

} // namespace

std::shared_ptr<const CTFont> CTFont::named(const std::string& postScriptName, double size) {
  const PatternPointer pattern = patternOf(postScriptName);
  if (!pattern) return nullptr;
  auto font = std::make_shared<CTFont>();
  font->name_ = postScriptName;
  font->size_ = size;
  font->description_ = hold(pango_fc_font_description_from_pattern(pattern.get(), FALSE), size);
  return font;
}

std::shared_ptr<const CTFont> CTFont::system(double size, FontWeight weight) {
  PangoFontDescription* description = pango_font_description_from_string("Sans");
  pango_font_description_set_weight(description, weight == FontWeight::Regular ? PANGO_WEIGHT_NORMAL
                                                 : weight == FontWeight::SemiBold
                                                     ? PANGO_WEIGHT_SEMIBOLD
                                                     : PANGO_WEIGHT_BOLD);
  auto font = std::make_shared<CTFont>();
  font->name_ = "Sans";
  font->size_ = size;
  font->description_ = hold(description, size);
  return font;
}

std::shared_ptr<const CTFont> CTFont::withSize(double size) const {
  auto font = std::make_shared<CTFont>(*this);
  font->size_ = size;
  font->description_ =
      hold(pango_font_description_copy(static_cast<const PangoFontDescription*>(native())), size);
  return font;
}

double CTFont::lineHeight() const {
  PangoFontMetrics* metrics = pango_context_get_metrics(
      textContext(), static_cast<const PangoFontDescription*>(native()), nullptr);
  const double height = pango_font_metrics_get_height(metrics) / double(PANGO_SCALE);
  pango_font_metrics_unref(metrics);
  return height;
}

bool CTFontManagerRegisterFontsForURL(const std::string& path) {
  static std::set<std::string> registered;
  if (registered.contains(path)) return false;
  if (!FcConfigAppFontAddFile(nullptr, reinterpret_cast<const FcChar8*>(path.c_str())))
    return false;
  registered.insert(path);
  pango_fc_font_map_config_changed(PANGO_FC_FONT_MAP(pango_context_get_font_map(textContext())));
  NotificationCenter::defaultCenter().post(CTFontManagerRegisteredFontsChangedNotification);
  return true;
}

} // namespace zuvi
