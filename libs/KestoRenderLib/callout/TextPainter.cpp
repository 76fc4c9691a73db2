#include "KestoRenderLib/callout/TextPainter.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace KestoRenderLib {

namespace {

using Side = CalloutLook::Side;

constexpr double smallestFont = 6;
constexpr int fittingSteps = 7;
/// In Pango's units, far from the end of their range.
constexpr double largestLength = 1e6;

struct Deleter {
    void operator()(PangoLayout* layout) const { g_object_unref(layout); }
    void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
    void operator()(PangoAttrList* attributes) const { pango_attr_list_unref(attributes); }
    void operator()(gchar* text) const { g_free(text); }
};
template <class T>
using Owned = std::unique_ptr<T, Deleter>;

/// Lengths that do not depend on the scale, so that lines break at the same words at every size.
void setFontOptions(PangoLayout* layout, bool antialiased) {
    const CairoOwned<cairo_font_options_t> options(cairo_font_options_create());
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_antialias(options.get(),
                                     antialiased ? CAIRO_ANTIALIAS_GRAY : CAIRO_ANTIALIAS_NONE);
    PangoContext* context = pango_layout_get_context(layout);
    pango_cairo_context_set_font_options(context, options.get());
    pango_context_set_round_glyph_positions(context, FALSE);
    pango_layout_context_changed(layout);
}

PangoAlignment alignmentOf(Side side) {
    switch (side) {
    case Side::Start:
        return PANGO_ALIGN_LEFT;
    case Side::Middle:
        return PANGO_ALIGN_CENTER;
    case Side::End:
        break;
    }
    return PANGO_ALIGN_RIGHT;
}

double partBefore(Side side) {
    switch (side) {
    case Side::Start:
        return 0;
    case Side::Middle:
        return 0.5;
    case Side::End:
        break;
    }
    return 1;
}

int pangoUnits(double length) {
    return static_cast<int>(std::lround(std::clamp(length, 0.0, largestLength) * PANGO_SCALE));
}

/// A text that is laid out in an area.
class FittedText {
public:
    FittedText(cairo_t* drawn, const CalloutLook& wanted, const Area& box, bool antialiased)
        : context(drawn)
        , look(wanted)
        , area(box)
        , layout(pango_cairo_create_layout(drawn))
        , font(pango_font_description_new()) {
        setFontOptions(layout.get(), antialiased);
        pango_font_description_set_family(font.get(), look.font.c_str());
        pango_font_description_set_weight(font.get(), static_cast<PangoWeight>(look.fontWeight));
        pango_font_description_set_style(font.get(), look.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
        const Owned<gchar> valid(g_utf8_make_valid(look.text.data(), static_cast<gssize>(look.text.size())));
        pango_layout_set_text(layout.get(), valid.get(), -1);
        pango_layout_set_alignment(layout.get(), alignmentOf(look.across));
        // Unwrapped lines need a width to be aligned in as well.
        pango_layout_set_width(layout.get(), look.wraps ? pangoUnits(area.width) : -1);
        pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD);
        underline();
        fit();
    }

    void paint() {
        PangoRectangle extents;
        pango_layout_get_extents(layout.get(), nullptr, &extents);
        const double width = extents.width / double{PANGO_SCALE};
        const double height = extents.height / double{PANGO_SCALE};
        const double left = extents.x / double{PANGO_SCALE};
        // What is too high shows its beginning.
        const double above = std::max((area.height - height) * partBefore(look.down), 0.0);
        const double before = (area.width - width) * partBefore(look.across);
        cairo_move_to(context, area.x + before - left, area.y + above - extents.y / double{PANGO_SCALE});
        pango_cairo_show_layout(context, layout.get());
    }

private:
    void underline() {
        if (!look.underlined)
            return;
        const Owned<PangoAttrList> attributes(pango_attr_list_new());
        pango_attr_list_insert(attributes.get(), pango_attr_underline_new(PANGO_UNDERLINE_SINGLE));
        pango_layout_set_attributes(layout.get(), attributes.get());
    }

    bool fitsAt(double size) {
        pango_font_description_set_absolute_size(font.get(), size * PANGO_SCALE);
        pango_layout_set_font_description(layout.get(), font.get());
        int width = 0;
        int height = 0;
        pango_layout_get_size(layout.get(), &width, &height);
        return width <= pangoUnits(area.width) && height <= pangoUnits(area.height);
    }

    /// The largest size up to that of the look at which no word is broken and all lines fit.
    void fit() {
        if (fitsAt(look.fontSize))
            return;
        double fits = std::min(smallestFont, look.fontSize);
        if (!look.fits || !fitsAt(fits)) {
            pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
            (void)fitsAt(look.fits ? fits : look.fontSize);
            return;
        }
        double tooLarge = look.fontSize;
        for (int step = 0; step < fittingSteps; ++step) {
            const double middle = (fits + tooLarge) / 2;
            (fitsAt(middle) ? fits : tooLarge) = middle;
        }
        (void)fitsAt(fits);
    }

    cairo_t* context;
    const CalloutLook& look;
    const Area& area;
    Owned<PangoLayout> layout;
    Owned<PangoFontDescription> font;
};

} // namespace

void paintText(cairo_t* context, const CalloutLook& look, const Area& area, bool antialiased) {
    if (area.isEmpty())
        return;
    cairo_save(context);
    cairo_rectangle(context, area.x, area.y, area.width, area.height);
    cairo_clip(context);
    setSource(context, look.textColor);
    FittedText(context, look, area, antialiased).paint();
    cairo_restore(context);
}

} // namespace KestoRenderLib
