#include "apps/device/enumerators.h"

#include "apps/device/module_object.h"
#include "platform/windows/com_edge.h"

#include <utility>

namespace selvane_camera {
namespace {

using platform::at_com_edge;
using platform::com_ptr;

IPin* give(const com_ptr<IPin>& pin) noexcept { return com_ptr<IPin>(pin).detach(); }
AM_MEDIA_TYPE* give(const media_type& type) noexcept { return type.give(); }

/// Hands out `Item`s as `Given`, which the caller owns.
template <class Interface, class Item, class Given>
class list_enumerator final : public module_object<Interface> {
public:
    list_enumerator(std::vector<Item> items, std::size_t next) : items_(std::move(items)), next_(next) {}

    // Null for the count is allowed where one item is asked for.
    HRESULT STDMETHODCALLTYPE Next(ULONG wanted, Given* out, ULONG* fetched) override {
        if (fetched != nullptr) *fetched = 0;
        if (out == nullptr) return E_POINTER;
        if (fetched == nullptr && wanted > 1) return E_INVALIDARG;
        ULONG count = 0;
        while (count < wanted && next_ < items_.size()) {
            out[count] = give(items_[next_]);
            if (out[count] == nullptr) break;
            ++count;
            ++next_;
        }
        if (fetched != nullptr) *fetched = count;
        return count == wanted ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const std::size_t left = items_.size() - next_;
        next_ += count < left ? count : left;
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        next_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(Interface** out) override {
        if (out == nullptr) return E_POINTER;
        *out = nullptr;
        return at_com_edge([&] {
            *out = com_ptr<Interface>(new list_enumerator(items_, next_)).detach();
            return S_OK;
        });
    }

private:
    std::vector<Item> items_;
    std::size_t next_;
};

}  // namespace

com_ptr<IEnumPins> enumerate_pins(std::vector<com_ptr<IPin>> pins) {
    return com_ptr<IEnumPins>(new list_enumerator<IEnumPins, com_ptr<IPin>, IPin*>(std::move(pins), 0));
}

com_ptr<IEnumMediaTypes> enumerate_media_types(std::vector<media_type> types) {
    return com_ptr<IEnumMediaTypes>(
        new list_enumerator<IEnumMediaTypes, media_type, AM_MEDIA_TYPE*>(std::move(types), 0));
}

}  // namespace selvane_camera
