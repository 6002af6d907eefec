#include "apps/inspect/pages/dialog_font.h"
#include "apps/inspect/pages/page_preview.h"
#include "platform/text.h"
#include "platform/utf8.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

using ZELPropUI::PageRect;

constexpr int closed_combo_height = 21;

// The last two of each plane, and a row in the midst of Arabic forms.
bool is_noncharacter(char32_t code) {
    return (code & 0xFFFE) == 0xFFFE || (code >= 0xFDD0 && code <= 0xFDEF);
}

// XML knows no control characters but white space, and a viewer that meets what is no character at all shows
// nothing of the picture.
std::string escaped(std::string_view text) {
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    std::string safe;
    while (!text.empty()) {
        const platform::utf8_character next = platform::first_character(text);
        if (next.code == '<') {
            safe += "&lt;";
        } else if (next.code == '>') {
            safe += "&gt;";
        } else if (next.code == '&') {
            safe += "&amp;";
        } else if (next.code == '"') {
            safe += "&quot;";
        } else if (next.code == platform::no_character || is_noncharacter(next.code)) {
            safe += replacement;
        } else if (next.code >= 0x20) {
            safe += text.substr(0, next.size);
        }
        text.remove_prefix(next.size);
    }
    return safe;
}

class svg_writer {
public:
    explicit svg_writer(const drawn_page& page) : page_(page) {}

    [[nodiscard]] std::string write();

private:
    template <class... Values>
    void put(const char* format, const Values&... values) {
        fmt::format_to(std::back_inserter(svg_), fmt::runtime(format), values...);
        svg_ += '\n';
    }
    void open();
    void draw(const drawn_control& control);
    void draw_slider(const drawn_control& control);
    void draw_edit(const drawn_control& control);
    void draw_spin_button(const drawn_control& control);
    void draw_combo(const drawn_control& control);
    void draw_check_box(const drawn_control& control);
    void draw_button(const drawn_control& control);
    void box(const PageRect& place, const char* fill, const char* stroke);
    void text(int left, const PageRect& row, const char* anchor, const drawn_control& control);

    const drawn_page& page_;
    std::string svg_;
};

const char* ink(const drawn_control& control) { return control.enabled ? "#000000" : "#8c8c8c"; }

void svg_writer::box(const PageRect& place, const char* fill, const char* stroke) {
    put(R"(    <rect x="{}.5" y="{}.5" width="{}" height="{}" fill="{}" stroke="{}"/>)", place.left,
        place.top, std::max(place.width - 1, 0), std::max(place.height - 1, 0), fill, stroke);
}

// Cut off at the edges of its control, as windows do. Whatever font a viewer has, it is told the width that
// the text has in the layout.
void svg_writer::text(int left, const PageRect& row, const char* anchor, const drawn_control& control) {
    constexpr int baseline = 4;  // below the middle of the row
    const int width = dialog_text_width(platform::widen(control.text));
    if (width == 0) return;
    put(R"(    <svg x="{}" y="{}" width="{}" height="{}"><text x="{}" y="{}" textLength="{}" )"
        R"(lengthAdjust="spacingAndGlyphs" text-anchor="{}" fill="{}">{}</text></svg>)",
        row.left, row.top, row.width, row.height, left - row.left, row.height / 2 + baseline, width, anchor,
        ink(control), escaped(control.text));
}

void svg_writer::draw_slider(const drawn_control& control) {
    constexpr int margin = 8;
    constexpr int groove_height = 4;
    constexpr int thumb_width = 10;
    constexpr int thumb_height = 18;
    const PageRect& place = control.place;
    const int room = std::max(place.width - 2 * margin, 0);
    const int middle = place.top + place.height / 2;
    box({place.left + margin, middle - groove_height / 2, room, groove_height}, "#e7eaea", "#d6d6d6");
    double share = 0;
    if (control.position && control.highest_position &&
        *control.highest_position > control.lowest_position.value_or(0)) {
        const double low = control.lowest_position.value_or(0);
        share = (*control.position - low) / (*control.highest_position - low);
    }
    const int thumb =
        place.left + margin + static_cast<int>(std::clamp(share, 0.0, 1.0) * room) - thumb_width / 2;
    box({thumb, middle - thumb_height / 2, thumb_width, thumb_height},
        control.enabled ? "#0078d7" : "#cccccc", "#7a7a7a");
}

