#include "apps/inspect/camera/write_shield.h"
#include "apps/inspect/commands.h"
#include "apps/inspect/similar_name.h"
#include "inspection/camera/connected_camera.h"
#include "inspection/feature_reader.h"
#include "inspection/inspect_error.h"
#include "platform/text.h"

#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

using namespace GenICam;
using access_flags::none;

/// Writes a value to a feature of the kind that it was read for: that one, or its like in another description
/// of the same text.
using feature_write = std::function<std::error_code(INode&)>;

// Hexadecimal digits may say all 64 bits.
std::optional<std::int64_t> parse_integer(std::string_view text) {
    const bool is_negative = text.substr(0, 1) == "-";
    const std::string_view digits = is_negative ? text.substr(1) : text;
    const auto magnitude = parse_address(digits);
    if (!magnitude) return std::nullopt;
    constexpr auto greatest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const bool is_decimal = digits.find_first_of("xX") == std::string_view::npos;
    if (is_decimal && *magnitude > greatest + (is_negative ? 1 : 0)) return std::nullopt;
    return static_cast<std::int64_t>(is_negative ? 0 - *magnitude : *magnitude);
}

std::int64_t read_integer(std::string_view text) {
    const auto number = parse_integer(text);
    if (!number) throw wrong_use(std::string(text) + " is no integer");
    return *number;
}

double read_float(std::string_view text) {
    double number = 0;
    const std::size_t read = platform::read_double(text, number);
    if (read == 0 || read != text.size()) throw wrong_use(std::string(text) + " is no number");
    return number;
}

bool read_truth(std::string_view text) {
    const bool truth = text == "true" || text == "1";
    if (!truth && text != "false" && text != "0")
        throw wrong_use(std::string(text) + " is neither true nor false");
    return truth;
}

simcam::bytes read_bytes(std::string_view text) {
    const auto bytes = parse_bytes(text);
    if (!bytes) throw wrong_use(std::string(text) + " is no sequence of bytes in hexadecimal");
    return *bytes;
}

std::string read_entry(IEnumeration& feature, std::string_view text) {
    IEnumEntry* entry = feature.find_entry(text);
    if (entry == nullptr) {
        const auto number = parse_integer(text);
        if (number) entry = feature.find_entry(*number);
    }
    if (entry != nullptr) return std::string(entry->get_name());
    std::vector<std::string_view> known;
    for (const IEnumEntry* one : feature.get_entries()) known.push_back(one->get_name());
    throw wrong_use("no entry " + std::string(text) + did_you_mean(text, known));
}

// Reads a value from text: integers in decimal or behind 0x, floats, true and false or 1 and 0, entries by
// name or number, text as it is, 1 for a command, bytes in hexadecimal for a register. Throws
// `inspect_error` for anything else.
feature_write parse_write(INode& feature, std::string_view text) {
    switch (feature.get_node_type()) {
        case node_type::integer:
            return [number = read_integer(text)](INode& to) {
                return static_cast<IInteger&>(to).set_val(number, none);
            };
        case node_type::floating:
            return [number = read_float(text)](INode& to) {
                return static_cast<IFloat&>(to).set_val(number, none);
            };
        case node_type::boolean:
            return [truth = read_truth(text)](INode& to) {
                return static_cast<IBoolean&>(to).set_val(truth, none);
            };
        case node_type::enumeration:
            return [name = read_entry(static_cast<IEnumeration&>(feature), text)](INode& to) {
                auto& enumeration = static_cast<IEnumeration&>(to);
                return enumeration.set_selected_entry(enumeration.find_entry(std::string_view(name)), none);
            };
        case node_type::string:
            return [value = std::string(text)](INode& to) {
                return static_cast<IString&>(to).set_val(value, none);
            };
        case node_type::command:
            if (text != "1") throw wrong_use("a command is executed by the value 1");
            return [](INode& to) { return static_cast<ICommand&>(to).execute(none); };
        case node_type::register_block:
            return [bytes = read_bytes(text)](INode& to) {
                const auto size = static_cast<std::int64_t>(bytes.size());
                return static_cast<IRegister&>(to).write(bytes.data(), size, none);
            };
        default:
            throw wrong_use("a " + std::string(kind_word(feature.get_node_type())) + " has no value");
    }
}

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

/// A description to be read and written, and a twin of it in the same state in which every operation is
/// rehearsed. So what is seen at the registers is what the engine does by itself, with caches that nobody
/// else has filled.
class value_session {
public:
    explicit value_session(const description_options& options)
        : actual_(open(options)), twin_(open(options)), guard_(*twin_), reader_(guard_) {
        if (const connected_camera* const behind = connected_camera::behind(options.file))
            twin_->port().lead_to(shield_.emplace(behind->camera()));
    }

    [[nodiscard]] description& actual() noexcept { return *actual_; }

    /// Name, kind, access, value and unit of a feature.
    [[nodiscard]] feature_state read(INode& feature);
    /// Writes a value given as text. Throws `inspect_error` when it is none or refused.
    void write(const assignment& what, INode& feature);

    /// What the last read or write did at the registers.
    [[nodiscard]] std::vector<port_access> take_accesses() { return actual_->port().take(); }

private:
    [[nodiscard]] INode& twin_of(INode& feature) const {
        return *twin_->node_of(*twin_->tree().find(feature));
    }
    void require(const hazard* found) const {
        if (found != nullptr) throw refused(guard_.describe(*found));
    }

    std::unique_ptr<description> actual_;
    std::optional<write_shield> shield_;  // between the twin and a camera
    std::unique_ptr<description> twin_;
    evaluation_guard guard_;
    feature_reader reader_;
};

feature_state value_session::read(INode& feature) {
    feature_state state = reader_.begin(feature);
    reader_.add_unit(feature, state);
    static_cast<void>(take_accesses());
    state.value = reader_.read_value(feature);
    feature_reader::explain(twin_of(feature), state.value);
    return state;
}

void value_session::write(const assignment& what, INode& feature) {
    INode& twin = twin_of(feature);
    try {
        require(guard_.find(twin, operation::store));
        const feature_write write = parse_write(twin, what.value);
        require(guard_.find_in_store(twin, [&] { static_cast<void>(write(twin)); }));
        static_cast<void>(take_accesses());
        const std::error_code failure = write(feature);
        if (failure) throw refused(failure.message());
        if (shield_) shield_->forget();
    } catch (const inspect_error& failure) {
        throw inspect_error(failure.code(), what.name + ": " + failure.what());
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

// What stands there now is what counts, where it can be read.
std::string written_text(const feature_state& state) {
    if (state.kind == node_type::command) return state.name + " executed";
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
    for (INode* feature : find_features(session.actual(), options.features)) {
        const feature_state state = session.read(*feature);
        const std::vector<port_access> accesses = session.take_accesses();
        if (!state.value.value) {
            code = exit_code::findings;
            write_error(to.err, state.name + ": " + state.value.failure);
        }
        add_answer(json, state, options.trace, accesses);
        if (to.json) continue;
        if (state.value.value) write_line(to.out, assignment_text(state));
        if (options.trace) to.out << trace_text(accesses);
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
    std::vector<INode*> features;
    features.reserve(assignments.size());
    for (const assignment& one : assignments) features.push_back(find_feature(session.actual(), one.name));
    const camera_control control(options.input.file);
    nlohmann::ordered_json json = begin_answer("set", options.input);
    for (std::size_t at = 0; at < features.size(); ++at) {
        session.write(assignments[at], *features[at]);
        const std::vector<port_access> accesses = session.take_accesses();
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
