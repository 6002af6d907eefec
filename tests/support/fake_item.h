#pragma once

#include "items/item_contract.h"

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace test_support {

/// What an item answers for one key.
struct FakeInterface {
    bool supported = true;
    bool available = true;
    bool read_only = false;
    bool on = false;
    ZELAdapterHelper::RangeInfo range;
    std::int32_t value = 0;
    ZELAdapterHelper::AbsRangeInfo abs_range;
    double abs_value = 0;
    std::wstring unit;
    std::int32_t scale = -1;  ///< -1 leaves the caller's as it stands
    std::vector<std::wstring> strings;
};

/// The camera behind a fake item: outlives it, so a test can look at what happened after the item is gone.
/// Operations are named as in the contract. A getter writes its answer also where it fails, to show who does
/// not look.
struct FakeScript {
    std::map<ZELAdapterHelper::InterfaceKey, FakeInterface> interfaces;
    std::map<std::string, HRESULT> results;  ///< by operation; S_OK for the others
    std::set<std::string> throwing;          ///< operations that throw
    std::vector<std::string> log;            ///< "GetRange 3"
    std::vector<std::int32_t> values;        ///< what SetValue was told
    std::vector<double> abs_values;          ///< what SetAbsValue was told
    std::vector<bool> switches;              ///< what SetSwitch was told
    int living_items = 0;

    [[nodiscard]] std::vector<std::string> TakeLog() {
        std::vector<std::string> taken;
        taken.swap(log);
        return taken;
    }
};

/// An item that answers as scripted and logs what it is asked. Keys that are not scripted are unknown to it.
class FakeItem final : public ZELAdapterHelper::CZELItemDataBase {
    using Key = ZELAdapterHelper::InterfaceKey;

public:
    explicit FakeItem(FakeScript& script) : script_(script) { ++script_.living_items; }
    ~FakeItem() override { --script_.living_items; }

    bool SupportsInterface(Key key) override {
        Enter("SupportsInterface", key);
        const auto found = script_.interfaces.find(key);
        return found != script_.interfaces.end() && found->second.supported;
    }
    HRESULT IsAvailable(Key key, bool& available) override {
        return Answer("IsAvailable", key, &FakeInterface::available, available);
    }
    HRESULT IsReadOnly(Key key, bool& read_only) override {
        return Answer("IsReadOnly", key, &FakeInterface::read_only, read_only);
    }
    HRESULT GetSwitch(Key key, bool& on) override { return Answer("GetSwitch", key, &FakeInterface::on, on); }
    HRESULT SetSwitch(Key key, bool on) override {
        script_.switches.push_back(on);
        return Take("SetSwitch", key, &FakeInterface::on, on);
    }
    HRESULT GetRange(Key key, ZELAdapterHelper::RangeInfo& range) override {
        return Answer("GetRange", key, &FakeInterface::range, range);
    }
    HRESULT GetValue(Key key, std::int32_t& value) override {
        return Answer("GetValue", key, &FakeInterface::value, value);
    }
    HRESULT SetValue(Key key, std::int32_t value) override {
        script_.values.push_back(value);
        return Take("SetValue", key, &FakeInterface::value, value);
    }
    HRESULT GetAbsRange(Key key, ZELAdapterHelper::AbsRangeInfo& range) override {
        return Answer("GetAbsRange", key, &FakeInterface::abs_range, range);
    }
    HRESULT GetAbsValue(Key key, double& value) override {
        return Answer("GetAbsValue", key, &FakeInterface::abs_value, value);
    }
    HRESULT SetAbsValue(Key key, double value) override {
        script_.abs_values.push_back(value);
        return Take("SetAbsValue", key, &FakeInterface::abs_value, value);
    }
    HRESULT GetAbsUnit(Key key, ZELAdapterHelper::SharedString& unit, std::int32_t& scale) override {
        const HRESULT result = Enter("GetAbsUnit", key);
        const auto found = script_.interfaces.find(key);
        if (found == script_.interfaces.end()) return E_NOTIMPL;
        unit = ZELAdapterHelper::SharedString(found->second.unit);
        if (found->second.scale >= 0) scale = found->second.scale;
        return result;
    }
    HRESULT Push(Key key) override { return Enter("Push", key); }
    HRESULT GetMapStrings(Key key, std::vector<ZELAdapterHelper::SharedString>& strings) override {
        const HRESULT result = Enter("GetMapStrings", key);
        const auto found = script_.interfaces.find(key);
        if (found == script_.interfaces.end()) return E_NOTIMPL;
        for (const std::wstring& text : found->second.strings) strings.emplace_back(text);
        return result;
    }

private:
    HRESULT Enter(const std::string& operation, Key key) {
        script_.log.push_back(operation + " " + std::to_string(key));
        if (script_.throwing.count(operation) != 0) throw std::runtime_error(operation);
        const auto scripted = script_.results.find(operation);
        return scripted != script_.results.end() ? scripted->second : S_OK;
    }

    template <class T>
    HRESULT Answer(const std::string& operation, Key key, T FakeInterface::*field, T& out) {
        const HRESULT result = Enter(operation, key);
        const auto found = script_.interfaces.find(key);
        if (found == script_.interfaces.end()) return E_NOTIMPL;
        out = found->second.*field;
        return result;
    }

    template <class T>
    HRESULT Take(const std::string& operation, Key key, T FakeInterface::*field, T value) {
        const HRESULT result = Enter(operation, key);
        const auto found = script_.interfaces.find(key);
        if (found == script_.interfaces.end()) return E_NOTIMPL;
        if (SUCCEEDED(result)) found->second.*field = value;
        return result;
    }

    FakeScript& script_;
};

}  // namespace test_support
