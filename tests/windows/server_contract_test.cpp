#include "platform/ascii.h"
#include "platform/windows/owned.h"
#include "tests/support/not_empty.h"
#include "tests/windows/com_fakes.h"
#include "tests/windows/page_server.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace page_test {
namespace {

constexpr CLSID unknown_class = {
    0x01F8BA96, 0x06C1, 0x4888, {0xB9, 0xFF, 0x8B, 0x60, 0xF3, 0xA1, 0x22, 0x1C}};

// Everything that the DLL asks of the system by name. Each library is one that the platform takes from its
// own folder whatever lies beside the host; the common controls are none of them. Files, processes and the
// state of the machine are there as the run-time libraries and the XML parser bring them along, whole objects
// at a time; nothing here reaches a network.
const std::map<std::string, std::string> known_imports = {
    {"advapi32.dll",
     "RegCloseKey RegCreateKeyExW RegCreateKeyW RegDeleteKeyW RegEnumKeyExW RegOpenKeyExW "
     "RegSetValueExW RegSetValueW"},
    {"gdi32.dll",
     "CreateFontIndirectW DeleteDC DeleteObject GetDeviceCaps GetTextExtentPoint32W GetTextMetricsW "
     "SelectObject"},
    {"imm32.dll", "ImmAssociateContext"},
    {"kernel32.dll",
     "AddVectoredExceptionHandler CloseHandle CreateEventA CreateSemaphoreA DeleteCriticalSection "
     "DisableThreadLibraryCalls DuplicateHandle EnterCriticalSection FileTimeToSystemTime "
     "FindResourceW FlsAlloc FlsFree FlsGetValue FlsSetValue FormatMessageA GetCurrentProcess "
     "GetCurrentProcessId GetCurrentThread GetCurrentThreadId GetHandleInformation GetLastError "
     "GetModuleFileNameW GetModuleHandleA GetModuleHandleW GetProcAddress GetProcessAffinityMask "
     "GetProcessHeap GetProcessTimes GetSystemTimeAdjustment GetSystemTimeAsFileTime GetThreadContext "
     "GetThreadPriority GetThreadTimes GetTickCount64 HeapAlloc HeapFree InitializeCriticalSection "
     "InitializeCriticalSectionEx IsDBCSLeadByteEx IsDebuggerPresent LeaveCriticalSection "
     "LoadLibraryExA LoadLibraryExW LoadLibraryW LoadResource LocalFree LockResource MulDiv "
     "MultiByteToWideChar OpenProcess OutputDebugStringA QueryPerformanceCounter "
     "QueryPerformanceFrequency RaiseException ReleaseSemaphore RemoveVectoredExceptionHandler "
     "ResetEvent ResumeThread RtlCaptureContext RtlLookupFunctionEntry RtlUnwindEx RtlVirtualUnwind "
     "SetEvent SetLastError SetProcessAffinityMask SetSystemTime SetThreadContext SetThreadPriority "
     "SizeofResource Sleep SuspendThread TlsAlloc TlsGetValue TlsSetValue TryEnterCriticalSection "
     "VirtualProtect VirtualQuery WaitForMultipleObjects WaitForSingleObject WideCharToMultiByte "
     "WriteConsoleW __C_specific_handler"},
    {"msvcrt.dll",
     "___lc_codepage_func ___mb_cur_max_func __iob_func __setusermatherr _amsg_exit _beginthreadex "
     "_close _endthreadex _errno _filelengthi64 _fileno _get_osfhandle _initterm _isatty _lock _read "
     "_setjmp _strdup _ultoa _unlock _wfopen _write abort acos asin atan calloc exit fclose ferror "
     "fflush fgetpos fopen fprintf fputc fread free fsetpos fwrite localeconv log10 longjmp malloc "
     "memchr memcmp memcpy memmove memset printf realloc signal strcmp strerror strlen strncmp tan "
     "vfprintf wcslen"},
    {"ole32.dll", "CoCreateInstance CoTaskMemAlloc"},
    {"user32.dll",
     "BeginPaint CallWindowProcW CreateDialogParamW CreateWindowExW DefWindowProcW DestroyWindow "
     "EnableWindow EndPaint GetAncestor GetClassInfoExW GetClassLongPtrW GetDC GetDlgItem GetFocus "
     "GetParent GetSysColor GetWindow GetWindowLongPtrW GetWindowTextLengthW GetWindowTextW "
     "GetWindowThreadProcessId InvalidateRect IsChild IsDialogMessageW IsWindow IsWindowVisible "
     "KillTimer LoadStringW MessageBoxW MoveWindow PeekMessageW PostMessageW PostQuitMessage "
     "RedrawWindow RegisterClassExW SendMessageTimeoutW SendMessageW SetFocus SetParent SetTimer "
     "SetWindowLongPtrW SetWindowTextW ShowWindow UnregisterClassW WinHelpW"},
};

class ServerTest : public testing::Test {
protected:
    ~ServerTest() override { EXPECT_EQ(server_.CanUnloadNow(), S_OK); }

