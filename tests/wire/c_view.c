/* Compiled as C11, apart from everything else. */
#ifdef _WIN32
#define SELVANE_DRIVER_GUIDS
#endif
#include "wire/selvane_driver.h"

#include "tests/wire/c_view.h"

struct c_guid c_device_set(void) {
    const struct c_guid id = SELVANE_DEVICE_SET;
    return id;
}

struct c_guid c_gate_set(void) {
    const struct c_guid id = SELVANE_GATE_SET;
    return id;
}

struct c_guid c_vendor_set(void) {
    const struct c_guid id = SELVANE_VENDOR_SET;
    return id;
}

struct c_guid c_color_enhancement_set(void) {
    const struct c_guid id = SELVANE_COLOR_ENHANCEMENT_SET;
    return id;
}

struct c_guid c_page_class(int index) {
    const struct c_guid ids[] = {SELVANE_EXPOSURE_PAGE, SELVANE_FEATURE_PAGE, SELVANE_LENS_PAGE,
                                 SELVANE_COLOR_PAGE};
    return ids[index];
}

uint32_t c_integer_record_size(void) { return sizeof(struct selvane_integer_record); }

uint32_t c_float_record_size(void) { return sizeof(struct selvane_float_record); }

uint32_t c_gpio_record_size(void) { return sizeof(struct selvane_gpio_record); }

uint32_t c_strobe_record_size(void) { return sizeof(struct selvane_strobe_record); }

uint32_t c_named_request_size(uint32_t path_size) { return selvane_named_request_size(path_size); }

void c_write_named_request(void* request, const char* path, uint32_t path_size) {
    selvane_write_named_request(request, path, path_size);
}

const char* c_read_named_request(const void* request, uint32_t request_size) {
    return selvane_read_named_request(request, request_size);
}
