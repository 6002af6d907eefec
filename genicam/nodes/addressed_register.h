#pragma once

#include "genicam/nodes/register_address.h"
#include "genicam/nodes/register_base.h"

#include <cstdint>
#include <utility>

namespace GenICam {

/// The value operations of `IntReg` and `FloatReg` for one kind of address, so that a fixed address
/// leads to its port without a virtual call; `T` is the class that this is a part of. `Base` has
/// `read_number` and `write_number`.
template <class T, class Base, class Address>
class addressed_register : public Base {
    static_assert(has_row<T>);

public:
    using number = typename Base::number;

    std::error_code set_val(number value, std::uint32_t flags) final {
        if (const std::error_code refused = this->check_own_access(true, flags)) return refused;
        const result<register_span> span = address_.get_address_and_length(flags);
        if (!span) return span.error();
        return spread_write(*this, this->write_number(span.assume_value(), value, flags));
    }
    result<number> get_val(std::uint32_t flags) final {
        if (const std::error_code refused = this->check_own_access(false, flags)) return refused;
        const result<register_span> span = address_.get_address_and_length(flags);
        if (!span) return span.error();
        return this->read_number(span.assume_value(), flags);
    }
    result<register_span> get_address_and_length(std::uint32_t flags) final {
        return address_.get_address_and_length(flags);
    }
    std::int64_t get_length() final { return address_.get_length(); }

protected:
    addressed_register(document_services* services, const described_element& xml, Address address)
        : Base(services, xml), address_(std::move(address)) {}
    ~addressed_register() = default;

    Address address_;
};

}  // namespace GenICam
