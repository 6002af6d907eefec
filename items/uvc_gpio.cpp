#include "items/builtin_factories.h"
#include "items/interface_keys.h"
#include "items/vendor_properties.h"
#include "wire/vendor_set.h"

namespace ZELAdapterHelper {
namespace {

// The camera's pins, explicit at both ends: the values are those of the last "Read", and what is set reaches
// the pins at "Write".
class CUVCGPIO final : public CZELItemDataBase {
public:
    explicit CUVCGPIO(platform::com_ptr<IKsPropertySet> filter) : filter_(std::move(filter)) {}

    bool SupportsInterface(InterfaceKey key) override;
    HRESULT IsReadOnly(InterfaceKey key, bool& read_only) override;
    HRESULT GetRange(InterfaceKey key, RangeInfo& range) override;
    HRESULT GetValue(InterfaceKey key, std::int32_t& value) override;
    HRESULT SetValue(InterfaceKey key, std::int32_t value) override;
    HRESULT Push(InterfaceKey key) override;

private:
    HRESULT Read(wire::gpio_record& record) {
        return ReadRecord(*filter_, wire::vendor_set, SELVANE_GPIO, record);
    }
    HRESULT ReadPins();
    HRESULT WritePins();

    platform::com_ptr<IKsPropertySet> filter_;
    std::int32_t input_ = 0;
    std::int32_t output_ = 0;
};

bool CUVCGPIO::SupportsInterface(InterfaceKey key) {
    wire::gpio_record record = {};
    if (FAILED(Read(record))) {
        return false;
    }
    switch (key) {
        case gpio_key::input:
        case gpio_key::read:
            return record.max_input != 0;
        case gpio_key::output:
        case gpio_key::write:
            return record.max_output != 0;
        default:
            return false;
    }
}

HRESULT CUVCGPIO::IsReadOnly(InterfaceKey key, bool& read_only) {
    read_only = key == gpio_key::input;
    return S_OK;
}

HRESULT CUVCGPIO::GetRange(InterfaceKey key, RangeInfo& range) {
    if (key != gpio_key::input && key != gpio_key::output) {
        return E_NOTIMPL;
    }
    wire::gpio_record record = {};
    const HRESULT hr = Read(record);
    if (SUCCEEDED(hr)) {
        range = {0, key == gpio_key::input ? record.max_input : record.max_output, 0, 1};
    }
    return hr;
}

HRESULT CUVCGPIO::GetValue(InterfaceKey key, std::int32_t& value) {
    switch (key) {
        case gpio_key::input:
            value = input_;
            return S_OK;
        case gpio_key::output:
            value = output_;
            return S_OK;
        default:
            return E_NOTIMPL;
    }
}

HRESULT CUVCGPIO::SetValue(InterfaceKey key, std::int32_t value) {
    if (key != gpio_key::output) {
        return E_NOTIMPL;
    }
    output_ = value;
    return S_OK;
}

HRESULT CUVCGPIO::Push(InterfaceKey key) {
    switch (key) {
        case gpio_key::read:
            return ReadPins();
        case gpio_key::write:
            return WritePins();
        default:
            return E_NOTIMPL;
    }
}

HRESULT CUVCGPIO::ReadPins() {
    wire::gpio_record record = {};
    const HRESULT hr = Read(record);
    if (SUCCEEDED(hr)) {
        input_ = record.input;
        output_ = record.output;
    }
    return hr;
}

HRESULT CUVCGPIO::WritePins() {
    wire::gpio_record record = {};
    record.output = output_;
    return WriteRecord(*filter_, wire::vendor_set, SELVANE_GPIO, record);
}

}  // namespace

void MakeUVCGPIO(CZELItemDataBase** result, IUnknown* filter, const ItemRecord&) {
    *result = nullptr;
    auto properties = platform::query<IKsPropertySet>(filter);
    if (properties && PropertySupported(*properties, SELVANE_GPIO)) {
        *result = new CUVCGPIO(std::move(properties));
    }
}

}  // namespace ZELAdapterHelper