    PageServer server_;
};

// The loaded image, as the linker of the platform sees it.
class Image {
public:
    explicit Image(HMODULE module) : base_(reinterpret_cast<const char*>(module)) {}

    [[nodiscard]] std::set<std::string> Exports() const {
        const auto& directory = *At<IMAGE_EXPORT_DIRECTORY>(Directory(IMAGE_DIRECTORY_ENTRY_EXPORT));
        // One of the linkers leaves the first place empty.
        const auto* const functions = At<DWORD>(directory.AddressOfFunctions);
        const auto unused = std::count(functions, functions + directory.NumberOfFunctions, DWORD{0});
        EXPECT_EQ(directory.NumberOfFunctions - static_cast<DWORD>(unused), directory.NumberOfNames)
            << "exports without a name";
        std::set<std::string> names;
        const auto* const list = At<DWORD>(directory.AddressOfNames);
        for (DWORD i = 0; i < directory.NumberOfNames; ++i) names.insert(At<char>(list[i]));
        return names;
    }
    // The functions by the libraries that they come from.
    [[nodiscard]] std::map<std::string, std::set<std::string>> Imports() const {
        std::map<std::string, std::set<std::string>> functions;
        const auto* entry = At<IMAGE_IMPORT_DESCRIPTOR>(Directory(IMAGE_DIRECTORY_ENTRY_IMPORT));
        for (; entry->Name != 0; ++entry) {
            std::set<std::string>& names = functions[platform::lower(At<char>(entry->Name))];
            const auto* import = At<IMAGE_THUNK_DATA>(entry->OriginalFirstThunk);
            for (; import->u1.AddressOfData != 0; ++import) {
                EXPECT_FALSE(IMAGE_SNAP_BY_ORDINAL(import->u1.Ordinal)) << At<char>(entry->Name);
                names.insert(At<IMAGE_IMPORT_BY_NAME>(static_cast<DWORD>(import->u1.AddressOfData))->Name);
            }
        }
        return functions;
    }
    [[nodiscard]] const IMAGE_NT_HEADERS& Header() const {
        return *At<IMAGE_NT_HEADERS>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
    }
    [[nodiscard]] std::vector<IMAGE_SECTION_HEADER> Sections() const {
        constexpr DWORD optional_header = offsetof(IMAGE_NT_HEADERS, OptionalHeader);
        const auto header = static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew);
        const DWORD behind = header + optional_header + Header().FileHeader.SizeOfOptionalHeader;
        const auto* const first = At<IMAGE_SECTION_HEADER>(behind);
        return {first, first + Header().FileHeader.NumberOfSections};
    }
    [[nodiscard]] std::string_view Contents(const IMAGE_SECTION_HEADER& section) const {
        return {At<char>(section.VirtualAddress), section.Misc.VirtualSize};
    }
    [[nodiscard]] DWORD Directory(int index) const {
        return Header().OptionalHeader.DataDirectory[index].VirtualAddress;
    }

private:
    template <class Record>
    const Record* At(DWORD offset) const {
        return static_cast<const Record*>(static_cast<const void*>(base_ + offset));
    }
    const char* base_;
};

