#pragma once

#include "apps/check/finding_book.h"
#include "platform/com_ptr.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>

namespace selvane_check {

/// Stands before a driver's IKsPropertySet as a filter of its own, hands every call on, and notes what is
/// wrong with the answers to named and register access, what took too long, and what threw; an exception
/// becomes E_UNEXPECTED. Other interfaces are the driver's own. Lives where it was made: counting its
/// references does nothing.
class driver_watch final : public IKsPropertySet {
public:
    driver_watch(IUnknown& driver, finding_book& findings, std::function<std::uint64_t()> clock);
    driver_watch(const driver_watch&) = delete;
    driver_watch& operator=(const driver_watch&) = delete;
    ~driver_watch() = default;

    [[nodiscard]] bool has_property_set() const noexcept { return static_cast<bool>(property_set_); }
    [[nodiscard]] bool has_camera_control() const;
    [[nodiscard]] std::uint64_t calls() const noexcept { return calls_; }
    /// What the driver last named as the selected entry of an enumeration; null for one that it was not asked
    /// of, or refused.
    [[nodiscard]] const std::string* selected_entry(const std::string& enumeration) const;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE Set(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                                  DWORD data_size) override;
    HRESULT STDMETHODCALLTYPE Get(REFGUID set, DWORD id, LPVOID instance, DWORD instance_size, LPVOID data,
                                  DWORD data_size, DWORD* returned) override;
    HRESULT STDMETHODCALLTYPE QuerySupported(REFGUID set, DWORD id, DWORD* support) override;

private:
    template <class Work>
    HRESULT run(const std::string& what, Work work);
    void judge_named(const std::string& path, HRESULT result, const char* data, DWORD size, DWORD returned);

    IUnknown& driver_;
    finding_book& findings_;
    std::function<std::uint64_t()> clock_;
    platform::com_ptr<IKsPropertySet> property_set_;
    std::uint64_t calls_ = 0;
    std::map<std::string, std::string> selected_;
};

/// "0x80070490"
[[nodiscard]] std::string result_text(HRESULT result);

}  // namespace selvane_check
