/* What a camera's driver and the property pages of selvane_page.dll exchange, for C11 and C++17.
 *
 * Everything goes through IKsPropertySet on the capture filter, interface id
 * {31EFAC30-515C-11D0-A9AA-00AA0061BE93}, whose three operations come in this order behind those of IUnknown:
 *
 *     Set(set, id, instance, instance_size, data, data_size)
 *     Get(set, id, instance, instance_size, data, data_size, &returned)
 *     QuerySupported(set, id, &support)
 *
 * <strmif.h> declares it so. <dsound.h> has an interface of the same name with another order: do not use that
 * one.
 *
 * All numbers are little-endian. An id is given as the initialiser of a GUID:
 *
 *     static const GUID device_set = SELVANE_DEVICE_SET;
 *
 * With SELVANE_DRIVER_GUIDS defined before the inclusion, <guiddef.h> is included and each is a constant as
 * well. */
#ifndef SELVANE_DRIVER_H
#define SELVANE_DRIVER_H

#include <stdint.h>

/* The initialiser of a GUID. */
#define SELVANE_GUID(data1, data2, data3, b0, b1, b2, b3, b4, b5, b6, b7) \
    {                                                                     \
        data1, data2, data3, { b0, b1, b2, b3, b4, b5, b6, b7 }           \
    }

/* Property sets. */

/* Descriptions, registers and named features: `enum selvane_device_property`. */
#define SELVANE_DEVICE_SET \
    SELVANE_GUID(0x9DDD5EDC, 0x5EFF, 0x4D3B, 0xB8, 0x5B, 0x46, 0xFB, 0xC4, 0xE4, 0x9E, 0x59)
/* The kind of the device: the pages serve those that answer SELVANE_DEVICE_KIND. */
#define SELVANE_GATE_SET \
    SELVANE_GUID(0x8E4DEEF8, 0xB53B, 0x4A30, 0xB9, 0xB6, 0xAF, 0xBB, 0xCB, 0xD1, 0x82, 0xB4)
/* The built-in items: `enum selvane_vendor_property`. */
#define SELVANE_VENDOR_SET \
    SELVANE_GUID(0x515E97D1, 0xC453, 0x4772, 0xA4, 0x89, 0xCC, 0x07, 0x0A, 0x5A, 0x24, 0x42)
/* The switch of the colour enhancement, SELVANE_COLOR_ENHANCEMENT. */
#define SELVANE_COLOR_ENHANCEMENT_SET \
    SELVANE_GUID(0x8CBCF1C6, 0x53C3, 0x4D79, 0x8E, 0xDB, 0xC0, 0x64, 0x65, 0x75, 0xDA, 0xC8)

/* Classes of the pages, for ISpecifyPropertyPages::GetPages. */

#define SELVANE_EXPOSURE_PAGE \
    SELVANE_GUID(0x01F8BA96, 0x06C1, 0x4888, 0xB9, 0xFF, 0x8B, 0x60, 0xF3, 0xA1, 0x22, 0x1A)
#define SELVANE_FEATURE_PAGE \
    SELVANE_GUID(0x01F8BA96, 0x06C1, 0x4888, 0xB9, 0xFF, 0x8B, 0x60, 0xF3, 0xA1, 0x22, 0x1B)
#define SELVANE_LENS_PAGE \
    SELVANE_GUID(0xC423731D, 0xD4C5, 0x41EE, 0xB1, 0x7D, 0xA3, 0x11, 0xA7, 0xB2, 0x7D, 0xEC)
#define SELVANE_COLOR_PAGE \
    SELVANE_GUID(0xA522337D, 0x5324, 0x4123, 0x9D, 0xA4, 0x84, 0xD1, 0x7E, 0xF1, 0xEA, 0xDA)

#ifdef SELVANE_DRIVER_GUIDS
#include <guiddef.h>
static const GUID selvane_device_set = SELVANE_DEVICE_SET;
static const GUID selvane_gate_set = SELVANE_GATE_SET;
static const GUID selvane_vendor_set = SELVANE_VENDOR_SET;
static const GUID selvane_color_enhancement_set = SELVANE_COLOR_ENHANCEMENT_SET;
static const GUID selvane_exposure_page = SELVANE_EXPOSURE_PAGE;
static const GUID selvane_feature_page = SELVANE_FEATURE_PAGE;
static const GUID selvane_lens_page = SELVANE_LENS_PAGE;
static const GUID selvane_color_page = SELVANE_COLOR_PAGE;
#endif

