#pragma once

#include "genicam/nodes/register_address.h"
#include "genicam/nodes/register_base.h"

#include <cstdint>
#include <utility>

namespace GenICam {

/// The value operations of `IntReg` and `FloatReg` for one kind of place, so that the way from a fixed place
/// to its port has no virtual call. `Base` has `read_number` and `write_number`.
template <class Base, class Place>
class placed_register : public Base {
public:
    using number = typename Base::number;

    std::error_code set_val(number value, std::uint32_t flags) final {
        if (const std::error_code refused = this->check_own_access(true, flags)) return refused;
        const result<register_place> place = place_.get_address_and_length(flags);
        if (!place) return place.error();
        return spread_write(*this, this->write_number(place.assume_value(), value, flags));
    }
    result<number> get_val(std::uint32_t flags) final {
        if (const std::error_code refused = this->check_own_access(false, flags)) return refused;
        const result<register_place> place = place_.get_address_and_length(flags);
        if (!place) return place.error();
        return this->read_number(place.assume_value(), flags);
    }
    result<register_place> get_address_and_length(std::uint32_t flags) final {
        return place_.get_address_and_length(flags);
    }
    std::int64_t get_length() final { return place_.get_length(); }

protected:
    placed_register(document_services* services, const described_element& xml, Place place)
        : Base(services, xml), place_(std::move(place)) {}
    ~placed_register() = default;

    Place place_;
};

}  // namespace GenICam
