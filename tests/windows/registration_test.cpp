#include "server/registration.h"

#include "platform/windows/owned.h"

#include <gtest/gtest.h>

#include <string>

namespace selvane_server {
namespace {

constexpr wchar_t root_path[] = L"Software\\SelvanePageTest";
constexpr GUID some_clsid = {0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr GUID some_media_set = {0x0FEDCBA9, 0x8765, 0x4321, {8, 7, 6, 5, 4, 3, 2, 1}};
constexpr wchar_t clsid_text[] = L"{12345678-9ABC-DEF0-0102-030405060708}";
constexpr wchar_t media_set_text[] = L"{0FEDCBA9-8765-4321-0807-060504030201}";

std::wstring Value(HKEY key, const std::wstring& path, const wchar_t* name) {
    wchar_t text[600] = {};
    DWORD size = sizeof text;
    const LSTATUS status = RegGetValueW(key, path.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size);
    return status == ERROR_SUCCESS ? text : L"(none)";
}

bool Exists(HKEY key, const std::wstring& path) {
    platform::registry_key opened;
    return RegOpenKeyExW(key, path.c_str(), 0, KEY_READ, opened.put()) == ERROR_SUCCESS;
}

/// Both roots stand under a key of the test for its time.
class RegistrationTest : public testing::Test {
protected:
    RegistrationTest() {
        RegDeleteTreeW(HKEY_CURRENT_USER, root_path);
        RegCreateKeyW(HKEY_CURRENT_USER, (std::wstring(root_path) + L"\\classes").c_str(), classes_.put());
        RegCreateKeyW(HKEY_CURRENT_USER, (std::wstring(root_path) + L"\\machine").c_str(), machine_.put());
        EXPECT_EQ(RegOverridePredefKey(HKEY_CLASSES_ROOT, classes_.get()), ERROR_SUCCESS);
        EXPECT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine_.get()), ERROR_SUCCESS);
    }
    ~RegistrationTest() override {
        RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        classes_.reset();
        machine_.reset();
        RegDeleteTreeW(HKEY_CURRENT_USER, root_path);
    }

    static PageRecord Page(const GUID& media_set) { return {media_set, some_clsid, nullptr, L"Some Page"}; }

    platform::registry_key classes_;
    platform::registry_key machine_;
    const std::wstring class_key_ = std::wstring(L"CLSID\\") + clsid_text;
    const std::wstring set_key_ =
        std::wstring(L"System\\CurrentControlSet\\Control\\MediaSets\\") + media_set_text;
};

TEST_F(RegistrationTest, WritesNameServerAndThreadingModel) {
    EXPECT_EQ(RegisterPage(Page({}), L"C:\\some where\\a.dll"), S_OK);
    EXPECT_EQ(Value(classes_.get(), class_key_, nullptr), L"Some Page");
    EXPECT_EQ(Value(classes_.get(), class_key_ + L"\\InprocServer32", nullptr), L"C:\\some where\\a.dll");
    EXPECT_EQ(Value(classes_.get(), class_key_ + L"\\InprocServer32", L"ThreadingModel"), L"Both");
    EXPECT_FALSE(Exists(machine_.get(), L"System")) << "no media set, no entry";
}

TEST_F(RegistrationTest, ASecondRunOverwrites) {
    EXPECT_EQ(RegisterPage(Page({}), L"C:\\old and long.dll"), S_OK);
    EXPECT_EQ(RegisterPage(Page({}), L"C:\\new.dll"), S_OK);
    EXPECT_EQ(Value(classes_.get(), class_key_ + L"\\InprocServer32", nullptr), L"C:\\new.dll");
}

TEST_F(RegistrationTest, APageWithAMediaSetStandsThereToo) {
    EXPECT_EQ(RegisterPage(Page(some_media_set), L"C:\\a.dll"), S_OK);
    EXPECT_EQ(Value(machine_.get(), set_key_ + L"\\PropertyPages\\" + clsid_text, nullptr), L"Some Page");
    UnregisterPage(Page(some_media_set));
    EXPECT_FALSE(Exists(classes_.get(), class_key_));
    EXPECT_TRUE(Exists(classes_.get(), L"CLSID"));
    EXPECT_FALSE(Exists(machine_.get(), set_key_));
    EXPECT_TRUE(Exists(machine_.get(), L"System\\CurrentControlSet\\Control\\MediaSets"));
}

TEST_F(RegistrationTest, TakesNothingBackWhereNothingIs) {
    UnregisterPage(Page(some_media_set));
    EXPECT_FALSE(Exists(classes_.get(), L"CLSID"));
}

TEST_F(RegistrationTest, ARegistryErrorComesBackAsItsCode) {
    // Nothing lasting can be made below a key that does not last.
    platform::registry_key poor;
    ASSERT_EQ(RegCreateKeyExW(machine_.get(), L"volatile", 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                              nullptr, poor.put(), nullptr),
              ERROR_SUCCESS);
    ASSERT_EQ(RegOverridePredefKey(HKEY_CLASSES_ROOT, poor.get()), ERROR_SUCCESS);
    EXPECT_EQ(RegisterPage(Page({}), L"C:\\a.dll"), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    ASSERT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, poor.get()), ERROR_SUCCESS);
    EXPECT_EQ(RegisterMediaSetPage(some_media_set, some_clsid, L"x"),
              HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
}

TEST_F(RegistrationTest, MediaSetsNeedASetAndAClass) {
    EXPECT_EQ(RegisterMediaSetPage({}, some_clsid, L"x"), E_NOTIMPL);
    EXPECT_EQ(RegisterMediaSetPage({}, {}, L"x"), E_NOTIMPL);
    EXPECT_EQ(RegisterMediaSetPage(some_media_set, {}, L"x"), E_FAIL);
    EXPECT_EQ(UnregisterMediaSetPage({}, some_clsid), E_NOTIMPL);
    EXPECT_EQ(UnregisterMediaSetPage(some_media_set, {}), E_FAIL);
    EXPECT_EQ(UnregisterMediaSetPage(some_media_set, some_clsid), S_OK) << "nothing there is fine";
    EXPECT_FALSE(Exists(machine_.get(), L"System"));
}

TEST_F(RegistrationTest, UnregisteringAMediaSetTakesAllItsPages) {
    constexpr GUID other_clsid = {1, 2, 3, {}};
    EXPECT_EQ(RegisterMediaSetPage(some_media_set, some_clsid, L"one"), S_OK);
    EXPECT_EQ(RegisterMediaSetPage(some_media_set, other_clsid, L"two"), S_OK);
    EXPECT_EQ(UnregisterMediaSetPage(some_media_set, some_clsid), S_OK);
    EXPECT_FALSE(Exists(machine_.get(), set_key_));
}

TEST_F(RegistrationTest, DeletesAKeyWithAllBelow) {
    for (const wchar_t* path : {L"a\\b\\c", L"a\\b\\d", L"a\\e", L"f"}) {
        platform::registry_key made;
        ASSERT_EQ(RegCreateKeyW(machine_.get(), path, made.put()), ERROR_SUCCESS);
    }
    EXPECT_EQ(DeleteKeyTree(machine_.get(), L"a"), S_OK);
    EXPECT_FALSE(Exists(machine_.get(), L"a"));
    EXPECT_TRUE(Exists(machine_.get(), L"f"));
    EXPECT_EQ(DeleteKeyTree(machine_.get(), L""), E_FAIL);
    EXPECT_EQ(DeleteKeyTree(machine_.get(), L"not there"), S_OK);
}

}  // namespace
}  // namespace selvane_server
