// The devices in the registry, and the host that finds them there.

#include "tests/device/registered_devices.h"

#include "apps/host/devices.h"
#include "apps/host/host_error.h"
#include "platform/text.h"
#include "simcam/camera_options.h"
#include "tests/device/device_fixture.h"
#include "tests/host/host_process.h"

#include <optional>

namespace device_test {
namespace {

using namespace selvane_camera;
using host_test::ProcessEnd;
using host_test::RunHost;
using host_test::ScratchFolder;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// A variable of the environment, which programs that are started inherit.
class Variable {
public:
    Variable(const wchar_t* name, const std::string& value) : name_(name) {
        SetEnvironmentVariableW(name, platform::widen(value).c_str());
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { SetEnvironmentVariableW(name_, nullptr); }

private:
    const wchar_t* name_;
};

// A value in the settings of a device.
class Setting {
public:
    Setting(const device_record& device, const std::string& value) : key_(device_key(device)) {
        const std::wstring wide = platform::widen(value);
        RegSetKeyValueW(HKEY_CLASSES_ROOT, key_.c_str(), description_setting, REG_SZ, wide.c_str(),
                        static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t)));
    }
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;
    ~Setting() { RegDeleteKeyValueW(HKEY_CLASSES_ROOT, key_.c_str(), description_setting); }

private:
    std::wstring key_;
};

// What is written for the debugger while this lives.
class DebugOutput {
public:
    DebugOutput() : handler_(AddVectoredExceptionHandler(1, Hear)) { Text().clear(); }
    DebugOutput(const DebugOutput&) = delete;
    DebugOutput& operator=(const DebugOutput&) = delete;
    ~DebugOutput() { RemoveVectoredExceptionHandler(handler_); }
    static std::string& Text() {
        static std::string text;
        return text;
    }

private:
    static LONG WINAPI Hear(EXCEPTION_POINTERS* exception) {
        constexpr DWORD printed_narrow = 0x40010006;
        const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
        if (record.ExceptionCode == printed_narrow)
            Text() += reinterpret_cast<const char*>(record.ExceptionInformation[1]);
        return EXCEPTION_CONTINUE_SEARCH;
    }
    void* handler_;
};

class RegisteredDevice : public testing::Test {
protected:
    static void SetUpTestSuite() { devices_of_suite.emplace(); }
    static void TearDownTestSuite() { devices_of_suite.reset(); }
    void SetUp() override { ASSERT_TRUE(devices_of_suite->are_there()); }

    [[nodiscard]] static ProcessEnd Probe(const device_record& device) {
        return RunHost({"--device", device_name(device), "--probe"});
    }
    void ExpectNothingToShow(const ProcessEnd& end, const std::string& reason) {
        EXPECT_EQ(end.code, 1U);
        EXPECT_THAT(end.output, HasSubstr("device \"" + name + "\": " + reason));
        EXPECT_THAT(end.output, Not(HasSubstr("\": shown")));
        EXPECT_THAT(end.errors, HasSubstr("no page has anything to show for this camera"));
        EXPECT_THAT(RunHost({"--list"}).output, HasSubstr(name)) << "listed all the same";
    }

