#pragma once

#include "platform/com_ptr.h"

#include <filesystem>

namespace selvane_host {

/// A new object of a driver that stands in a DLL of its own, which exports
///
///     extern "C" HRESULT STDMETHODCALLTYPE SelvaneCreateDriver(IUnknown** driver);
///
/// The DLL stays loaded until the program ends: it may have threads. Throws `host_error`.
[[nodiscard]] platform::com_ptr<IUnknown> open_driver(const std::filesystem::path& file);

}  // namespace selvane_host
