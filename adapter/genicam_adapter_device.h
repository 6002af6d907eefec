#pragma once

#include "adapter/hr_exception.h"
#include "genicam/genicam_doc.h"
#include "genicam/idevice_port.h"
#include "items/item_contract.h"
#include "platform/com_ptr.h"

#include <cstdint>
#include <list>
#include <memory>
#include <system_error>
#include <vector>

namespace genicam_adapter {

struct item_definition;

/// Whether the filter serves the device kind that this adapter works with. Asks the gate property set.
[[nodiscard]] bool is_adapter_device(IKsPropertySet* filter);

/// A camera as the pages reach it: owns the documents of its descriptions, is the device behind their
/// "Device" ports, and holds the table of the items that the descriptions mark. Used on the page's thread
/// only.
class GenICamAdapterDevice : public GenICam::IDevicePort {
public:
    /// Takes a reference to the filter. Throws `hr_exception` "Failed to access GenICam data" when the driver
    /// serves neither register access nor named access.
    explicit GenICamAdapterDevice(IKsPropertySet* filter);
    GenICamAdapterDevice(const GenICamAdapterDevice&) = delete;
    GenICamAdapterDevice& operator=(const GenICamAdapterDevice&) = delete;
    ~GenICamAdapterDevice() override;

    [[nodiscard]] std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                                       std::uint32_t flags) override;
    [[nodiscard]] std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                                        std::uint32_t flags) override;

    /// Fetches every description that the driver offers and appends its document. Throws `hr_exception`
    /// "Failed to parse GenICam data" at a malformed one; those before it stay.
    void fetch_descriptions();

    /// The items of the descriptions, fetched on first use and again as long as there are none. The records
    /// live as long as the adapter. A call from within one of the driver's answers to another call gets the
    /// table as it is then: empty. Throws `hr_exception`.
    [[nodiscard]] const std::vector<ZELAdapterHelper::ItemRecord>& get_item_table();

    [[nodiscard]] const std::vector<std::shared_ptr<GenICam::IGenICamDoc>>& get_documents() const noexcept {
        return documents_;
    }
    [[nodiscard]] bool has_register_access() const noexcept { return register_access_; }
    [[nodiscard]] bool has_named_access() const noexcept { return named_access_; }

private:
    void build_table();

    std::vector<std::shared_ptr<GenICam::IGenICamDoc>> documents_;
    platform::com_ptr<IKsPropertySet> filter_;
    bool register_access_ = false;
    bool named_access_ = false;
    bool makes_table_ = false;
    std::list<item_definition> definitions_;
    std::vector<ZELAdapterHelper::ItemRecord> table_;
};

}  // namespace genicam_adapter