/* Bits of what QuerySupported answers. */
enum selvane_support { SELVANE_SUPPORT_GET = 1, SELVANE_SUPPORT_SET = 2 };

/* ---- The device: gate, descriptions, registers, names ---- */

enum {
    SELVANE_GATE_PROPERTY = 0, /* Get: selvane_device_kind_query as instance and data at once */
    SELVANE_DEVICE_KIND = 5    /* the kind of a device that the pages serve */
};

struct selvane_device_kind_query {
    uint32_t device_kind;
    uint8_t unused[140];
};

enum selvane_device_property {
    SELVANE_DESCRIPTION_SIZE =
        1, /* Get: instance selvane_description_request, data uint32, bytes; answer 4 bytes */
    SELVANE_DESCRIPTION_DATA = 2, /* Get: the same instance, data the description; at most as many bytes */
    SELVANE_REGISTER_ACCESS = 3,  /* Get, Set: instance uint64 address, data the register's bytes */
    SELVANE_NAMED_ACCESS = 4      /* Get, Set: instance a named request, data the value */
};

struct selvane_description_request {
    uint32_t first_field; /* 1; 0 in the one request that is repeated when description 0 was refused */
    uint32_t index;       /* number of the description, from 0 until the driver refuses one */
};

enum {
    SELVANE_NAMED_VALUE_SIZE = 8, /* an int64, or a double; a boolean is true unless all bytes are zero */
    SELVANE_SELECTED_ENTRY_SIZE = 256, /* room for an entry's name and its terminator */
    SELVANE_NAMED_PATH_OFFSET = 8,     /* zero bytes before the path */
    SELVANE_NAMED_TAIL_SIZE = 64       /* zero bytes behind it */
};

/* What is asked of a feature stands behind its name: "ExposureTime/Value". An entry's implementation is asked
 * for with the names of enumeration and entry: "TriggerMode/On/IsImplemented". */
#define SELVANE_PATH_VALUE "/Value"
#define SELVANE_PATH_MIN "/Min"
#define SELVANE_PATH_MAX "/Max"
#define SELVANE_PATH_INC "/Inc"
#define SELVANE_PATH_DEFAULT "/Default"
#define SELVANE_PATH_IS_LOCKED "/IsLocked" /* not zero: the control is enabled */
#define SELVANE_PATH_EXECUTE "/Execute"
#define SELVANE_PATH_SELECTED_ENTRY "/SelectedEntry"
#define SELVANE_PATH_IS_IMPLEMENTED "/IsImplemented"

/* Bytes of the request for a path of that many bytes. */
static inline uint32_t selvane_named_request_size(uint32_t path_size) {
    return SELVANE_NAMED_PATH_OFFSET + path_size + SELVANE_NAMED_TAIL_SIZE;
}

#ifdef __cplusplus
#define SELVANE_BYTES(type, address) static_cast<type>(address)
#define SELVANE_NOTHING nullptr
#else
#define SELVANE_BYTES(type, address) ((type)(address))
#define SELVANE_NOTHING 0
#endif

/* Fills the request, which has room for selvane_named_request_size(path_size) bytes. */
static inline void selvane_write_named_request(void* request, const char* path, uint32_t path_size) {
    char* bytes = SELVANE_BYTES(char*, request);
    uint32_t at;
    for (at = 0; at < SELVANE_NAMED_PATH_OFFSET; ++at) *bytes++ = 0;
    for (at = 0; at < path_size; ++at) *bytes++ = path[at];
    for (at = 0; at < SELVANE_NAMED_TAIL_SIZE; ++at) *bytes++ = 0;
}

/* The terminated path within a request, or null for what is no named request: too short, other bytes than
 * zero before the path, or a path without an end. */
static inline const char* selvane_read_named_request(const void* request, uint32_t request_size) {
    const char* bytes = SELVANE_BYTES(const char*, request);
    uint32_t at;
    if (bytes == SELVANE_NOTHING || request_size < selvane_named_request_size(0)) return SELVANE_NOTHING;
    for (at = 0; at < SELVANE_NAMED_PATH_OFFSET; ++at) {
        if (bytes[at] != 0) return SELVANE_NOTHING;
    }
    for (; at < request_size; ++at) {
        if (bytes[at] == 0) return bytes + SELVANE_NAMED_PATH_OFFSET;
    }
    return SELVANE_NOTHING;
}

#undef SELVANE_BYTES
#undef SELVANE_NOTHING

/* ---- The built-in items: vendor properties ---- */