    static std::optional<registered_devices> devices_of_suite;
    const std::string name = device_name(full_device);
};

std::optional<registered_devices> RegisteredDevice::devices_of_suite;

TEST_F(RegisteredDevice, IsListedByTheHost) {
    const ProcessEnd end = RunHost({"--list"});
    EXPECT_EQ(end.code, 0U) << end.errors;
    for (const device_record& device : devices)
        EXPECT_THAT(end.output, HasSubstr(device_name(device) + "\n"));
}

TEST_F(RegisteredDevice, IsOpenedByTheHost) {
    for (const device_record& device : devices) {
        const ProcessEnd end = Probe(device);
        EXPECT_EQ(end.code, 0U) << end.errors;
        EXPECT_EQ(end.errors, "");
        EXPECT_THAT(end.output, AllOf(HasSubstr("page \"Selvane Exposure Controls\": shown\n"),
                                      HasSubstr("page \"Selvane Color Controls\": shown\n")));
    }
    EXPECT_THAT(Probe(full_device).output, HasSubstr("device \"" + name + "\": SIM1203C\n"));
}

TEST_F(RegisteredDevice, IsTracedByTheHost) {
    const ProcessEnd named = RunHost({"--device", name, "--probe", "--trace"});
    EXPECT_THAT(named.output, HasSubstr("\nGet device 4 "));
    const ProcessEnd registers = RunHost({"--device", device_name(registers_device), "--probe", "--trace"});
    EXPECT_THAT(registers.output, AllOf(HasSubstr("\nGet device 3 "), Not(HasSubstr("\nGet device 4 "))));
}

TEST_F(RegisteredDevice, ShowsADescriptionThatTheEnvironmentNames) {
    const ScratchFolder folder;
    const std::string file =
        folder.Write("\xC3\xA4 own.xml", std::string(simcam::bundled_description("first_page")));
    const Variable variable(description_variable, file);
    const ProcessEnd end = Probe(full_device);
    EXPECT_EQ(end.code, 0U) << end.errors;
    EXPECT_THAT(end.output, AllOf(HasSubstr("device \"" + name + "\": FIRST1\n"),
                                  HasSubstr("page \"Selvane Exposure Controls\": nothing to show\n"),
                                  HasSubstr("page \"Selvane Feature Controls\": shown\n")));
}

TEST_F(RegisteredDevice, ShowsADescriptionThatItsSettingsName) {
    const ScratchFolder folder;
    const std::string file = folder.Write("own.xml", std::string(simcam::bundled_description("first_page")));
    const Setting setting(full_device, file);
    EXPECT_THAT(Probe(full_device).output, HasSubstr("device \"" + name + "\": FIRST1\n"));
    EXPECT_THAT(Probe(registers_device).output, HasSubstr(": SIM1203C\n")) << "the other has its own";
    const std::string other =
        folder.Write("other.xml", std::string(simcam::bundled_description("value_nodes")));
    const Variable variable(description_variable, other);
    EXPECT_THAT(Probe(full_device).output, Not(HasSubstr("FIRST1"))) << "the environment goes before it";
}

TEST_F(RegisteredDevice, WithADescriptionThatCannotBeReadSaysSo) {
    const ScratchFolder folder;
    const std::string missing = (folder.Path() / "missing.xml").u8string();
    const Variable variable(description_variable, missing);
    ExpectNothingToShow(Probe(full_device), "cannot read " + missing);
}

TEST_F(RegisteredDevice, WithADescriptionThatIsMalformedSaysSo) {
    const ScratchFolder folder;
    const std::string file = folder.Write("broken.xml", "<RegisterDescription><Float Name=\"A\">");
    const Variable variable(description_variable, file);
    ExpectNothingToShow(Probe(full_device), file + " is malformed: ");
}

TEST_F(RegisteredDevice, TellsTheDebuggerWhyItHasNothingToShow) {
    const selvane_host::com_apartment apartment;
    const Variable variable(description_variable, "C:\\nowhere.xml");
    const DebugOutput output;
    {
        const auto filter = selvane_host::open_device(name);
        EXPECT_EQ(selvane_host::vendor_information(*filter), "cannot read C:\\nowhere.xml");
    }
    EXPECT_EQ(DebugOutput::Text(), name + ": cannot read C:\\nowhere.xml\n");
}

TEST(Registration, IsTakenBackWhole) {
    {
        const registered_devices entered;
        ASSERT_TRUE(entered.are_there());
        for (const device_record& device : devices) {
            EXPECT_TRUE(
                class_key_exists(L"CLSID\\" + platform::format_guid(device.clsid) + L"\\InprocServer32"));
            EXPECT_TRUE(class_key_exists(device_key(device)));
        }
    }
    for (const device_record& device : devices) {
        EXPECT_FALSE(class_key_exists(L"CLSID\\" + platform::format_guid(device.clsid)));
        EXPECT_FALSE(class_key_exists(device_key(device)));
    }
    const ProcessEnd end = RunHost({"--list"});
    EXPECT_EQ(end.code, 2U);
    EXPECT_THAT(end.errors, HasSubstr("this system has no video capture device"));
}

}  // namespace
}  // namespace device_test
