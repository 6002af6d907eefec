#include "adapter/genicam_adapter_device.h"

#include "adapter/device_property.h"
#include "adapter/interface_key.h"
#include "adapter/item_discovery.h"
#include "adapter/propdata_named.h"
#include "adapter/propdata_portbased.h"
#include "adapter/zeroed_buffer.h"

#include <gsl/util>

#include <optional>
#include <utility>

namespace genicam_adapter {
namespace {

bool is_property_supported(IKsPropertySet* filter, DWORD property) {
    DWORD support = 0;
    return SUCCEEDED(filter->QuerySupported(wire::device_set, property, &support)) && support != 0;
}

// The answer to one request for a description's size; false where the driver refuses the request.
bool ask_size(IKsPropertySet* filter, wire::description_request& request, std::uint32_t& size,
              DWORD& returned) {
    size = 0;
    returned = 0;
    return SUCCEEDED(filter->Get(wire::device_set, SELVANE_DESCRIPTION_SIZE, &request, sizeof(request), &size,
                                 sizeof(size), &returned));
}

// The size of a description, and in the request the first field that the driver took. Nothing ends the list.
std::optional<std::uint32_t> find_size(IKsPropertySet* filter, wire::description_request& request) {
    std::uint32_t size = 0;
    DWORD returned = 0;
    if (!ask_size(filter, request, size, returned)) {
        if (request.index != 0) return std::nullopt;
        request.first_field = 0;
        if (!ask_size(filter, request, size, returned)) return std::nullopt;
    }
    if (returned != sizeof(size)) return std::nullopt;
    return size;
}

// The text of a description, zero behind what the driver wrote of it; null ends the list.
zeroed_buffer fetch_text(IKsPropertySet* filter, wire::description_request& request, std::uint32_t size) {
    zeroed_buffer text = make_zeroed_buffer(size);
    if (text == nullptr) return nullptr;
    DWORD returned = 0;
    const HRESULT hr = filter->Get(wire::device_set, SELVANE_DESCRIPTION_DATA, &request, sizeof(request),
                                   text.get(), size, &returned);
    if (FAILED(hr) || returned > size) return nullptr;
    return text;
}

std::shared_ptr<GenICam::IGenICamDoc> load_document(const char* text, std::uint32_t size) {
    GenICam::load_options options;
    options.reserved_option = true;
    options.keep_debug_properties = true;
    std::shared_ptr<GenICam::IGenICamDoc> document(GenICam::load_genicam_doc(text, size, options));
    if (document == nullptr) throw hr_exception("Failed to parse GenICam data");
    return document;
}

}  // namespace

bool is_adapter_device(IKsPropertySet* filter) {
    DWORD support = 0;
    if (filter == nullptr ||
        FAILED(filter->QuerySupported(wire::gate_set, SELVANE_GATE_PROPERTY, &support))) {
        return false;
    }
    if ((support & 1U) == 0) return false;
    wire::device_kind_query block = {};
    DWORD returned = 0;
    const HRESULT hr = filter->Get(wire::gate_set, SELVANE_GATE_PROPERTY, &block, sizeof(block), &block,
                                   sizeof(block), &returned);
    return SUCCEEDED(hr) && returned >= sizeof(block) && block.device_kind == SELVANE_DEVICE_KIND;
}

GenICamAdapterDevice::GenICamAdapterDevice(IKsPropertySet* filter) : filter_(filter) {
    // The driver is asked in this order, which is not that of the members.
    // NOLINTBEGIN(cppcoreguidelines-prefer-member-initializer)
    named_access_ = is_property_supported(filter, SELVANE_NAMED_ACCESS);
    register_access_ = is_property_supported(filter, SELVANE_REGISTER_ACCESS);
    // NOLINTEND(cppcoreguidelines-prefer-member-initializer)
    if (!named_access_ && !register_access_) throw hr_exception("Failed to access GenICam data");
}

// The members go in the order that their owners need: the table and what it points into, the filter, and last
// the documents, whose ports are bound to this object.
GenICamAdapterDevice::~GenICamAdapterDevice() = default;

std::error_code GenICamAdapterDevice::read(std::uint64_t address, void* buffer, std::int64_t length,
                                           std::uint32_t) {
    DWORD returned = 0;
    return GenICam::from_hresult(filter_->Get(wire::device_set, SELVANE_REGISTER_ACCESS, &address,
                                              sizeof(address), buffer, static_cast<DWORD>(length),
                                              &returned));
}

std::error_code GenICamAdapterDevice::write(std::uint64_t address, const void* buffer, std::int64_t length,
                                            std::uint32_t) {
    return GenICam::from_hresult(set_device_property(*filter_, SELVANE_REGISTER_ACCESS, &address,
                                                     sizeof(address), buffer, static_cast<DWORD>(length)));
}

void GenICamAdapterDevice::fetch_descriptions() {
    for (std::uint32_t index = 0;; ++index) {
        wire::description_request request = {1, index};
        const std::optional<std::uint32_t> size = find_size(filter_.get(), request);
        if (!size) return;
        const zeroed_buffer text = fetch_text(filter_.get(), request, *size);
        if (text == nullptr) return;
        std::shared_ptr<GenICam::IGenICamDoc> document = load_document(text.get(), *size);
        if (auto* const port = node_as<GenICam::IPort>(document->find_port("Device"))) port->bind(this);
        documents_.push_back(std::move(document));
    }
}

// A driver that runs messages while it answers may bring the page's host, and with it the page, back in here.
const std::vector<ZELAdapterHelper::ItemRecord>& GenICamAdapterDevice::get_item_table() {
    if (table_.empty() && !makes_table_) {
        makes_table_ = true;
        const auto done = gsl::finally([this] { makes_table_ = false; });
        fetch_descriptions();
        build_table();
    }
    return table_;
}

// Takes effect as a whole: an exception on the way leaves no half of a table behind. The walk is over
// documents of its own, since every question to the driver may end in here again.
void GenICamAdapterDevice::build_table() {
    std::list<item_definition> definitions;
    const std::vector<std::shared_ptr<GenICam::IGenICamDoc>> documents = documents_;
    for (const auto& document : documents) {
        append_definitions(*document, filter_.get(), named_access_, definitions);
    }
    std::vector<ZELAdapterHelper::ItemRecord> table;
    for (const item_definition& definition : definitions) {
        table.push_back(definition.record);
        table.back().factory = named_access_ ? make_genicam_propdata_named : make_genicam_propdata_portbased;
    }
    definitions_.swap(definitions);
    table_.swap(table);
}

}  // namespace genicam_adapter
