#include "apps/inspect/camera/camera_call.h"
#include "apps/inspect/commands.h"
#include "apps/inspect/value_session.h"

#include <utility>

#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

struct assignment {
    std::string name;
    std::string value;
};

std::vector<assignment> split(const std::vector<std::string>& texts) {
    std::vector<assignment> split_texts;
    for (const std::string& text : texts) {
        const std::size_t at = text.find('=');
        if (at == std::string::npos || at == 0) throw wrong_use(text + " is no assignment: FEATURE=VALUE");
        split_texts.push_back({text.substr(0, at), text.substr(at + 1)});
    }
    return split_texts;
}

std::vector<std::string> names_of(const std::vector<assignment>& assignments) {
    std::vector<std::string> names;
    for (const assignment& one : assignments) names.push_back(one.name);
    return names;
}

// What stands there now is what counts, where it can be read.
std::string written_text(const feature_state& state) {
    if (state.kind == GenICam::node_type::command) return state.name + " executed";
    if (state.value.value) return assignment_text(state);
    return state.name + " written (it cannot be read: " + state.value.failure + ")";
}

nlohmann::ordered_json begin_answer(const char* command, const description_options& input) {
    return {{"command", command}, {"file", input.file}, {"features", nlohmann::ordered_json::array()}};
}

// A feature as it is now, and what was done at the registers.
void add_answer(nlohmann::ordered_json& json, const feature_state& state, bool trace,
                const std::vector<port_access>& accesses) {
    nlohmann::ordered_json one = to_json(state);
    if (trace) one["trace"] = trace_json(accesses);
    json["features"].push_back(std::move(one));
}

}  // namespace

int get(const get_options& options, const channels& to) {
    value_session session(options.input);
    nlohmann::ordered_json json = begin_answer("get", options.input);
    int code = exit_code::fine;
    for (GenICam::INode* feature : find_features(session.actual(), options.features)) {
        const feature_state state = session.read(*feature);
        if (!state.value.value) {
            code = exit_code::findings;
            write_error(to.err, state.name + ": " + state.value.failure);
        }
        add_answer(json, state, options.trace, session.accesses());
        if (to.json) continue;
        if (state.value.value) write_line(to.out, assignment_text(state));
        if (options.trace) to.out << trace_text(session.accesses());
    }
    if (to.json) write_json(to.out, json);
    return code;
}

// All names are looked at before anything is written; a write that is refused ends the command, and nothing
// is saved.
int set(const set_options& options, const channels& to) {
    const std::vector<assignment> assignments = split(options.assignments);
    value_session session(options.input);
    if (!options.save.empty() && session.actual().port().is_live())
        throw wrong_use("--save is for files: a camera keeps its registers");
    const std::vector<GenICam::INode*> features = find_features(session.actual(), names_of(assignments));
    const camera_control control(options.input.file);
    nlohmann::ordered_json json = begin_answer("set", options.input);
    for (std::size_t at = 0; at < features.size(); ++at) {
        session.write(assignments[at].name, *features[at], assignments[at].value);
        const std::vector<port_access> accesses = session.accesses();
        const feature_state state = session.read(*features[at]);
        add_answer(json, state, options.trace, accesses);
        if (to.json) continue;
        write_line(to.out, written_text(state));
        if (options.trace) to.out << trace_text(accesses);
    }
    if (!options.save.empty()) save_memory(options.save, options.input.memory, session.actual().memory());
    if (to.json) write_json(to.out, json);
    return exit_code::fine;
}

}  // namespace selvane_inspect
