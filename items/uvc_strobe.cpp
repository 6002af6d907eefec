#include "items/builtin_factories.h"
#include "items/interface_keys.h"
#include "items/vendor_properties.h"
#include "wire/vendor_set.h"

#include <iterator>
#include <map>

namespace ZELAdapterHelper {
namespace {

constexpr std::int32_t mode_unknown = -1;
constexpr std::int32_t mode_constant = 0;
constexpr std::int32_t mode_fixed_duration = 1;
constexpr std::int32_t mode_exposure = 2;

constexpr std::int32_t shortest_duration = 10;
constexpr std::int32_t time_step = 10;

bool IsKnown(InterfaceKey key) noexcept { return key <= strobe_key::delay; }

// The field behind a switch, null for other keys.
std::uint32_t wire::strobe_record::*SwitchField(InterfaceKey key) noexcept {
    switch (key) {
        case strobe_key::enable:
            return &wire::strobe_record::enable;
        case strobe_key::polarity:
            return &wire::strobe_record::polarity;
        default:
            return nullptr;
    }
}

// The field behind a time, null for other keys.
std::int32_t wire::strobe_record::*TimeField(InterfaceKey key) noexcept {
    switch (key) {
        case strobe_key::duration:
            return &wire::strobe_record::duration;
        case strobe_key::delay:
            return &wire::strobe_record::delay;
        default:
            return nullptr;
    }
}

RangeInfo DurationRange(const wire::strobe_record& record) noexcept {
    const std::int32_t min = record.duration_min == 0 ? shortest_duration : record.duration_min;
    return {min, record.duration_max, record.duration_default, time_step};
}

RangeInfo DelayRange(const wire::strobe_record& record) noexcept {
    return {record.delay_min, record.delay_max, record.delay_default, time_step};
}

// The strobe's record, read and written whole. The mode is no field of the device: it is told from the record
// when the item first sees it and after a refused write, and each write brings the record in line with it.
class CUVCStrobe final : public CZELItemDataBase {
public:
    explicit CUVCStrobe(platform::com_ptr<IKsPropertySet> filter) : filter_(std::move(filter)) {}

    bool SupportsInterface(InterfaceKey key) override;
    HRESULT Refresh(InterfaceKey key) override;
    HRESULT IsAvailable(InterfaceKey key, bool& available) override;
    HRESULT GetSwitch(InterfaceKey key, bool& on) override;
    HRESULT SetSwitch(InterfaceKey key, bool on) override;
    HRESULT GetRange(InterfaceKey key, RangeInfo& range) override;
    HRESULT GetValue(InterfaceKey key, std::int32_t& value) override;
    HRESULT SetValue(InterfaceKey key, std::int32_t value) override;
    HRESULT GetMapStrings(InterfaceKey key, std::vector<SharedString>& strings) override;

private:
    HRESULT FetchRecord(wire::strobe_record& out);
    HRESULT StoreRecord(wire::strobe_record record);
    // Calls `use` with the record; its result, or the failure of the driver.
    template <class Use>
    HRESULT WithRecord(Use use);
    void FillModes(const wire::strobe_record& record);
    void SelectMode(std::int32_t index);
    [[nodiscard]] std::int32_t IndexOf(std::int32_t mode) const;
    [[nodiscard]] RangeInfo ModeRange() const;

