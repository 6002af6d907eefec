#pragma once

#include "simcam/vendor_model.h"

#include <cstdint>

namespace simcam {

// Codes of the platform that this driver answers with.
constexpr HRESULT property_unknown = static_cast<HRESULT>(0x80070490);
constexpr HRESULT property_set_unknown = static_cast<HRESULT>(0x80070492);
constexpr HRESULT buffer_too_small_hr = static_cast<HRESULT>(0x8007007A);
constexpr HRESULT not_ready = static_cast<HRESULT>(0x80070015);

/// Serves a `vendor_model` in the wire formats of the vendor sets and through the DirectShow interfaces.
///
/// The views of one quantity (exposure in ticks, in microseconds, in seconds, ...) follow one another. What
/// an automatic mode governs refuses to be set with E_ACCESSDENIED; values outside the limits go by the
/// property's policy. One push focus runs for two reads of its state, software triggers need the trigger on
/// (`not_ready`) and the flag 8.
class vendor_driver {
public:
    explicit vendor_driver(vendor_model& model) noexcept : model_(model) {}

    [[nodiscard]] HRESULT query(REFGUID set, DWORD id, DWORD& support) const;
    [[nodiscard]] HRESULT get(REFGUID set, DWORD id, void* data, DWORD size, DWORD& returned);
    [[nodiscard]] HRESULT set(REFGUID set, DWORD id, const void* data, DWORD size);

    using control_map = std::map<LONG, direct_show_property>;
    /// Sets a property of one of the model's two control maps.
    [[nodiscard]] HRESULT set_control(control_map& controls, LONG property, LONG value, LONG flags);

private:
    [[nodiscard]] bool is_governed(DWORD id) const;
    [[nodiscard]] HRESULT set_integer(DWORD id, integer_property& property, const void* data, DWORD size);
    [[nodiscard]] HRESULT set_float(DWORD id, float_property& property, const void* data, DWORD size);
    [[nodiscard]] HRESULT software_trigger(std::uint32_t flags);
    void keep_order(DWORD id, std::int32_t& value) const;
    void act_on(DWORD id, integer_property& property);
    void center_partial_scan();
    void balance_white();
    void start_focus();

    vendor_model& model_;
    int focus_reads_left_ = 0;
};

}  // namespace simcam
