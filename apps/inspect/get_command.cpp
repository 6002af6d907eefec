#include "apps/inspect/command.h"
#include "apps/inspect/value_session.h"

#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

struct get_options {
    description_options input;
    std::vector<std::string> features;
    bool trace = false;
};

int get(const get_options& options, const channels& to) {
    value_session session(options.input);
    nlohmann::ordered_json json = {{"command", "get"}, {"file", options.input.file}};
    json["features"] = nlohmann::ordered_json::array();
    int code = exit_code::fine;
    for (GenICam::INode* feature : find_features(session.actual(), options.features)) {
        const feature_state state = session.read(*feature);
        if (!state.value.value) {
            code = exit_code::findings;
            write_error(to.err, state.name + ": " + state.value.failure);
        }
        nlohmann::ordered_json one = to_json(state);
        if (options.trace) one["trace"] = trace_json(session.accesses());
        json["features"].push_back(std::move(one));
        if (to.json) continue;
        if (state.value.value) write_line(to.out, assignment_text(state));
        if (options.trace) to.out << trace_text(session.accesses());
    }
    if (to.json) write_json(to.out, json);
    return code;
}

}  // namespace

void add_get(command_set& commands) {
    CLI::App* command = nullptr;
    get_options& options = commands.add("get", "The values of features over a register memory", get, command);
    add_description_options(*command, options.input);
    command->add_option("FEATURE", options.features, "Names of features")->required()->type_name("");
    command->add_flag("--trace", options.trace, "Show every access to the registers");
}

}  // namespace selvane_inspect
