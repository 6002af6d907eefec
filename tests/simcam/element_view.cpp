#include "tests/simcam/element_view.h"

#include "adapter/interface_key.h"
#include "platform/text.h"

#include <sstream>

namespace simcam_test {

using namespace ZELAdapterHelper;

std::vector<element> elements_of(camera_on_pages& seen) {
    std::vector<element> all;
    for (const ItemRecord& record : seen.adapter->get_item_table()) {
        CZELItemDataBase* made = nullptr;
        record.factory(&made, seen.camera.get(), record);
        const auto item = platform::com_ptr<CZELItemDataBase>::attach(made);
        for (const ElementRecord& one : ElementsOf(record)) {
            for (const InterfaceEntry& interface_entry : InterfacesOf(one)) {
                const GenICam::INode* const node = genicam_adapter::node_of(interface_entry.key);
                all.push_back(
                    {std::string(node->get_name()), item, interface_entry.key, interface_entry.type});
            }
        }
    }
    return all;
}

// Everything that a page shows of an element, with the results of asking for it.
std::string view_of(const element& shown) {
    std::ostringstream text;
    text.precision(17);
    CZELItemDataBase& item = *shown.item;
    bool flag = false;
    HRESULT hr = item.IsAvailable(shown.key, flag);
    text << shown.name << " available " << std::hex << hr << " " << flag;
    flag = false;
    hr = item.IsReadOnly(shown.key, flag);
    text << " read-only " << hr << " " << flag << " keep " << item.IsDoNotSerialize(shown.key);
    SharedString unit;
    std::int32_t scale = 0;
    RangeInfo range;
    AbsRangeInfo limits;
    std::int32_t value = 0;
    double real = 0;
    std::vector<SharedString> strings;
    switch (shown.type) {
        case InterfaceType::Switch:
            hr = item.GetSwitch(shown.key, flag);
            text << " switch " << hr << " " << flag;
            hr = item.GetSwitchDefault(shown.key, flag);
            text << " default " << hr << " " << flag;
            break;
        case InterfaceType::MapStrings:
            hr = item.GetMapStrings(shown.key, strings);
            text << " strings " << hr;
            for (const SharedString& one : strings) text << " '" << platform::narrow(one.View()) << "'";
            [[fallthrough]];
        case InterfaceType::Range:
            hr = item.GetRange(shown.key, range);
            text << std::dec << " range " << hr << " " << range.min << " " << range.max << " "
                 << range.default_value << " " << range.step;
            hr = item.GetValue(shown.key, value);
            text << " value " << hr << " " << value;
            break;
        case InterfaceType::AbsoluteValue:
            hr = item.GetAbsRange(shown.key, limits);
            text << " limits " << hr << " " << limits.min << " " << limits.max << " " << limits.default_value;
            hr = item.GetAbsValue(shown.key, real);
            text << " value " << hr << " " << real;
            hr = item.GetAbsUnit(shown.key, unit, scale);
            text << " unit " << hr << " " << platform::narrow(unit.View()) << " " << scale;
            break;
        case InterfaceType::Button:
            break;
    }
    return text.str();
}

std::vector<std::string> view_of(const std::vector<element>& shown) {
    std::vector<std::string> lines;
    for (const element& one : shown) lines.push_back(view_of(one));
    return lines;
}

}  // namespace simcam_test
