#pragma once

#include <arv.h>

namespace selvane_inspect {

// What is called of Aravis and of what it stands on.
#define SELVANE_ARAVIS_FUNCTIONS(row)                                                                    \
    row(arv_update_device_list) row(arv_get_n_devices) row(arv_get_device_id) row(arv_get_device_vendor) \
        row(arv_get_device_model) row(arv_get_device_serial_nbr) row(arv_get_device_address)             \
            row(arv_get_device_protocol) row(arv_open_device) row(arv_device_get_genicam_xml)            \
                row(arv_device_read_memory) row(arv_device_write_memory) row(arv_device_error_quark)     \
                    row(arv_gv_device_get_type) row(arv_gv_device_is_controller)                         \
                        row(arv_gv_device_take_control) row(arv_gv_device_leave_control)                 \
                            row(g_type_check_instance_is_a) row(g_object_unref) row(g_error_free)

/// The library, loaded when it is first needed: whoever looks at files does without it.
struct aravis_library {
#define SELVANE_ARAVIS_MEMBER(function) decltype(&::function) function = nullptr;
    SELVANE_ARAVIS_FUNCTIONS(SELVANE_ARAVIS_MEMBER)
#undef SELVANE_ARAVIS_MEMBER

    /// Throws `inspect_error` where it is not installed.
    [[nodiscard]] static const aravis_library& get();
};

}  // namespace selvane_inspect
