// What selvane_host.exe tells the system about itself before it runs.

#include "tests/host/host_process.h"

#include <windows.h>

#include <array>
#include <cstring>

#include <gtest/gtest.h>

namespace {

using namespace host_test;

class ActivationContext {
public:
    explicit ActivationContext(const std::filesystem::path& program) {
        const std::wstring file = program.wstring();
        ACTCTXW wanted{};
        wanted.cbSize = sizeof(wanted);
        wanted.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID;
        wanted.lpSource = file.c_str();
        wanted.lpResourceName = MAKEINTRESOURCEW(1);
        context_ = CreateActCtxW(&wanted);
    }
    ActivationContext(const ActivationContext&) = delete;
    ActivationContext& operator=(const ActivationContext&) = delete;
    ~ActivationContext() {
        if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
    }

    // As the system reads it: the setting's newest name space first.
    [[nodiscard]] std::wstring Setting(const wchar_t* space, const wchar_t* name) const {
        std::array<wchar_t, 64> text{};
        SIZE_T length = 0;
        const BOOL found = QueryActCtxSettingsW(0, context_, space, name, text.data(), text.size(), &length);
        return found != 0 ? text.data() : L"";
    }

private:
    HANDLE context_ = INVALID_HANDLE_VALUE;
};

TEST(ProgramFile, IsAwareOfEachMonitorsResolution) {
    const ActivationContext context(HostProgram());
    EXPECT_EQ(context.Setting(L"http://schemas.microsoft.com/SMI/2016/WindowsSettings", L"dpiAwareness"),
              L"PerMonitorV2, PerMonitor");
    EXPECT_EQ(context.Setting(L"http://schemas.microsoft.com/SMI/2005/WindowsSettings", L"dpiAware"),
              L"true/pm");
}

TEST(ProgramFile, IsMadeForCurrentSystems) {
    const std::string bytes = ReadFile(HostProgram());
    IMAGE_DOS_HEADER head{};
    IMAGE_NT_HEADERS64 image{};
    ASSERT_GT(bytes.size(), sizeof(head));
    std::memcpy(&head, bytes.data(), sizeof(head));
    ASSERT_GT(bytes.size(), static_cast<std::size_t>(head.e_lfanew) + sizeof(image));
    std::memcpy(&image, bytes.data() + head.e_lfanew, sizeof(image));
    EXPECT_EQ(image.OptionalHeader.Subsystem, IMAGE_SUBSYSTEM_WINDOWS_CUI);
    EXPECT_EQ(image.OptionalHeader.MajorSubsystemVersion, 10);
    EXPECT_EQ(image.OptionalHeader.MinorSubsystemVersion, 0);
}

}  // namespace