TEST_F(ServerTest, ExportsExactlyFourFunctions) {
    EXPECT_THAT(Image(server_.Module()).Exports(),
                testing::UnorderedElementsAre("DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer",
                                              "DllUnregisterServer"));
}

TEST_F(ServerTest, CallsKnownFunctionsOfThePlatformOnly) {
    for (const auto& [library, functions] : test_support::NotEmpty(Image(server_.Module()).Imports())) {
        const auto known = known_imports.find(library);
        ASSERT_NE(known, known_imports.end()) << library;
        for (const std::string& function : test_support::NotEmpty(functions))
            EXPECT_THAT(" " + known->second + " ", testing::HasSubstr(" " + function + " ")) << library;
    }
}

// What the loader of the platform does for a module that asks for it.
TEST_F(ServerTest, AsksForRandomAddressesAndDataThatDoesNotRun) {
    const Image image(server_.Module());
    constexpr int wanted = IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE | IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA |
                           IMAGE_DLLCHARACTERISTICS_NX_COMPAT;
    EXPECT_EQ(image.Header().OptionalHeader.DllCharacteristics & wanted, wanted);
    EXPECT_NE(image.Directory(IMAGE_DIRECTORY_ENTRY_BASERELOC), 0u) << "without them it stays where it is";
    EXPECT_EQ(image.Header().FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED, 0);
    for (const IMAGE_SECTION_HEADER& section : test_support::NotEmpty(image.Sections())) {
        const bool is_written = (section.Characteristics & IMAGE_SCN_MEM_WRITE) != 0;
        const bool runs = (section.Characteristics & IMAGE_SCN_MEM_EXECUTE) != 0;
        EXPECT_FALSE(is_written && runs) << std::string(reinterpret_cast<const char*>(section.Name), 8);
    }
}

// How a function ends the process that finds its frame on the stack spoilt. The linker keeps it where one
// looks.
TEST_F(ServerTest, LooksForOverrunsOfTheStack) {
    const Image image(server_.Module());
    constexpr std::string_view ending("\xB9\x02\x00\x00\x00\xCD\x29", 7);
    bool is_there = false;
    for (const IMAGE_SECTION_HEADER& section : test_support::NotEmpty(image.Sections())) {
        const bool runs = (section.Characteristics & IMAGE_SCN_MEM_EXECUTE) != 0;
        if (runs && image.Contents(section).find(ending) != std::string_view::npos) is_there = true;
    }
    EXPECT_TRUE(is_there);
}

TEST(ServerLoadTest, IsRefusedWithoutAPlaceForTheStateOfExceptions) {
    std::vector<DWORD> taken;
    for (DWORD slot = FlsAlloc(nullptr); slot != FLS_OUT_OF_INDEXES; slot = FlsAlloc(nullptr)) {
        taken.push_back(slot);
    }
    const platform::library refused(LoadLibraryW(PageServer::Path().c_str()));
    const DWORD error = GetLastError();
    for (const DWORD slot : taken) FlsFree(slot);
    EXPECT_FALSE(taken.empty());
    EXPECT_FALSE(refused);
    EXPECT_EQ(error, static_cast<DWORD>(ERROR_DLL_INIT_FAILED));
    EXPECT_EQ(PageServer().CanUnloadNow(), S_OK) << "once there is one";
}

TEST_F(ServerTest, IsAtMostAMegabyte) {
    WIN32_FILE_ATTRIBUTE_DATA file{};
    ASSERT_TRUE(GetFileAttributesExW(PageServer::Path().c_str(), GetFileExInfoStandard, &file));
    EXPECT_EQ(file.nFileSizeHigh, 0u);
    EXPECT_LE(file.nFileSizeLow, 1024u * 1024u);
}

TEST_F(ServerTest, CarriesTheTitlesOfThePages) {
    const wchar_t* const titles[] = {L"Selvane Exposure Controls", L"Selvane Feature Controls",
                                     L"Selvane Lens Controls", L"Selvane Color Controls"};
    for (UINT id = 101; id <= 104; ++id) {
        wchar_t text[64] = {};
        LoadStringW(server_.Module(), id, text, 64);
        EXPECT_STREQ(text, titles[id - 101]);
    }
}

