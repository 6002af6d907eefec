#pragma once

// GUID and its comparison: the system's own on Windows, the same layout elsewhere.

#ifdef _WIN32

#include <windows.h>

#else

#include <cstdint>
#include <cstring>

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};

using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;

inline bool operator==(REFGUID left, REFGUID right) noexcept {
    return std::memcmp(&left, &right, sizeof(GUID)) == 0;
}
inline bool operator!=(REFGUID left, REFGUID right) noexcept { return !(left == right); }

#endif

static_assert(sizeof(GUID) == 16);
