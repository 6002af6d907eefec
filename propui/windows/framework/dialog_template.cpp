#include "propui/windows/framework/dialog_template.h"

#include "propui/windows/framework/device_context.h"
#include "propui/windows/framework/system_library.h"

#include <cstring>
#include <string_view>

namespace ZELPropUI::Framework {
namespace {

constexpr int sheet_template_id = 1006;
constexpr WORD extended_signature = 0xFFFF;
constexpr WORD ordinal_follows = 0xFFFF;

// Walks a resource, whose fields are only aligned to two bytes.
class TemplateReader {
public:
    TemplateReader(const void* data, std::size_t size) noexcept
        : at_(static_cast<const char*>(data)), end_(at_ + size) {}

    WORD Word() noexcept { return Field<WORD>(); }
    DWORD DoubleWord() noexcept { return Field<DWORD>(); }

    std::wstring Text() {
        std::wstring text;
        for (WORD unit = Word(); unit != 0; unit = Word()) text += static_cast<wchar_t>(unit);
        return text;
    }

    // A menu or a class is named by a text, by an ordinal, or not at all.
    void SkipName() noexcept {
        WORD unit = Word();
        if (unit == ordinal_follows) Word();
        while (unit != 0 && unit != ordinal_follows) unit = Word();
    }

private:
    template <class Number>
    Number Field() noexcept {
        Number value = 0;
        if (static_cast<std::size_t>(end_ - at_) >= sizeof value) {
            std::memcpy(&value, at_, sizeof value);
            at_ += sizeof value;
        }
        return value;
    }

    const char* at_;
    const char* end_;
};

DialogTemplate Parse(TemplateReader reader, bool extended) {
    DialogTemplate parsed;
    if (extended) {
        for (int skipped = 0; skipped < 4; ++skipped) reader.Word();  // version, signature, help id
        reader.DoubleWord();                                          // extended style
    }
    const DWORD style = reader.DoubleWord();
    if (!extended) reader.DoubleWord();  // extended style
    reader.Word();                       // number of controls
    reader.DoubleWord();                 // position
    parsed.size.cx = static_cast<short>(reader.Word());
    parsed.size.cy = static_cast<short>(reader.Word());
    reader.SkipName();  // menu
    reader.SkipName();  // class
    reader.SkipName();  // title
    if ((style & DS_SETFONT) == 0) return parsed;
    parsed.points = reader.Word();
    if (extended) reader.DoubleWord();  // weight, italic, character set
    parsed.typeface = reader.Text();
    return parsed;
}

struct BaseUnits {
    int x = 0;
    int y = 0;
};

Font MakeFont(HDC context, const DialogTemplate& dialog) {
    LOGFONTW description{};
    description.lfHeight = -MulDiv(dialog.points, GetDeviceCaps(context, LOGPIXELSY), 72);
    description.lfWeight = FW_NORMAL;
    description.lfCharSet = DEFAULT_CHARSET;
    dialog.typeface.copy(description.lfFaceName, LF_FACESIZE - 1);
    return Font(CreateFontIndirectW(&description));
}

// A dialog without a font uses the one that a fresh context has.
BaseUnits MeasureFont(const DialogTemplate& dialog) {
    constexpr std::wstring_view letters = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    constexpr int count = static_cast<int>(letters.size());
    const DeviceContext context(nullptr);
    const Font font = dialog.points != 0 ? MakeFont(context.Get(), dialog) : Font(nullptr);
    const SelectedFont selected(context.Get(), font.Get());
    TEXTMETRICW metrics{};
    SIZE extent{};
    GetTextMetricsW(context.Get(), &metrics);
    GetTextExtentPoint32W(context.Get(), letters.data(), count, &extent);
    return {(static_cast<int>(extent.cx) + count / 2) / count, static_cast<int>(metrics.tmHeight)};
}

}  // namespace

std::optional<DialogTemplate> ReadDialogTemplate(HMODULE module, int id) {
    const HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(id), RT_DIALOG);
    if (found == nullptr) return std::nullopt;
    const HGLOBAL loaded = LoadResource(module, found);
    const void* const data = loaded != nullptr ? LockResource(loaded) : nullptr;
    if (data == nullptr) return std::nullopt;
    const TemplateReader reader(data, SizeofResource(module, found));
    TemplateReader head = reader;
    head.Word();
    return Parse(reader, head.Word() == extended_signature);
}

SIZE PageSize(const DialogTemplate& page) {
    const DialogTemplate sheet =
        ReadDialogTemplate(LoadSystemLibrary(L"COMCTL32.DLL"), sheet_template_id).value_or(page);
    const BaseUnits sheet_units = MeasureFont(sheet);
    const BaseUnits page_units = MeasureFont(page);
    const int height = MulDiv(static_cast<int>(page.size.cy), sheet_units.y, 8);
    return {MulDiv(static_cast<int>(page.size.cx), sheet_units.x, 4),
            MulDiv(height, page_units.y, sheet_units.y)};
}

}  // namespace ZELPropUI::Framework
