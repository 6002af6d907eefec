#pragma once

#include <stdint.h>

/* What a driver that is written in C sees of selvane_driver.h. */

#ifdef __cplusplus
extern "C" {
#endif

struct c_guid {
    uint32_t first;
    uint16_t second;
    uint16_t third;
    uint8_t rest[8];
};

struct c_guid c_device_set(void);
struct c_guid c_gate_set(void);
struct c_guid c_vendor_set(void);
struct c_guid c_color_enhancement_set(void);
struct c_guid c_page_class(int index);

uint32_t c_integer_record_size(void);
uint32_t c_float_record_size(void);
uint32_t c_gpio_record_size(void);
uint32_t c_strobe_record_size(void);

uint32_t c_named_request_size(uint32_t path_size);
void c_write_named_request(void* request, const char* path, uint32_t path_size);
const char* c_read_named_request(const void* request, uint32_t request_size);

#ifdef __cplusplus
}
#endif
