#include "apps/inspect/commands.h"
#include "apps/inspect/value_session.h"

#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {}  // namespace

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

}  // namespace selvane_inspect
