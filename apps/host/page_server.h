#pragma once

#include <windows.h>

#include <filesystem>
#include <vector>

namespace selvane_host {

/// Initialises COM for the thread of the windows.
class com_apartment {
public:
    com_apartment();
    com_apartment(const com_apartment&) = delete;
    com_apartment& operator=(const com_apartment&) = delete;
    ~com_apartment();
};

/// selvane_page.dll, its classes known to COM for the life of this object and in this process alone: the
/// registry is neither read nor written. Throws `host_error` for a DLL that is not there or not the one.
class page_server {
public:
    explicit page_server(const std::filesystem::path& dll);
    page_server(const page_server&) = delete;
    page_server& operator=(const page_server&) = delete;
    ~page_server();

private:
    void offer_classes(const std::filesystem::path& dll);
    void withdraw() noexcept;

    HMODULE module_;
    std::vector<DWORD> cookies_;
};

/// Where the DLL is expected: in the folder of the program.
[[nodiscard]] std::filesystem::path page_server_path();

}  // namespace selvane_host
