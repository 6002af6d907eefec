#include "apps/inspect/value_session.h"

#include "apps/inspect/camera/camera_call.h"
#include "apps/inspect/feature_writer.h"

#include <nlohmann/json.hpp>

namespace selvane_inspect {

value_session::value_session(const description_options& options)
    : actual_(open(options)), twin_(open(options)), guard_(*twin_), reader_(guard_) {
    live_camera* const camera = camera_behind(options.file);
    if (camera != nullptr) twin_->port().lead_to(shield_.emplace(*camera));
}

feature_state value_session::read(GenICam::INode& feature) {
    feature_state state;
    state.node = &feature;
    state.kind = feature.get_node_type();
    state.name = feature.get_name();
    state.access = reader_.access_state(feature);
    state.unit = reader_.read_unit(feature);
    if (feature.get_node_type() == GenICam::node_type::integer &&
        guard_.find(feature, operation::unit) == nullptr) {
        state.style = style_of(static_cast<GenICam::IInteger&>(feature).get_representation());
    }
    static_cast<void>(actual_->port().take());
    state.value = reader_.read_value(feature);
    accesses_ = actual_->port().take();
    reader_.explain(twin_of(feature), state.value);
    return state;
}

GenICam::INode& value_session::twin_of(GenICam::INode& feature) const {
    return *twin_->node_of(*twin_->tree().find(feature));
}

void value_session::write(const std::string& name, GenICam::INode& feature, std::string_view text) {
    const auto refuse = [this](const hazard* found) {
        if (found != nullptr) throw refused(guard_.describe(*found));
    };
    GenICam::INode& twin = twin_of(feature);
    try {
        refuse(guard_.find(twin, operation::store));
        const feature_write write(twin, text);
        refuse(guard_.find_in_store(twin, [&] { static_cast<void>(write.carry_out(twin)); }));
        static_cast<void>(actual_->port().take());
        const std::error_code failure = write.carry_out(feature);
        accesses_ = actual_->port().take();
        if (failure) throw refused(failure.message());
        if (shield_) shield_->forget();
    } catch (const inspect_error& failure) {
        throw inspect_error(failure.code(), name + ": " + failure.what());
    }
}

std::string trace_text(const std::vector<port_access>& accesses) {
    std::string lines;
    for (const port_access& access : accesses) lines += "    " + access_text(access) + "\n";
    return lines;
}

nlohmann::ordered_json trace_json(const std::vector<port_access>& accesses) {
    auto json = nlohmann::ordered_json::array();
    for (const port_access& access : accesses) {
        nlohmann::ordered_json line = {{"access", access.is_write ? "write" : "read"},
                                       {"address", address_text(access.address)},
                                       {"bytes", bytes_text(access.data)}};
        if (access.failure) line["error"] = access.failure.message();
        if (access.took) line["microseconds"] = microseconds(*access.took);
        json.push_back(std::move(line));
    }
    return json;
}

}  // namespace selvane_inspect