/* The record of a property is instance and data of its call at once. */
enum selvane_vendor_property {
    SELVANE_WHITE_BALANCE_BLUE = 101,
    SELVANE_WHITE_BALANCE_RED = 102,
    SELVANE_AUTO_EXPOSURE_REFERENCE = 106,
    SELVANE_WHITE_BALANCE_ONE_PUSH = 107,
    SELVANE_EXPOSURE_TICKS =
        109, /* in 1/10000 s; the item Exposure needs it even where 239 carries the value */
    SELVANE_TRIGGER = 115,
    SELVANE_PARTIAL_SCAN_X = 118,
    SELVANE_PARTIAL_SCAN_Y = 119,
    SELVANE_GPIO = 122, /* selvane_gpio_record */
    SELVANE_FOCUS_ONE_PUSH = 124,
    SELVANE_STROBE = 125,         /* selvane_strobe_record */
    SELVANE_EXPOSURE_FLOAT = 200, /* selvane_float_record, in seconds; leads to no control on the pages */
    SELVANE_AUTO_MAX_TICKS = 201, /* in 1/10000 s */
    SELVANE_AUTO_MAX_AUTOMATIC = 202,
    SELVANE_WHITE_BALANCE_GREEN = 206,
    SELVANE_PARTIAL_SCAN_AUTO_CENTER = 211,
    SELVANE_BINNING = 212, /* leads to no control on the pages */
    SELVANE_SOFTWARE_TRIGGER = 213,
    SELVANE_TRIGGER_DELAY = 238,         /* selvane_float_record, in microseconds */
    SELVANE_EXPOSURE_MICROSECONDS = 239, /* in place of 109 */
    SELVANE_AUTO_MAX_MICROSECONDS = 240, /* in place of 201 where 239 exists */
    SELVANE_GAIN = 241,                  /* in 1/100 dB */
    SELVANE_FOCUS_AUTO_MIN = 244,
    SELVANE_FOCUS_AUTO_MAX = 245,
    SELVANE_AUTO_MAX_FLOAT = 246, /* selvane_float_record, in seconds; leads to no control on the pages */
    SELVANE_FOCUS_REGION_TOP = 247,
    SELVANE_FOCUS_REGION_LEFT = 248,
    SELVANE_FOCUS_REGION_BOTTOM = 249,
    SELVANE_FOCUS_REGION_RIGHT = 250,
    SELVANE_FOCUS_REGION_ENABLE = 251
};

/* The one property of SELVANE_COLOR_ENHANCEMENT_SET; selvane_integer_record. */
enum { SELVANE_COLOR_ENHANCEMENT = 0 };

/* Properties of IAMCameraControl and IAMVideoProcAmp that the items use, by the platform's numbers. */
enum {
    SELVANE_CAMERA_CONTROL_EXPOSURE = 4,
    SELVANE_CAMERA_CONTROL_FOCUS = 6,
    SELVANE_VIDEO_PROC_AMP_WHITE_BALANCE = 7,
    SELVANE_VIDEO_PROC_AMP_GAIN = 9
};

/* Modes in the flags and capabilities of records and of the two interfaces. */
enum selvane_mode { SELVANE_AUTOMATIC = 1, SELVANE_MANUAL = 2 };

/* Bits of SELVANE_TRIGGER: in the flags the state, in the capabilities what can be set. */
enum selvane_trigger_bits {
    SELVANE_TRIGGER_MODE_BITS = 7, /* in the flags: cleared and set together when the trigger is switched */
    SELVANE_TRIGGER_OFF = 1 << 2,  /* in the flags alone */
    SELVANE_TRIGGER_POLARITY = 1 << 24,
    SELVANE_TRIGGER_OPERATION = 1 << 25 /* 0 default, 1 global reset release */
};

/* Flags with which SELVANE_SOFTWARE_TRIGGER is written. */
enum { SELVANE_SOFTWARE_TRIGGER_FIRE = 8 };

/* Bits of a strobe's restrictions. */
enum selvane_strobe_restrictions {
    SELVANE_STROBE_NO_POLARITY = 1,
    SELVANE_STROBE_NO_DELAY = 2,
    SELVANE_STROBE_NO_DURATION = 4 /* and no mode but "exposure" */
};

/* Every record begins with room for a KSPROPERTY, which the driver fills or ignores. */

/* A property without a remark above. Written with value and SELVANE_MANUAL and nothing else, except
 * SELVANE_TRIGGER, which is read, changed and written whole. */
struct selvane_integer_record {
    uint8_t header[24];
    int32_t value;
    uint32_t flags;
    uint32_t capabilities;
    int32_t min;
    int32_t max;
    int32_t default_value;
};

