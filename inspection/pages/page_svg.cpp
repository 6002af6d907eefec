#include "inspection/pages/page_preview.h"
#include "platform/text.h"
#include "platform/utf8.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>
#include <pugixml.hpp>

namespace selvane_inspect {
namespace {

using pugi::xml_node;
using ZELPropUI::PageRect;

constexpr int closed_combo_height = 21;

// The last two of each plane, and a row in the midst of Arabic forms.
bool is_noncharacter(char32_t code) {
    return (code & 0xFFFE) == 0xFFFE || (code >= 0xFDD0 && code <= 0xFDEF);
}

// XML knows no control characters but white space, and a viewer that meets what is no character at all shows
// nothing of the picture.
std::string drawable(std::string_view text) {
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    std::string safe;
    while (!text.empty()) {
        const platform::utf8_character next = platform::first_character(text);
        if (next.code == platform::no_character || is_noncharacter(next.code)) {
            safe += replacement;
        } else if (next.code >= 0x20) {
            safe += text.substr(0, next.size);
        }
        text.remove_prefix(next.size);
    }
    return safe;
}

const char* ink(const drawn_control& control) { return control.enabled ? "#000000" : "#8c8c8c"; }

// Whatever a description says is no part of the markup: it is set afterwards.
template <class... Parts>
xml_node add_element(xml_node parent, fmt::format_string<const Parts&...> markup, const Parts&... parts) {
    const std::string element = fmt::format(markup, parts...);
    parent.append_buffer(element.data(), element.size(), pugi::parse_default, pugi::encoding_utf8);
    return parent.last_child();
}

// Around the middle of its pixels, where a line of one pixel is sharp.
void add_box(xml_node parent, const PageRect& rect, const char* fill, const char* stroke) {
    add_element(parent, R"(<rect x="{}.5" y="{}.5" width="{}" height="{}" fill="{}" stroke="{}"/>)",
                rect.left, rect.top, std::max(rect.width - 1, 0), std::max(rect.height - 1, 0), fill, stroke);
}

// A filled shape that begins at a point and goes on as `way` says.
void add_shape(xml_node parent, int left, int top, const char* way, const char* fill) {
    add_element(parent, R"(<path d="M{} {}{}" fill="{}"/>)", left, top, way, fill);
}

// Cut off at the edges of its control, as windows do. Whatever font a viewer has, it is told the width that
// the text has in the layout.
void add_text(xml_node parent, int left, const PageRect& row, const char* anchor,
              const drawn_control& control) {
    constexpr int baseline = 4;  // below the middle of the row
    const int width = dialog_text_width(platform::widen(control.text));
    if (width == 0) return;
    const xml_node clip = add_element(parent, R"(<svg x="{}" y="{}" width="{}" height="{}"/>)", row.left,
                                      row.top, row.width, row.height);
    add_element(clip,
                R"(<text x="{}" y="{}" textLength="{}" lengthAdjust="spacingAndGlyphs" )"
                R"(text-anchor="{}" fill="{}"/>)",
                left - row.left, row.height / 2 + baseline, width, anchor, ink(control))
        .text()
        .set(drawable(control.text).c_str());
}

void draw_label(xml_node group, const drawn_control& control) {
    add_text(group, control.rect.left, control.rect, "start", control);
}

void draw_slider(xml_node group, const drawn_control& control) {
    constexpr int margin = 8;
    constexpr int groove_height = 4;
    constexpr int thumb_width = 10;
    constexpr int thumb_height = 18;
    const PageRect& rect = control.rect;
    const int room = std::max(rect.width - 2 * margin, 0);
    const int middle = rect.top + rect.height / 2;
    add_box(group, {rect.left + margin, middle - groove_height / 2, room, groove_height}, "#e7eaea",
            "#d6d6d6");
    const int low = control.lowest_position.value_or(0);
    const int high = control.highest_position.value_or(low);
    const double way = control.position.value_or(low) - static_cast<double>(low);
    const double share = high > low ? way / (high - static_cast<double>(low)) : 0;
    const int thumb =
        rect.left + margin + static_cast<int>(std::clamp(share, 0.0, 1.0) * room) - thumb_width / 2;
    add_box(group, {thumb, middle - thumb_height / 2, thumb_width, thumb_height},
            control.enabled ? "#0078d7" : "#cccccc", "#7a7a7a");
}

void draw_edit(xml_node group, const drawn_control& control) {
    constexpr int margin = 4;
    add_box(group, control.rect, control.enabled ? "#f0f0f0" : "#e6e6e6", "#7a7a7a");
    add_text(group, control.rect.left + margin, control.rect, "start", control);
}

void draw_spin_button(xml_node group, const drawn_control& control) {
    const PageRect& rect = control.rect;
    const int half = rect.height / 2;
    add_box(group, {rect.left, rect.top, rect.width, half}, "#e1e1e1", "#adadad");
    add_box(group, {rect.left, rect.top + half, rect.width, rect.height - half}, "#e1e1e1", "#adadad");
    const int middle = rect.left + rect.width / 2;
    add_shape(group, middle - 3, rect.top + half / 2 + 2, "l3 -3l3 3z", ink(control));
    add_shape(group, middle - 3, rect.top + half + half / 2 - 1, "l3 3l3 -3z", ink(control));
}

void draw_combo(xml_node group, const drawn_control& control) {
    constexpr int margin = 5;
    constexpr int arrow_room = 14;
    const PageRect closed = {control.rect.left, control.rect.top, control.rect.width, closed_combo_height};
    add_box(group, closed, control.enabled ? "#ffffff" : "#e6e6e6", "#7a7a7a");
    add_text(group, closed.left + margin, closed, "start", control);
    add_shape(group, closed.left + closed.width - arrow_room, closed.top + closed.height / 2 - 2,
              "l4 4l4 -4z", ink(control));
}

void draw_check_box(xml_node group, const drawn_control& control) {
    constexpr int size = 13;
    constexpr int gap = 3;
    const PageRect& rect = control.rect;
    const PageRect square = {rect.left, rect.top + (rect.height - size) / 2, size, size};
    add_box(group, square, "#ffffff", ink(control));
    if (control.checked) {
        add_element(group, R"(<path d="M{} {}l3 3l5 -6" fill="none" stroke="{}" stroke-width="2"/>)",
                    square.left + 3, square.top + size / 2, ink(control));
    }
    add_text(group, rect.left + size + gap, rect, "start", control);
}

void draw_button(xml_node group, const drawn_control& control) {
    add_box(group, control.rect, "#e1e1e1", "#adadad");
    add_text(group, control.rect.left + control.rect.width / 2, control.rect, "middle", control);
}

using draw_function = void (*)(xml_node group, const drawn_control& control);
// In the order of `control_kind`.
constexpr draw_function draw_functions[] = {draw_label, draw_slider,    draw_edit,  draw_spin_button,
                                            draw_combo, draw_check_box, draw_button};

// The first rectangle of a control is the room that the layout gave it.
void draw_control(xml_node picture, const drawn_control& control) {
    std::string kind(control_word(control.kind));
    std::replace(kind.begin(), kind.end(), ' ', '-');
    const xml_node group = add_element(picture, R"(<g class="{}" data-feature=""/>)", kind);
    group.attribute("data-feature").set_value(drawable(control.feature).c_str());
    const PageRect& rect = control.rect;
    add_element(group, R"(<rect class="place" x="{}" y="{}" width="{}" height="{}" fill="none"/>)", rect.left,
                rect.top, rect.width, rect.height);
    draw_functions[static_cast<std::size_t>(control.kind)](group, control);
}

xml_node open_picture(pugi::xml_document& document, const drawn_page& page) {
    int right = page_width;
    int bottom = page_height;
    for (const drawn_control& control : page.controls) {
        const bool is_combo = control.kind == control_kind::combo;
        right = std::max(right, control.rect.left + control.rect.width);
        bottom = std::max(bottom, control.rect.top + (is_combo ? closed_combo_height : control.rect.height));
    }
    const xml_node picture = add_element(
        document,
        R"(<svg xmlns="http://www.w3.org/2000/svg" width="{0}" height="{1}" viewBox="0 0 {0} {1}" )"
        R"(font-family="Tahoma, 'DejaVu Sans Condensed', 'Noto Sans', sans-serif" font-size="11"><title/>)"
        R"(<rect width="{0}" height="{1}" fill="#d0d0d0"/>)"
        R"(<rect class="page" width="{2}" height="{3}" fill="#f0f0f0"/></svg>)",
        right, bottom, page_width, page_height);
    picture.child("title").text().set(drawable(TitleOf(page.name)).c_str());
    return picture;
}

class svg_text final : public pugi::xml_writer {
public:
    void write(const void* data, std::size_t size) override {
        text.append(static_cast<const char*>(data), size);
    }
    std::string text;
};

}  // namespace

std::string page_svg(const drawn_page& page) {
    pugi::xml_document document;
    const xml_node picture = open_picture(document, page);
    for (const drawn_control& control : page.controls) draw_control(picture, control);
    svg_text writer;
    document.save(writer, "  ", pugi::format_indent | pugi::format_no_declaration, pugi::encoding_utf8);
    return std::move(writer.text);
}

}  // namespace selvane_inspect
