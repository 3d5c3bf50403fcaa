#include "platform/CoreText/TextLayoutPango.h"

#include "platform/CoreText/TextLayout.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>

namespace zuvi {

namespace {
constexpr double unitsPerInch = 72;     // as many as points
constexpr double largestThatGrows = 40; // points; a larger font is legible as it is
double scaleOfText = 1;
} // namespace

double textScale() {
  return scaleOfText;
}

void setTextScale(double scale) {
  scaleOfText = scale;
  pango_cairo_context_set_resolution(textContext(), unitsPerInch * scale);
}

PangoContext* textContext() {
  static PangoContext* context = [] {
    PangoContext* made = pango_font_map_create_context(pango_cairo_font_map_get_default());
    // No hinting: lines break alike at every scale of the screen.
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    pango_cairo_context_set_font_options(made, options);
    cairo_font_options_destroy(options);
    pango_context_set_round_glyph_positions(made, FALSE);
    pango_cairo_context_set_resolution(made, unitsPerInch);
    return made;
  }();
  return context;
}

std::size_t characterCount(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xc0) != 0x80; // not the rest of a character
  }));
}

TextLayout::TextLayout(const AttributedString& text, const Style& style, double width)
    : color_(style.color) {
  PangoLayout* layout = pango_layout_new(textContext());
  layout_ = std::shared_ptr<void>(layout, g_object_unref);
  char* valid = g_utf8_make_valid(text.text.data(), static_cast<gssize>(text.text.size()));
  pango_layout_set_text(layout, valid, -1);
  if (style.font)
    pango_layout_set_font_description(
        layout, static_cast<const PangoFontDescription*>(style.font->native()));
  PangoAttrList* attributes = pango_attr_list_new();
  const auto count = static_cast<std::size_t>(g_utf8_strlen(valid, -1));
  for (const auto& range : text.colors) {
    if (range.location >= count) continue;
    const std::size_t end = range.location + std::min(range.length, count - range.location);
    PangoAttribute* color =
        pango_attr_foreground_new(static_cast<guint16>(range.color.red * 65535),
                                  static_cast<guint16>(range.color.green * 65535),
                                  static_cast<guint16>(range.color.blue * 65535));
    color->start_index = static_cast<guint>(
        g_utf8_offset_to_pointer(valid, static_cast<glong>(range.location)) - valid);
    color->end_index =
        static_cast<guint>(g_utf8_offset_to_pointer(valid, static_cast<glong>(end)) - valid);
    pango_attr_list_insert(attributes, color);
  }
  if (style.font && style.font->pointSize() > largestThatGrows) {
    PangoAttribute* own = pango_attr_scale_new(1 / textScale());
    own->start_index = 0;
    own->end_index = G_MAXUINT;
    pango_attr_list_insert(attributes, own);
  }
  pango_layout_set_attributes(layout, attributes);
  pango_attr_list_unref(attributes);
  g_free(valid);
  pango_layout_set_alignment(layout, style.alignment == NSTextAlignment::Center ? PANGO_ALIGN_CENTER
                                     : style.alignment == NSTextAlignment::Right
                                         ? PANGO_ALIGN_RIGHT
                                         : PANGO_ALIGN_LEFT);
  if (width >= 0) {
    pango_layout_set_width(layout, static_cast<int>(std::ceil(width * PANGO_SCALE)));
    pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
    if (style.numberOfLines > 0) {
      pango_layout_set_height(layout, -style.numberOfLines);
      pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_END);
      cutAfter(style.numberOfLines);
    }
  }
}

void TextLayout::cutAfter(int lines) {
  // The toolkit counts the lines of each paragraph by itself.
  auto* layout = static_cast<PangoLayout*>(layout_.get());
  if (pango_layout_get_line_count(layout) <= lines) return;
  cut_ = true;
  const std::string text = pango_layout_get_text(layout);
  auto kept = static_cast<std::size_t>(pango_layout_get_line_readonly(layout, lines)->start_index);
  while (kept > 0 && pango_layout_get_line_count(layout) > lines) {
    do
      kept--;
    while (kept > 0 && (static_cast<unsigned char>(text[kept]) & 0xc0) == 0x80);
    pango_layout_set_text(layout, (text.substr(0, kept) + "\xe2\x80\xa6").c_str(), -1);
  }
}

CGSize TextLayout::size() const {
  PangoRectangle logical{};
  pango_layout_get_extents(static_cast<PangoLayout*>(layout_.get()), nullptr, &logical);
  return {std::ceil(logical.width / double(PANGO_SCALE)),
          std::ceil(logical.height / double(PANGO_SCALE))};
}

bool TextLayout::isTruncated() const {
  return cut_ || pango_layout_is_ellipsized(static_cast<PangoLayout*>(layout_.get()));
}

} // namespace zuvi
