#pragma once

#include "platform/lock.h"
#include "simcam/call_book.h"
#include "simcam/camera_options.h"
#include "simcam/driver_faces.h"
#include "simcam/feature_server.h"
#include "simcam/register_memory.h"
#include "simcam/vendor_driver.h"

#include <mutex>
#include <string>

namespace simcam {

/// The driver behind the interfaces of a simulated camera. One call at a time; listeners and faults may call
/// back.
class camera_core {
public:
    explicit camera_core(camera_options wanted);

    [[nodiscard]] HRESULT query(REFGUID set, DWORD id, DWORD* support);
    [[nodiscard]] HRESULT get(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data,
                              DWORD data_size, DWORD* returned);
    [[nodiscard]] HRESULT set(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data,
                              DWORD data_size);

    [[nodiscard]] HRESULT control_range(call_kind kind, LONG property, const range_outputs& out);
    [[nodiscard]] HRESULT control_get(call_kind kind, LONG property, LONG* value, LONG* flags);
    [[nodiscard]] HRESULT control_set(call_kind kind, LONG property, LONG value, LONG flags);

    camera_options options;
    register_memory memory;
    feature_server features;
    call_book book;
    mutable platform::recursive_lock mutex;

private:
    struct block {
        const void* memory;
        DWORD size;
    };

    [[nodiscard]] driver_call open_call(call_kind kind, DWORD id);
    [[nodiscard]] bool read_blocks(driver_call& call, const block& instance, const block& data) const;
    template <class Work, class Finish>
    HRESULT answer(driver_call& call, bool watched, Work work, Finish finish);
    template <class Work>
    HRESULT answer(driver_call& call, bool watched, Work work);
    void close(driver_call& call, bool watched, bool threw);

    [[nodiscard]] vendor_driver::control_map& controls_of(call_kind kind) noexcept;
    /// Answers from the state of a control, which `give` also enters into the call.
    template <class Give>
    [[nodiscard]] HRESULT ask_control(call_kind kind, LONG property, Give give);
    [[nodiscard]] GenICam::IDevicePort& registers() noexcept;
    [[nodiscard]] bool serves_vendor(REFGUID set) const noexcept;
    [[nodiscard]] HRESULT query_device(DWORD id, DWORD& support) const;
    [[nodiscard]] HRESULT get_property(const driver_call& call, void* data, DWORD size, DWORD& returned);
    [[nodiscard]] HRESULT get_description(const bytes& instance, DWORD id, void* data, DWORD size,
                                          DWORD& returned) const;
    [[nodiscard]] HRESULT get_named(const std::string& path, void* data, DWORD size, DWORD& returned) const;
    [[nodiscard]] HRESULT set_property(const driver_call& call, const void* data, DWORD size);
    [[nodiscard]] HRESULT set_named(const std::string& path, const void* data, DWORD size) const;

    vendor_driver vendor_;
};

}  // namespace simcam
