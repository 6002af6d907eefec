#include "apps/inspect/run.h"

#include "apps/inspect/camera/camera_call.h"
#include "apps/inspect/commands.h"
#include "apps/inspect/similar_name.h"
#include "inspection/inspect_error.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <memory>
#include <utility>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

namespace selvane_inspect {

/// The command line as the commands add to it.
class command_set {
public:
    using action = std::function<int(const channels&)>;

    explicit command_set(CLI::App& app) : app_(app) {}

    /// Adds a command, and gives it with its options, which live as long as the command line. `carry_out`
    /// gets them when the command is the one that was called.
    template <class Options>
    std::pair<CLI::App&, Options&> add(const char* name, const char* about,
                                       int (*carry_out)(const Options&, const channels&)) {
        const auto options = std::make_shared<Options>();
        CLI::App* const command = app_.add_subcommand(name, about);
        command->add_flag("--json", json_, "Print JSON");
        command->callback([this, options, carry_out] {
            chosen_ = [options, carry_out](const channels& to) { return carry_out(*options, to); };
        });
        return {*command, *options};
    }

    /// What was called; empty before the command line has been read.
    [[nodiscard]] const action& chosen() const noexcept { return chosen_; }
    [[nodiscard]] bool wants_json() const noexcept { return json_; }

private:
    CLI::App& app_;
    action chosen_;
    bool json_ = false;
};

namespace {

void add_memory_options(CLI::App& command, memory_options& options) {
    command
        .add_option(
            "--memory", options.images,
            "What the registers hold: an image of bytes as FILE@ADDRESS, or a FILE of lines \"address: "
            "contents\"; may be given again")
        ->type_name("FILE[@ADDRESS]")
        ->allow_extra_args(false);
    command
        .add_option("--register", options.registers,
                    "What a register holds, in hexadecimal; may be given again, and overrides --memory")
        ->type_name("ADDRESS=BYTES")
        ->allow_extra_args(false);
    command.add_flag("--defaults", options.defaults, "Begin with the defaults that features state");
}

void add_file(CLI::App& command, std::string& file) {
    command.add_option("FILE", file, "A device description")->required()->type_name("");
}

void add_description_options(CLI::App& command, description_options& options) {
    add_file(command, options.file);
    add_memory_options(command, options.memory);
}

}  // namespace

void add_info(command_set& commands) {
    const auto [command, options] =
        commands.add("info", "Header, counts by element and class, memory, load time", info);
    add_file(command, options.file);
}

void add_list(command_set& commands) {
    const auto [command, options] =
        commands.add("list", "The features in their tree, each with its value and range", list);
    add_description_options(command, options.input);
    command.add_flag("--all", options.all, "Also the nodes that the tree does not list");
    command
        .add_option("--visibility", options.visibility, "Leave out what is meant for users above this one")
        ->type_name("WORD")
        ->transform(CLI::IsMember(visibility_words(), CLI::ignore_case));
    command.footer("Access is RW, RO or WO; NI stands for not implemented, NA for not available.\n" +
                   command.get_footer());
}

void add_describe(command_set& commands) {
    const auto [command, options] = commands.add(
        "describe", "Everything about features: elements, where the value comes from, what depends on it",
        describe);
    add_description_options(command, options.input);
    command.add_option("FEATURE", options.features, "Names of features")->required()->type_name("");
}

void add_get(command_set& commands) {
    const auto [command, options] = commands.add("get", "The values of features over a register memory", get);
    add_description_options(command, options.input);
    command.add_option("FEATURE", options.features, "Names of features")->required()->type_name("");
    command.add_flag("--trace", options.trace, "Show every access to the registers");
}

void add_set(command_set& commands) {
    const auto [command, options] =
        commands.add("set", "Writes features over a register memory, one after the other", set);
    add_description_options(command, options.input);
    command.add_option("FEATURE=VALUE", options.assignments, "What to write; 1 executes a command")
        ->required()
        ->type_name("");
    command.add_flag("--trace", options.trace, "Show every access to the registers");
    command.add_option("--save", options.save, "Save the changed registers in a form that --memory takes")
        ->type_name("FILE[@ADDRESS]");
}

void add_eval(command_set& commands) {
    const auto [command, options] = commands.add("eval", "The result of a formula", eval);
    command.add_option("FORMULA", options.formula, "A formula; behind -- if it begins with two minuses")
        ->required()
        ->type_name("");
    command.add_option("NAME=VALUE", options.variables, "Variables; 5 is an integer and 5.0 a float")
        ->type_name("");
    command.add_flag("--explain", options.explain, "Show the postfix program and the stack behind each step");
}

void add_lint(command_set& commands) {
    const auto [command, options] =
        commands.add("lint", "What is wrong with descriptions, or will be regretted", lint);
    command.add_option("FILE", options.files, "Device descriptions")->type_name("");
    add_memory_options(command, options.memory);
    command.add_option("--only", options.only, "Only these rules")
        ->type_name("RULE")
        ->delimiter(',')
        ->allow_extra_args(false);
    command.add_option("--ignore", options.ignore, "All but these rules")
        ->type_name("RULE")
        ->delimiter(',')
        ->allow_extra_args(false);
    command
        .add_option("--fail-on", options.fail_on,
                    "The least severity that makes the exit code 1: error, warning, note or never")
        ->type_name("SEVERITY")
        ->capture_default_str()
        ->check(CLI::IsMember(fail_words()));
    command.add_flag("--rules", options.list_rules, "List the rules, and leave");
}

void add_pages(command_set& commands) {
    const auto [command, options] = commands.add("pages", "What the four property pages will show", pages);
    add_description_options(command, options.input);
    command.add_option("--svg", options.folder, "Draw each page as a picture there")->type_name("DIR");
    command
        .add_option("--access", options.access_path, "The access path to the features: registers or named")
        ->type_name("PATH")
        ->capture_default_str()
        ->check(CLI::IsMember(std::set<std::string>{named_path, register_path}));
}

void add_dump(command_set& commands) {
    const auto [command, options] = commands.add("dump", "The engine's own listings", dump);
    add_file(command, options.file);
    command
        .add_option("WHAT", options.what,
                    "stats: counts by element and class; nodes: every node with its dependents")
        ->required()
        ->type_name("")
        ->check(CLI::IsMember(std::set<std::string>{dump_statistics, dump_nodes}));
}

void add_cameras(command_set& commands) {
    commands.add("cameras", "The cameras on the network and on USB", cameras);
}

namespace {

constexpr const char* about =
    "Tells what a camera description holds, computes and shows on the Selvane property pages, without a "
    "camera or over one.";
constexpr const char* footer =
    "--camera NAME in place of FILE: a camera on the network or on USB; --camera alone lists them.\n"
    "--save-description FILE: keeps the camera's description. --trace: tells each access with its time.\n"
    "Exit codes: 0 fine, 1 findings or a refused operation, 2 wrong use or unreadable input.";

constexpr command_adder all_commands[] = {add_info, add_list, add_describe, add_get,  add_set,
                                          add_eval, add_lint, add_pages,    add_dump, add_cameras};

// The library would say no more than that it misses a command.
void check_command(const CLI::App& app, const std::vector<std::string>& arguments) {
    if (arguments.empty() || arguments.front().substr(0, 1) == "-") return;
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
    if (std::find(names.begin(), names.end(), arguments.front()) != names.end()) return;
    throw wrong_use(
        "no command " + arguments.front() +
        did_you_mean(arguments.front(), {names.begin(), names.end()}, " (--help tells the commands)"));
}

// A formula may begin with a minus, and is then no option: all options of its command are words.
std::vector<std::string> protect_formula(std::vector<std::string> arguments) {
    if (arguments.empty() || arguments.front() != "eval") return arguments;
    const auto is_option = [](const std::string& word) {
        return word.substr(0, 2) == "--" || word == "-h" || word.substr(0, 1) != "-";
    };
    const auto formula = std::find_if_not(arguments.begin() + 1, arguments.end(), is_option);
    if (formula == arguments.end() || std::find(arguments.begin(), formula, "--") != formula)
        return arguments;
    const auto end = std::stable_partition(formula, arguments.end(),
                                           [](const std::string& word) { return word.substr(0, 2) == "--"; });
    arguments.insert(end, "--");
    return arguments;
}

// False when the command line asked for nothing but a text.
bool parse(CLI::App& app, std::vector<std::string> arguments, std::ostream& out) {
    check_command(app, arguments);
    arguments = protect_formula(std::move(arguments));
    std::reverse(arguments.begin(), arguments.end());  // as the library wants them
    try {
        app.parse(std::move(arguments));
        return true;
    } catch (const CLI::CallForHelp&) {
        const auto called = app.get_subcommands();
        out << (called.empty() ? app.help() : called.front()->help(app.get_name()));
    } catch (const CLI::CallForVersion& version) {
        out << version.what() << '\n';
    } catch (const CLI::Error& error) {
        throw wrong_use(std::string(error.what()) + " (--help tells the options)");
    }
    return false;
}

int carry_out(gsl::span<const command_adder> adders, const std::vector<std::string>& arguments,
              const channels& outside, const camera_call* camera) {
    CLI::App app(about, "selvane_inspect");
    app.footer(footer);
    app.set_version_flag("--version", "selvane_inspect " SELVANE_VERSION);
    app.require_subcommand(1);
    app.allow_windows_style_options(false);  // a path may begin with a slash
    command_set commands(app);
    for (const command_adder add : adders) add(commands);
    if (!parse(app, arguments, outside.out)) return exit_code::fine;
    const channels to = {outside.out, outside.err, outside.environment, commands.wants_json()};
    try {
        return camera != nullptr ? camera->carry_out(commands.chosen(), to) : commands.chosen()(to);
    } catch (const inspect_error& failure) {
        if (commands.wants_json()) write_json(to.out, {{"error", {{"message", failure.what()}}}});
        throw;
    }
}

// The exit code of what may end with an exception.
template <class Work>
int guard(const channels& to, Work work) {
    try {
        const int code = work();
        // A disk that is full must not pass for a short answer.
        if (!to.out.flush()) throw wrong_use("cannot write the output");
        return code;
    } catch (const inspect_error& failure) {
        write_error(to.err, failure.what());
        return failure.code();
    } catch (const std::exception& failure) {
        write_error(to.err, failure.what());
    }
    return exit_code::wrong_use;
}

}  // namespace

int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
        const run_environment& environment) {
    const channels to = {out, err, environment};
    return guard(to, [&] {
        const camera_call call(arguments);
        return carry_out(all_commands, call.arguments(), to, &call);
    });
}

int run(gsl::span<const command_adder> commands, const std::vector<std::string>& arguments, std::ostream& out,
        std::ostream& err, const run_environment& environment) {
    const channels to = {out, err, environment};
    return guard(to, [&] { return carry_out(commands, arguments, to, nullptr); });
}

}  // namespace selvane_inspect
