#include "tests/adapter/item_walk.h"

namespace adapter_test {
namespace {

using ZELAdapterHelper::AbsRangeInfo;
using ZELAdapterHelper::RangeInfo;
using ZELAdapterHelper::SharedString;

class Walker {
public:
    Walker(CZELItemDataBase& item, InterfaceKey key, const ScriptedFilter& filter,
           std::vector<WalkStep>& steps)
        : item_(item), key_(key), filter_(filter), steps_(steps) {}

    template <class Operation, class... Arguments>
    void Do(const char* name, Operation operation, Arguments&&... arguments) {
        const std::size_t first = filter_.Calls().size();
        const HRESULT hr = (item_.*operation)(key_, arguments...);
        const std::string element(genicam_adapter::node_of(key_)->get_name());
        steps_.push_back({element, name, hr, first, filter_.Calls().size()});
    }

private:
    CZELItemDataBase& item_;
    InterfaceKey key_;
    const ScriptedFilter& filter_;
    std::vector<WalkStep>& steps_;
};

}  // namespace

void WalkElement(CZELItemDataBase& item, InterfaceKey key, const ScriptedFilter& filter,
                 std::vector<WalkStep>& steps) {
    using Item = CZELItemDataBase;
    Walker walker(item, key, filter, steps);
    bool flag = false;
    std::int32_t number = 0;
    double real = 0;
    RangeInfo range;
    AbsRangeInfo abs_range;
    SharedString unit;
    std::vector<SharedString> strings;
    (void)item.SupportsInterface(key);
    (void)item.IsDoNotSerialize(key);
    walker.Do("IsAvailable", &Item::IsAvailable, flag);
    walker.Do("IsReadOnly", &Item::IsReadOnly, flag);
    walker.Do("GetSwitch", &Item::GetSwitch, flag);
    walker.Do("SetSwitch", &Item::SetSwitch, flag);
    walker.Do("GetSwitchDefault", &Item::GetSwitchDefault, flag);
    walker.Do("GetRange", &Item::GetRange, range);
    walker.Do("GetValue", &Item::GetValue, number);
    walker.Do("SetValue", &Item::SetValue, number);
    walker.Do("SetValue", &Item::SetValue, 1);
    walker.Do("SetValue", &Item::SetValue, -1);
    walker.Do("GetAbsRange", &Item::GetAbsRange, abs_range);
    walker.Do("GetAbsValue", &Item::GetAbsValue, real);
    walker.Do("SetAbsValue", &Item::SetAbsValue, real);
    walker.Do("SetAbsValue", &Item::SetAbsValue, 1.5);
    walker.Do("GetAbsUnit", &Item::GetAbsUnit, unit, number);
    walker.Do("GetMapStrings", &Item::GetMapStrings, strings);
    walker.Do("Push", &Item::Push);
    walker.Do("Refresh", &Item::Refresh);
    walker.Do("GetValue", &Item::GetValue, number);
}

std::vector<WalkStep> WalkTable(GenICamAdapterDevice& adapter, ScriptedFilter& filter) {
    std::vector<WalkStep> steps;
    for (const ItemRecord& record : adapter.get_item_table()) {
        const auto item = MakeItem(record, &filter);
        for (const auto& element : ZELAdapterHelper::ElementsOf(record)) {
            for (const auto& interface_entry : ZELAdapterHelper::InterfacesOf(element)) {
                WalkElement(*item, interface_entry.key, filter, steps);
            }
        }
    }
    return steps;
}

}  // namespace adapter_test