    bool record_valid_ = false;
    wire::strobe_record record_ = {};
    std::int32_t mode_ = mode_unknown;
    platform::com_ptr<IKsPropertySet> filter_;
    std::map<std::int32_t, const wchar_t*> modes_;  // by number; filled at first need
};

std::int32_t ModeOf(const wire::strobe_record& record) noexcept {
    if (record.delay == 0 && record.duration == 0 && (record.restrictions & wire::strobe_no_duration) == 0) {
        return mode_constant;
    }
    return record.follow_exposure != 0 ? mode_exposure : mode_fixed_duration;
}

HRESULT CUVCStrobe::FetchRecord(wire::strobe_record& out) {
    if (!record_valid_) {
        const HRESULT hr = ReadRecord(*filter_, wire::vendor_set, SELVANE_STROBE, record_);
        if (FAILED(hr)) {
            return hr;
        }
        if (mode_ == mode_unknown) {
            mode_ = ModeOf(record_);
        }
        if (mode_ != mode_constant && record_.duration == 0) {
            record_.duration = shortest_duration;
        }
        record_valid_ = true;
    }
    out = record_;
    return S_OK;
}

HRESULT CUVCStrobe::StoreRecord(wire::strobe_record record) {
    if (mode_ == mode_constant) {
        record.delay = 0;
        record.duration = 0;
        record.follow_exposure = 0;
    } else {
        record.follow_exposure = mode_ == mode_exposure ? 1 : 0;
        if (record.duration == 0) {
            record.duration = shortest_duration;
        }
    }
    const HRESULT hr = WriteRecord(*filter_, wire::vendor_set, SELVANE_STROBE, record);
    // A refused record leaves the next read to the driver, which knows what it holds, and the mode with it: a
    // mode that the device did not take would go into every later write.
    record_valid_ = SUCCEEDED(hr);
    if (record_valid_) {
        record_ = record;
    } else {
        mode_ = mode_unknown;
    }
    return hr;
}

template <class Use>
HRESULT CUVCStrobe::WithRecord(Use use) {
    wire::strobe_record record = {};
    const HRESULT hr = FetchRecord(record);
    return SUCCEEDED(hr) ? use(record) : hr;
}

void CUVCStrobe::FillModes(const wire::strobe_record& record) {
    if (!modes_.empty()) {
        return;
    }
    if ((record.restrictions & wire::strobe_no_duration) == 0) {
        modes_[mode_constant] = L"constant";
        modes_[mode_fixed_duration] = L"fixed duration";
    }
    modes_[mode_exposure] = L"exposure";
}

// The number of modes for one that is not offered: a combo box then selects nothing.
std::int32_t CUVCStrobe::IndexOf(std::int32_t mode) const {
    return static_cast<std::int32_t>(std::distance(modes_.begin(), modes_.find(mode)));
}

// An index beyond the modes changes nothing.
void CUVCStrobe::SelectMode(std::int32_t index) {
    if (index >= 0 && index < static_cast<std::int32_t>(modes_.size())) {
        mode_ = std::next(modes_.begin(), index)->first;
    }
}

RangeInfo CUVCStrobe::ModeRange() const {
    const bool fixed = modes_.count(mode_fixed_duration) != 0;
    return {0, static_cast<std::int32_t>(modes_.size()), IndexOf(fixed ? mode_fixed_duration : mode_exposure),
            1};
}

bool CUVCStrobe::SupportsInterface(InterfaceKey key) {
    wire::strobe_record record = {};
    if (!IsKnown(key) || FAILED(FetchRecord(record))) {
        return false;
    }
    switch (key) {
        case strobe_key::polarity:
            return (record.restrictions & wire::strobe_no_polarity) == 0;
        case strobe_key::duration:
            return (record.restrictions & wire::strobe_no_duration) == 0;
        case strobe_key::delay:
            return (record.restrictions & wire::strobe_no_delay) == 0;
        default:
            return true;
    }
}

HRESULT CUVCStrobe::Refresh(InterfaceKey) {
    mode_ = mode_unknown;
    record_valid_ = false;
    return S_OK;
}

HRESULT CUVCStrobe::IsAvailable(InterfaceKey key, bool& available) {
    if (!IsKnown(key)) {
        return CZELItemDataBase::IsAvailable(key, available);
    }
    available = false;
    return WithRecord([&](const wire::strobe_record& record) {
        const bool enabled = record.enable != 0;
        switch (key) {
            case strobe_key::enable:
                available = true;
                break;
            case strobe_key::duration:
                available = enabled && mode_ == mode_fixed_duration;
                break;
            case strobe_key::delay:
                available = enabled && mode_ != mode_constant;
                break;
            default:
                available = enabled;
                break;
        }
        return S_OK;
    });
}

HRESULT CUVCStrobe::GetSwitch(InterfaceKey key, bool& on) {
    const auto field = SwitchField(key);
    if (field == nullptr) {
        return E_NOTIMPL;
    }
    return WithRecord([&](const wire::strobe_record& record) {
        on = record.*field != 0;
        return S_OK;
    });
}

HRESULT CUVCStrobe::SetSwitch(InterfaceKey key, bool on) {
    const auto field = SwitchField(key);
    if (field == nullptr) {
        return E_NOTIMPL;
    }
    return WithRecord([&](wire::strobe_record& record) {
        record.*field = on ? 1 : 0;
        return StoreRecord(record);
    });
}

HRESULT CUVCStrobe::GetRange(InterfaceKey key, RangeInfo& range) {
    if (key != strobe_key::mode && TimeField(key) == nullptr) {
        return E_NOTIMPL;
    }
    return WithRecord([&](const wire::strobe_record& record) {
        if (key == strobe_key::mode) {
            FillModes(record);
            range = ModeRange();
        } else {
            range = key == strobe_key::duration ? DurationRange(record) : DelayRange(record);
        }
        return S_OK;
    });
}

HRESULT CUVCStrobe::GetValue(InterfaceKey key, std::int32_t& value) {
    const auto field = TimeField(key);
    if (key != strobe_key::mode && field == nullptr) {
        return E_NOTIMPL;
    }
    return WithRecord([&](const wire::strobe_record& record) {
        if (field != nullptr) {
            value = record.*field;
        } else {
            FillModes(record);
            value = IndexOf(mode_);
        }
        return S_OK;
    });
}

HRESULT CUVCStrobe::SetValue(InterfaceKey key, std::int32_t value) {
    const auto field = TimeField(key);
    if (key != strobe_key::mode && field == nullptr) {
        return E_NOTIMPL;
    }
    return WithRecord([&](wire::strobe_record& record) {
        if (field != nullptr) {
            record.*field = value;
        } else {
            FillModes(record);
            SelectMode(value);
        }
        return StoreRecord(record);
    });
}

HRESULT CUVCStrobe::GetMapStrings(InterfaceKey key, std::vector<SharedString>& strings) {
    if (key != strobe_key::mode) {
        return E_NOTIMPL;
    }
    return WithRecord([&](const wire::strobe_record& record) {
        FillModes(record);
        for (const auto& [mode, text] : modes_) {
            strings.emplace_back(text);
        }
        return S_OK;
    });
}

}  // namespace

void MakeUVCStrobe(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    if (properties && PropertySupported(*properties, SELVANE_STROBE)) {
        *result = new CUVCStrobe(std::move(properties));
    }
}

}  // namespace ZELAdapterHelper