struct selvane_float_record {
    uint8_t header[24];
    float value;
    float min;
    float max;
    float default_value;
    uint32_t flags;
    uint32_t capabilities; /* SELVANE_AUTOMATIC: an automatic mode is there */
    uint8_t unused[8];
};

/* Written with the output and nothing else. */
struct selvane_gpio_record {
    uint8_t header[24];
    int32_t input;
    int32_t output;
    int32_t max_input;  /* 0: no inputs */
    int32_t max_output; /* 0: no outputs */
};

/* Read, changed and written whole. */
struct selvane_strobe_record {
    uint8_t header[24];
    uint32_t enable;
    int32_t delay;
    int32_t delay_min;
    int32_t delay_max;
    int32_t delay_default;
    int32_t duration;
    int32_t duration_min;
    int32_t duration_max;
    int32_t duration_default;
    uint32_t polarity;
    uint32_t unused_64;
    uint32_t follow_exposure;
    uint32_t unused_72;
    uint32_t restrictions;
    uint8_t unused_80[8];
};

#ifdef __cplusplus
#define SELVANE_ASSERT(condition) static_assert(condition, #condition)
#else
#define SELVANE_ASSERT(condition) _Static_assert(condition, #condition)
#endif
/* Where a field lies, without <stddef.h>. */
#if defined(_MSC_VER) && !defined(__cplusplus) && !defined(__clang__)
#define SELVANE_OFFSET(record, field) ((unsigned long long)&((struct record*)0)->field)
#else
#define SELVANE_OFFSET(record, field) __builtin_offsetof(struct record, field)
#endif
#define SELVANE_SIZE(record, size) SELVANE_ASSERT(sizeof(struct record) == size)
#define SELVANE_FIELD(record, field, offset) SELVANE_ASSERT(SELVANE_OFFSET(record, field) == offset)

SELVANE_SIZE(selvane_device_kind_query, 144);
SELVANE_FIELD(selvane_device_kind_query, device_kind, 0);

SELVANE_SIZE(selvane_description_request, 8);
SELVANE_FIELD(selvane_description_request, first_field, 0);
SELVANE_FIELD(selvane_description_request, index, 4);

SELVANE_SIZE(selvane_integer_record, 48);
SELVANE_FIELD(selvane_integer_record, value, 24);
SELVANE_FIELD(selvane_integer_record, flags, 28);
SELVANE_FIELD(selvane_integer_record, capabilities, 32);
SELVANE_FIELD(selvane_integer_record, min, 36);
SELVANE_FIELD(selvane_integer_record, max, 40);
SELVANE_FIELD(selvane_integer_record, default_value, 44);

SELVANE_SIZE(selvane_float_record, 56);
SELVANE_FIELD(selvane_float_record, value, 24);
SELVANE_FIELD(selvane_float_record, min, 28);
SELVANE_FIELD(selvane_float_record, max, 32);
SELVANE_FIELD(selvane_float_record, default_value, 36);
SELVANE_FIELD(selvane_float_record, flags, 40);
SELVANE_FIELD(selvane_float_record, capabilities, 44);

SELVANE_SIZE(selvane_gpio_record, 40);
SELVANE_FIELD(selvane_gpio_record, input, 24);
SELVANE_FIELD(selvane_gpio_record, output, 28);
SELVANE_FIELD(selvane_gpio_record, max_input, 32);
SELVANE_FIELD(selvane_gpio_record, max_output, 36);

SELVANE_SIZE(selvane_strobe_record, 88);
SELVANE_FIELD(selvane_strobe_record, enable, 24);
SELVANE_FIELD(selvane_strobe_record, delay, 28);
SELVANE_FIELD(selvane_strobe_record, delay_min, 32);
SELVANE_FIELD(selvane_strobe_record, delay_max, 36);
SELVANE_FIELD(selvane_strobe_record, delay_default, 40);
SELVANE_FIELD(selvane_strobe_record, duration, 44);
SELVANE_FIELD(selvane_strobe_record, duration_min, 48);
SELVANE_FIELD(selvane_strobe_record, duration_max, 52);
SELVANE_FIELD(selvane_strobe_record, duration_default, 56);
SELVANE_FIELD(selvane_strobe_record, polarity, 60);
SELVANE_FIELD(selvane_strobe_record, follow_exposure, 68);
SELVANE_FIELD(selvane_strobe_record, restrictions, 76);

#undef SELVANE_FIELD
#undef SELVANE_SIZE
#undef SELVANE_OFFSET
#undef SELVANE_ASSERT

#endif
