#include "items/item_contract.h"

#include "items/builtin_factories.h"
#include "items/interface_keys.h"
#include "items/vendor_properties.h"

#include <iterator>

namespace ZELAdapterHelper {
namespace {

constexpr std::uint64_t Hex(const char* digits, int count) noexcept {
    std::uint64_t number = 0;
    for (int at = 0; at < count; ++at) {
        const char c = digits[at];
        number = number * 16 + static_cast<std::uint64_t>(c <= '9' ? c - '0' : c - 'A' + 10);
    }
    return number;
}

// The registry's form of an id, in upper case.
constexpr GUID Id(const char (&text)[39]) noexcept {
    GUID id = {};
    id.Data1 = static_cast<std::uint32_t>(Hex(text + 1, 8));
    id.Data2 = static_cast<std::uint16_t>(Hex(text + 10, 4));
    id.Data3 = static_cast<std::uint16_t>(Hex(text + 15, 4));
    for (std::ptrdiff_t at = 0; at < 8; ++at) {
        const std::ptrdiff_t hyphen = at < 2 ? 0 : 1;
        id.Data4[at] = static_cast<std::uint8_t>(Hex(text + 20 + 2 * at + hyphen, 2));
    }
    return id;
}

// Levels of an element: hidden ones are for other users of the items than the pages.
constexpr std::int32_t visible = 0;
constexpr std::int32_t hidden = 3;

constexpr ElementRecord Element(const GUID& id, const wchar_t* name, InterfaceKey key, InterfaceType type,
                                std::int32_t level = visible, const GUID& linked = {}) {
    return {id, name, nullptr, 1, {key, type}, level, {linked, {}}};
}

template <std::uint32_t count>
constexpr ElementRecord Element(const GUID& id, const wchar_t* name,
                                const InterfaceEntry (&interfaces)[count]) {
    static_assert(count > 1);
    return {id, name, interfaces, count, {}, visible, {}};
}

constexpr ElementRecord LinkedElement(const GUID& id, const wchar_t* name, InterfaceKey key,
                                      InterfaceType type, const GUID& linked) {
    return Element(id, name, key, type, visible, linked);
}

template <std::uint32_t count>
constexpr ItemRecord Item(const wchar_t* name, const wchar_t* group, std::uint32_t priority, const GUID& id,
                          ItemFactory factory, const ElementRecord (&elements)[count]) {
    if constexpr (count == 1) {
        return {group, priority, id, name, factory, nullptr, count, elements[0]};
    } else {
        return {group, priority, id, name, factory, elements, count, {}};
    }
}

constexpr GUID element_auto_max = Id("{6519038F-1AD8-4E91-9021-66D64090CC85}");
constexpr GUID element_gp_in = Id("{7D006621-761D-4B88-9C5F-8B906857A500}");
constexpr GUID element_gp_out = Id("{7D006621-761D-4B88-9C5F-8B906857A501}");

constexpr InterfaceEntry exposure_value[] = {{exposure_key::value, InterfaceType::Range},
                                             {exposure_key::abs_value, InterfaceType::AbsoluteValue}};
constexpr InterfaceEntry exposure_auto_max[] = {{exposure_key::auto_max, InterfaceType::Range},
                                                {exposure_key::auto_max_abs, InterfaceType::AbsoluteValue}};
constexpr ElementRecord exposure[] = {
    Element(element_value, L"Value", exposure_value),
    Element(element_automatic, L"Auto", exposure_key::automatic, InterfaceType::Switch),
    Element(Id("{6519038C-1AD8-4E91-9021-66D64090CC85}"), L"Auto Reference", exposure_key::auto_reference,
            InterfaceType::Range),
    Element(element_auto_max, L"Auto Max Value", exposure_auto_max),
    Element(Id("{65190390-1AD8-4E91-9021-66D64090CC85}"), L"Auto", exposure_key::auto_max_automatic,
            InterfaceType::Switch),
};

constexpr InterfaceEntry gain_value[] = {{gain_key::value, InterfaceType::Range},
                                         {gain_key::abs_value, InterfaceType::AbsoluteValue}};
constexpr ElementRecord gain[] = {
    Element(element_value, L"Value", gain_value),
    Element(element_automatic, L"Auto", gain_key::automatic, InterfaceType::Switch),
};

constexpr ElementRecord partial_scan[] = {
    Element(Id("{36EAA683-3321-44BE-9D73-E1FD4C3FDB87}"), L"Auto-center", SELVANE_PARTIAL_SCAN_AUTO_CENTER,
            InterfaceType::Switch),
    Element(Id("{5E59F654-7B47-4458-B4C6-5D4F0D175FC1}"), L"X Offset", SELVANE_PARTIAL_SCAN_X,
            InterfaceType::Range),
    Element(Id("{87FB6C02-98A8-46B0-B18D-6442D9775CD3}"), L"Y Offset", SELVANE_PARTIAL_SCAN_Y,
            InterfaceType::Range),
};

constexpr ElementRecord binning[] = {
    Element(element_value, L"Value", SELVANE_BINNING, InterfaceType::MapStrings, hidden),
};

constexpr ElementRecord gpio[] = {
    Element(element_gp_in, L"GP IN", gpio_key::input, InterfaceType::Range),
    LinkedElement(Id("{7D006621-761D-4B88-9C5F-8B906857A503}"), L"Read", gpio_key::read,
                  InterfaceType::Button, element_gp_in),
    Element(element_gp_out, L"GP Out", gpio_key::output, InterfaceType::Range),
    LinkedElement(Id("{7D006621-761D-4B88-9C5F-8B906857A502}"), L"Write", gpio_key::write,
                  InterfaceType::Button, element_gp_out),
};

constexpr ElementRecord strobe[] = {
    Element(element_value, L"Enable", strobe_key::enable, InterfaceType::Switch),
    Element(Id("{B41DB628-0975-43F8-A9D9-7E0380580ACD}"), L"Mode", strobe_key::mode,
            InterfaceType::MapStrings),
    Element(Id("{B41DB628-0975-43F8-A9D9-7E0380580ACA}"), L"Polarity", strobe_key::polarity,
            InterfaceType::Switch),
    Element(Id("{B41DB628-0975-43F8-A9D9-7E0380580ACB}"), L"Duration", strobe_key::duration,
            InterfaceType::Range),
    Element(Id("{B41DB628-0975-43F8-A9D9-7E0380580ACC}"), L"Delay", strobe_key::delay, InterfaceType::Range),
};

constexpr ElementRecord trigger[] = {
    Element(element_value, L"Enable", trigger_key::enable, InterfaceType::Switch),
    LinkedElement(Id("{FDB4003C-552C-4FAA-B87B-42E888D54147}"), L"Software Trigger",
                  trigger_key::software_trigger, InterfaceType::Button, element_value),
    Element(Id("{6519038D-1AD8-4E91-9021-66D64090CC85}"), L"Polarity", trigger_key::polarity,
            InterfaceType::Switch),
    Element(Id("{C337CFB8-EA08-4E69-A655-586937B6AFEC}"), L"Delay", trigger_key::delay,
            InterfaceType::AbsoluteValue),
    Element(Id("{859A76B9-E289-472B-AB05-C9B3F26DCAA0}"), L"Operation", trigger_key::operation,
            InterfaceType::MapStrings),
};

constexpr ElementRecord color_enhancement[] = {
    Element(element_value, L"Enable", color_enhancement_key::enable, InterfaceType::Switch),
};

constexpr ElementRecord white_balance[] = {
    Element(element_automatic, L"Auto", white_balance_key::automatic, InterfaceType::Switch),
    Element(element_one_push, L"OnePush", white_balance_key::one_push, InterfaceType::Button),
    Element(Id("{6519038B-1AD8-4E91-9021-66D64090CC85}"), L"White Balance Red", white_balance_key::red,
            InterfaceType::Range),
    Element(Id("{8407E480-175A-498C-8171-08BD987CC1AC}"), L"White Balance Green", white_balance_key::green,
            InterfaceType::Range),
    Element(element_white_balance_blue, L"White Balance Blue", white_balance_key::blue, InterfaceType::Range),
};

constexpr ElementRecord focus[] = {
    Element(element_one_push, L"One Push", focus_key::one_push, InterfaceType::Button),
    Element(element_value, L"Value", focus_key::value, InterfaceType::Range),
    Element(Id("{07D2DD39-3F10-4E0F-8EE5-3EED067A53C6}"), L"One Push Running", focus_key::one_push_running,
            InterfaceType::Switch, hidden),
    Element(Id("{65190391-1AD8-4E91-9021-66D64090CC85}"), L"Auto Min Value", focus_key::auto_min,
            InterfaceType::Range),
    Element(element_auto_max, L"Auto Max Value", focus_key::auto_max, InterfaceType::Range),
    Element(Id("{8CA6642E-D3E5-4ED8-95A1-B13D7131B465}"), L"Enable Region of Interest",
            focus_key::region_enable, InterfaceType::Switch),
    Element(Id("{8CA6642F-D3E5-4ED8-95A1-B13D7131B465}"), L"Left", focus_key::region_left,
            InterfaceType::Range),
    Element(Id("{8CA66431-D3E5-4ED8-95A1-B13D7131B465}"), L"Right", focus_key::region_right,
            InterfaceType::Range),
    Element(Id("{8CA66430-D3E5-4ED8-95A1-B13D7131B465}"), L"Top", focus_key::region_top,
            InterfaceType::Range),
    Element(Id("{8CA66432-D3E5-4ED8-95A1-B13D7131B465}"), L"Bottom", focus_key::region_bottom,
            InterfaceType::Range),
};

constexpr ItemRecord static_items[] = {
    Item(L"Exposure", L"Exposure", 5, item_exposure, MakeUVCExposure, exposure),
    // Only for other users of the table: pages try one record of an id, the one above.
    Item(L"Exposure", L"Exposure", 3, item_exposure, MakeExposureItem, exposure),
    Item(L"Gain", nullptr, 2, Id("{284C0E0F-010B-45BF-8291-09D90A459B28}"), MakeUVCGain, gain),
    Item(L"Partial scan", L"Partial scan", 1, Id("{2CED6FD6-AB4D-4C74-904C-D682E53B9CC5}"), MakePartialScan,
         partial_scan),
    Item(L"Binning factor", L"Partial scan", 1, Id("{4F95A06D-9C15-407B-96AB-CF3FED047BA4}"), MakePartialScan,
         binning),
    Item(L"GPIO", L"Special", 4, Id("{86D89D69-9880-4618-9BF6-DED5E8383449}"), MakeUVCGPIO, gpio),
    Item(L"Strobe", L"Special", 1, Id("{DC320EDE-DF2E-4A90-B926-71417C71C57C}"), MakeUVCStrobe, strobe),
    Item(L"Trigger", L"Special", 2, Id("{90D57031-E43B-4366-AAEB-7A7A10B448B4}"), MakeUVCTrigger, trigger),
    Item(L"Color Enhancement", L"Color", 1, Id("{3A3A8F77-6440-46CC-940A-8752B02E6C29}"),
         MakeUVCColorEnhancement, color_enhancement),
    Item(L"WhiteBalance", L"Color", 4, item_white_balance, MakeUVCWhiteBalance, white_balance),
    Item(L"Focus", L"Lens", 2, Id("{90D57030-E43B-4366-AAEB-7A7A10B448B4}"), MakeFocusItem, focus),
};

}  // namespace

RecordSpan<ItemRecord> StaticItemTable() noexcept { return {static_items, std::size(static_items)}; }

}  // namespace ZELAdapterHelper
