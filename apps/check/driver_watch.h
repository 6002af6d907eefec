#pragma once

#include "apps/check/finding_book.h"
#include "simcam/driver_behind.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>

namespace selvane_check {

/// Stands before a driver as a filter of its own, hands every call on, and notes what is wrong with the
/// answers to named and register access, what took too long, and what threw; an exception becomes
/// E_UNEXPECTED. Lives where it was made: counting its references does nothing.
class driver_watch final : public IUnknown {
public:
    driver_watch(IUnknown& driver, finding_book& findings, std::function<std::uint64_t()> clock);
    driver_watch(const driver_watch&) = delete;
    driver_watch& operator=(const driver_watch&) = delete;
    ~driver_watch() = default;

    /// Without a reference; null for a driver without that interface.
    [[nodiscard]] IKsPropertySet* property_set() noexcept;
    [[nodiscard]] bool has_camera_control() const noexcept;
    [[nodiscard]] std::uint64_t calls() const noexcept { return calls_; }
    /// What the driver last named as the selected entry of an enumeration; null for one that it was not asked
    /// of, or refused.
    [[nodiscard]] const std::string* selected_entry(const std::string& enumeration) const;

    /// What the registers are read for from now on, told of an address in parentheses. Empty: for something
    /// that pages can do without, so that a refusal is none to tell.
    void attend(std::function<std::string(std::uint64_t)> purpose) { purpose_ = std::move(purpose); }
    /// Whether the driver is seen to offer named access, if it does.
    void show_named_access(bool shown) noexcept { names_shown_ = shown; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    // What the interfaces ask; the first three only of a driver with a property set.
    HRESULT query(REFGUID set, DWORD id, DWORD* support);
    HRESULT get(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data, DWORD data_size,
                DWORD* returned);
    HRESULT set(REFGUID set, DWORD id, void* instance, DWORD instance_size, void* data, DWORD data_size);
    HRESULT control_range(simcam::call_kind kind, LONG property, const simcam::range_outputs& out);
    HRESULT control_get(simcam::call_kind kind, LONG property, LONG* value, LONG* flags);
    HRESULT control_set(simcam::call_kind kind, LONG property, LONG value, LONG flags);

private:
    template <class Work>
    HRESULT run(const simcam::driver_call& call, Work work);
    template <class Work>
    HRESULT run_control(simcam::call_kind kind, LONG property, Work work);
    void judge_named(const std::string& path, HRESULT result, const char* data, DWORD size, DWORD returned);
    void judge_register(std::uint64_t address, HRESULT result, DWORD size, DWORD returned);

    IUnknown& driver_;
    simcam::driver_behind behind_;
    simcam::driver_faces<driver_watch> faces_;
    finding_book& findings_;
    std::function<std::uint64_t()> clock_;
    std::uint64_t calls_ = 0;
    std::map<std::string, std::string> selected_;
    bool names_shown_ = true;
    std::function<std::string(std::uint64_t)> purpose_;
    std::map<std::uint64_t, std::string> purposes_;  // as last told, by address
};

}  // namespace selvane_check