TEST_F(ServerTest, CarriesAnEmptyDialog) {
    const HRSRC found = FindResourceW(server_.Module(), MAKEINTRESOURCEW(105), RT_DIALOG);
    ASSERT_NE(found, nullptr);
    // Extended template: version, signature, help id, extended style, style, number of controls, position,
    // size.
    const auto* words = static_cast<const WORD*>(LockResource(LoadResource(server_.Module(), found)));
    EXPECT_EQ(words[0], 1);
    EXPECT_EQ(words[1], 0xFFFF);
    EXPECT_EQ(MAKELONG(words[4], words[5]), 0) << "extended style";
    EXPECT_EQ(MAKELONG(words[6], words[7]), 0x40000048) << "style";
    EXPECT_EQ(words[8], 0) << "controls";
    EXPECT_EQ(words[9], 0);
    EXPECT_EQ(words[10], 0);
    EXPECT_EQ(words[11], 285);
    EXPECT_EQ(words[12], 281);
    EXPECT_EQ(words[16], 8) << "points, behind no menu, no class and no title";
    EXPECT_STREQ(reinterpret_cast<const wchar_t*>(words + 19), L"MS Shell Dlg");
}

TEST_F(ServerTest, CarriesItsVersion) {
    EXPECT_NE(FindResourceW(server_.Module(), MAKEINTRESOURCEW(VS_VERSION_INFO), MAKEINTRESOURCEW(16)),
              nullptr);
}

TEST_F(ServerTest, HandsOutAFactoryForEachPage) {
    for (const CLSID& clsid : all_pages) {
        for (const IID& iid : {IID_IUnknown, IID_IClassFactory}) {
            IUnknown* factory = nullptr;
            EXPECT_EQ(server_.GetClassObject(clsid, iid, reinterpret_cast<void**>(&factory)), S_OK);
            ASSERT_NE(factory, nullptr);
            EXPECT_EQ(server_.CanUnloadNow(), S_FALSE);
            EXPECT_EQ(factory->Release(), 0u);
            EXPECT_EQ(server_.CanUnloadNow(), S_OK);
        }
    }
}