void svg_writer::draw_edit(const drawn_control& control) {
    constexpr int margin = 4;
    box(control.place, control.enabled ? "#f0f0f0" : "#e6e6e6", "#7a7a7a");
    text(control.place.left + margin, control.place, "start", control);
}

void svg_writer::draw_spin_button(const drawn_control& control) {
    const PageRect& place = control.place;
    const int half = place.height / 2;
    box({place.left, place.top, place.width, half}, "#e1e1e1", "#adadad");
    box({place.left, place.top + half, place.width, place.height - half}, "#e1e1e1", "#adadad");
    const int middle = place.left + place.width / 2;
    put(R"(    <path d="M{} {}l3 -3l3 3z" fill="{}"/>)", middle - 3, place.top + half / 2 + 2, ink(control));
    put(R"(    <path d="M{} {}l3 3l3 -3z" fill="{}"/>)", middle - 3, place.top + half + half / 2 - 1,
        ink(control));
}

void svg_writer::draw_combo(const drawn_control& control) {
    constexpr int margin = 5;
    constexpr int arrow_room = 14;
    const PageRect closed = {control.place.left, control.place.top, control.place.width, closed_combo_height};
    box(closed, control.enabled ? "#ffffff" : "#e6e6e6", "#7a7a7a");
    text(closed.left + margin, closed, "start", control);
    put(R"(    <path d="M{} {}l4 4l4 -4z" fill="{}"/>)", closed.left + closed.width - arrow_room,
        closed.top + closed.height / 2 - 2, ink(control));
}

void svg_writer::draw_check_box(const drawn_control& control) {
    constexpr int size = 13;
    constexpr int gap = 3;
    const PageRect& place = control.place;
    const PageRect square = {place.left, place.top + (place.height - size) / 2, size, size};
    box(square, "#ffffff", ink(control));
    if (control.checked) {
        put(R"(    <path d="M{} {}l3 3l5 -6" fill="none" stroke="{}" stroke-width="2"/>)", square.left + 3,
            square.top + size / 2, ink(control));
    }
    text(place.left + size + gap, place, "start", control);
}

void svg_writer::draw_button(const drawn_control& control) {
    box(control.place, "#e1e1e1", "#adadad");
    text(control.place.left + control.place.width / 2, control.place, "middle", control);
}

// The first rectangle of a control is the room that the layout gave it.
void svg_writer::draw(const drawn_control& control) {
    std::string kind(control_word(control.kind));
    std::replace(kind.begin(), kind.end(), ' ', '-');
    put(R"(  <g class="{}" data-feature="{}">)", kind, escaped(control.feature));
    put(R"(    <rect class="place" x="{}" y="{}" width="{}" height="{}" fill="none"/>)", control.place.left,
        control.place.top, control.place.width, control.place.height);
    switch (control.kind) {
        case control_kind::label:
            text(control.place.left, control.place, "start", control);
            break;
        case control_kind::slider:
            draw_slider(control);
            break;
        case control_kind::edit:
            draw_edit(control);
            break;
        case control_kind::spin_button:
            draw_spin_button(control);
            break;
        case control_kind::combo:
            draw_combo(control);
            break;
        case control_kind::check_box:
            draw_check_box(control);
            break;
        case control_kind::button:
            draw_button(control);
            break;
    }
    put("  </g>");
}

void svg_writer::open() {
    int right = page_width;
    int bottom = page_height;
    for (const drawn_control& control : page_.controls) {
        const bool is_combo = control.kind == control_kind::combo;
        right = std::max(right, control.place.left + control.place.width);
        bottom =
            std::max(bottom, control.place.top + (is_combo ? closed_combo_height : control.place.height));
    }
    put(R"(<svg xmlns="http://www.w3.org/2000/svg" width="{0}" height="{1}" viewBox="0 0 {0} {1}" {2}>)",
        right, bottom,
        R"(font-family="Tahoma, 'DejaVu Sans Condensed', 'Noto Sans', sans-serif" font-size="11")");
    put("  <title>{}</title>", escaped(TitleOf(page_.name)));
    put(R"(  <rect width="{}" height="{}" fill="#d0d0d0"/>)", right, bottom);
    put(R"(  <rect class="page" width="{}" height="{}" fill="#f0f0f0"/>)", page_width, page_height);
}

std::string svg_writer::write() {
    open();
    for (const drawn_control& control : page_.controls) draw(control);
    put("</svg>");
    return std::move(svg_);
}

}  // namespace

std::string page_svg(const drawn_page& page) { return svg_writer(page).write(); }

}  // namespace selvane_inspect