TEST_F(ServerTest, AnotherInterfaceIsRefusedBeforeTheClassIsLookedAt) {
    void* out = nullptr;
    EXPECT_EQ(server_.GetClassObject(exposure_page, IID_IPropertyPage, &out), E_NOINTERFACE);
    EXPECT_EQ(server_.GetClassObject(unknown_class, IID_IPropertyPage, &out), E_NOINTERFACE);
    EXPECT_EQ(server_.GetClassObject(unknown_class, IID_IClassFactory, &out), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(server_.GetClassObject(unknown_class, IID_IUnknown, &out), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(server_.GetClassObject(CLSID_NULL, IID_IUnknown, &out), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(server_.GetClassObject(exposure_page, IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ServerTest, AFactoryAnswersForItsTwoInterfaces) {
    const auto factory = server_.Factory(lens_page);
    void* out = &out;
    EXPECT_EQ(factory->QueryInterface(IID_IPropertyPage, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr) << "cleared";
    EXPECT_EQ(factory->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    for (const IID& iid : {IID_IUnknown, IID_IClassFactory}) {
        EXPECT_EQ(factory->QueryInterface(iid, &out), S_OK);
        EXPECT_EQ(out, factory.get());
        EXPECT_EQ(factory->Release(), 1u);
    }
    EXPECT_EQ(factory->AddRef(), 2u);
    EXPECT_EQ(factory->Release(), 1u);
}

TEST_F(ServerTest, LocksKeepTheServer) {
    auto factory = server_.Factory(exposure_page);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    EXPECT_EQ(factory->LockServer(FALSE), S_OK);
    factory.reset();
    EXPECT_EQ(server_.CanUnloadNow(), S_FALSE);
    server_.Factory(color_page)->LockServer(FALSE);
    EXPECT_EQ(server_.CanUnloadNow(), S_OK);
}

TEST_F(ServerTest, APageKeepsTheServer) {
    auto page = server_.MakePage(exposure_page);
    ASSERT_TRUE(page);
    EXPECT_EQ(server_.CanUnloadNow(), S_FALSE);
    EXPECT_EQ(ReferencesOf(*page.get()), 1u);
    page.reset();
    EXPECT_EQ(server_.CanUnloadNow(), S_OK);
}

TEST_F(ServerTest, CreateInstanceChecksItsArguments) {
    const auto factory = server_.Factory(exposure_page);
    Outer outer;
    void* out = nullptr;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(factory->CreateInstance(&outer, IID_IClassFactory, &out), E_NOINTERFACE);
    EXPECT_EQ(factory->CreateInstance(&outer, IID_IPropertyPage, &out), E_NOINTERFACE);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IClassFactory, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(outer.references, 0);
}

TEST_F(ServerTest, APageAnswersForIUnknownAndIPropertyPage) {
    const auto page = server_.MakePage(feature_page);
    platform::com_ptr<IUnknown> identity;
    EXPECT_EQ(page->QueryInterface(IID_IUnknown, identity.put_void()), S_OK);
    platform::com_ptr<IUnknown> again;
    EXPECT_EQ(identity->QueryInterface(IID_IUnknown, again.put_void()), S_OK);
    EXPECT_EQ(identity.get(), again.get());
    platform::com_ptr<IPropertyPage> back;
    EXPECT_EQ(identity->QueryInterface(IID_IPropertyPage, back.put_void()), S_OK);
    EXPECT_EQ(back.get(), page.get());
    EXPECT_EQ(ReferencesOf(*page.get()), 4u) << "one count for all interfaces";
    void* out = &out;
    EXPECT_EQ(page->QueryInterface(IID_IClassFactory, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(page->QueryInterface(IID_IPropertyPage, nullptr), E_POINTER);
    EXPECT_EQ(page->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ServerTest, TheZeroIdSucceedsAndWritesNothing) {
    const auto page = server_.MakePage(feature_page);
    void* out = &out;
    EXPECT_EQ(page->QueryInterface(IID_NULL, &out), S_OK);
    EXPECT_EQ(out, &out);
    EXPECT_EQ(page->QueryInterface(IID_NULL, nullptr), S_OK);
    EXPECT_EQ(ReferencesOf(*page.get()), 1u);
    EXPECT_EQ(server_.Factory(feature_page)->CreateInstance(nullptr, IID_NULL, &out), S_OK);
    EXPECT_EQ(out, &out);
}

TEST_F(ServerTest, APageCanBeAggregated) {
    Outer outer;
    ASSERT_EQ(server_.Factory(exposure_page)->CreateInstance(&outer, IID_IUnknown, outer.inner.put_void()),
              S_OK);
    EXPECT_EQ(outer.references, 0) << "the inner object holds no reference of its outer";
    platform::com_ptr<IPropertyPage> page;
    ASSERT_EQ(outer.QueryInterface(IID_IPropertyPage, page.put_void()), S_OK);
    EXPECT_EQ(outer.references, 1) << "counted by the outer object";
    platform::com_ptr<IUnknown> identity;
    EXPECT_EQ(page->QueryInterface(IID_IUnknown, identity.put_void()), S_OK);
    EXPECT_EQ(identity.get(), &outer);
    platform::com_ptr<IUnknown> own;
    EXPECT_EQ(page->QueryInterface(Outer::own_interface, own.put_void()), S_OK);
    EXPECT_EQ(own.get(), &outer);
    platform::com_ptr<IUnknown> inner;
    EXPECT_EQ(outer.inner->QueryInterface(IID_IUnknown, inner.put_void()), S_OK);
    EXPECT_EQ(inner.get(), outer.inner.get()) << "the inner identity is its own";
    inner.reset();
    own.reset();
    identity.reset();
    page.reset();
    EXPECT_EQ(outer.references, 0);
    EXPECT_EQ(server_.CanUnloadNow(), S_FALSE);
    outer.inner.reset();
    EXPECT_EQ(server_.CanUnloadNow(), S_OK);
}

/// The registry's classes stand under a key of the test.
class ServerRegistryTest : public ServerTest {
protected:
    ServerRegistryTest() {
        RegDeleteTreeW(HKEY_CURRENT_USER, root);
        RegCreateKeyW(HKEY_CURRENT_USER, root, classes_.put());
        RegOverridePredefKey(HKEY_CLASSES_ROOT, classes_.get());
    }
    ~ServerRegistryTest() override {
        RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        classes_.reset();
        RegDeleteTreeW(HKEY_CURRENT_USER, root);
    }

    [[nodiscard]] std::wstring Value(const std::wstring& path, const wchar_t* name) const {
        wchar_t text[600] = {};
        DWORD size = sizeof text;
        const LSTATUS status =
            RegGetValueW(classes_.get(), path.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size);
        return status == ERROR_SUCCESS ? text : L"(none)";
    }
    [[nodiscard]] DWORD SubkeysOf(const wchar_t* path) const {
        platform::registry_key key;
        DWORD count = 0;
        if (RegOpenKeyExW(classes_.get(), path, 0, KEY_READ, key.put()) != ERROR_SUCCESS) return 0;
        RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr, nullptr,
                         nullptr, nullptr, nullptr);
        return count;
    }
    void ExpectRegistered(const wchar_t* clsid, const wchar_t* name) const {
        const std::wstring key = std::wstring(L"CLSID\\") + clsid;
        EXPECT_EQ(Value(key, nullptr), name);
        EXPECT_EQ(Value(key + L"\\InprocServer32", nullptr), PageServer::Path());
        EXPECT_EQ(Value(key + L"\\InprocServer32", L"ThreadingModel"), L"Both");
    }
    void ExpectAllRegistered() const {
        EXPECT_EQ(SubkeysOf(L"CLSID"), 4u);
        ExpectRegistered(L"{01F8BA96-06C1-4888-B9FF-8B60F3A1221A}", L"Selvane Exposure Controls");
        ExpectRegistered(L"{01F8BA96-06C1-4888-B9FF-8B60F3A1221B}", L"Selvane Feature Controls");
        ExpectRegistered(L"{C423731D-D4C5-41EE-B17D-A311A7B27DEC}", L"Selvane Lens Controls");
        ExpectRegistered(L"{A522337D-5324-4123-9DA4-84D17EF1EADA}", L"Selvane Color Controls");
    }

    static constexpr wchar_t root[] = L"Software\\SelvanePageContractTest";
    platform::registry_key classes_;
};

TEST_F(ServerRegistryTest, RegistersItsFourClassesAnyNumberOfTimes) {
    EXPECT_EQ(server_.Register(), S_OK);
    ExpectAllRegistered();
    EXPECT_EQ(server_.Register(), S_OK);
    ExpectAllRegistered();
}

TEST_F(ServerRegistryTest, UnregisteringTakesItsClassesAndNoOther) {
    platform::registry_key other;
    RegCreateKeyW(classes_.get(), L"CLSID\\{00000000-0000-0000-0000-000000000001}", other.put());
    other.reset();
    EXPECT_EQ(server_.Register(), S_OK);
    EXPECT_EQ(SubkeysOf(L"CLSID"), 5u);
    EXPECT_EQ(server_.Unregister(), S_OK);
    EXPECT_EQ(SubkeysOf(L"CLSID"), 1u);
}

TEST_F(ServerRegistryTest, UnregisteringOnACleanRegistryIsFine) {
    EXPECT_EQ(server_.Unregister(), S_OK);
    EXPECT_EQ(SubkeysOf(L"CLSID"), 0u);
    EXPECT_EQ(server_.Unregister(), S_OK);
}

TEST_F(ServerRegistryTest, ARegistryErrorIsTheAnswer) {
    platform::registry_key poor;
    ASSERT_EQ(RegCreateKeyExW(classes_.get(), L"volatile", 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                              nullptr, poor.put(), nullptr),
              ERROR_SUCCESS);
    RegOverridePredefKey(HKEY_CLASSES_ROOT, poor.get());
    EXPECT_EQ(server_.Register(), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
}

}  // namespace
}  // namespace page_test
