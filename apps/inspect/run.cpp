#include "apps/inspect/run.h"

#include "apps/inspect/command.h"
#include "apps/inspect/feature_value.h"
#include "apps/inspect/similar_name.h"

#include <algorithm>
#include <exception>
#include <utility>

#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

constexpr const char* about =
    "Tells what a camera description holds, computes and shows on the Selvane property pages, without a "
    "camera.";
constexpr const char* exit_codes =
    "Exit codes: 0 fine, 1 findings or a refused operation, 2 wrong use or unreadable input.";

constexpr command_adder all_commands[] = {add_info, add_list, add_describe, add_get, add_set,
                                          add_eval, add_lint, add_pages,    add_dump};

// The library would say no more than that it misses a command.
void check_command(const CLI::App& app, const std::vector<std::string>& arguments) {
    if (arguments.empty() || arguments.front().substr(0, 1) == "-") return;
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
    if (std::find(names.begin(), names.end(), arguments.front()) != names.end()) return;
    const std::string meant(find_similar(arguments.front(), {names.begin(), names.end()}));
    throw wrong_use("no command " + arguments.front() +
                    (meant.empty() ? " (--help tells the commands)" : " (did you mean " + meant + "?)"));
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
              std::ostream& out, std::ostream& err, const run_environment& environment) {
    CLI::App app(about, "selvane_inspect");
    app.footer(exit_codes);
    app.set_version_flag("--version", "selvane_inspect " SELVANE_VERSION);
    app.require_subcommand(1);
    app.allow_windows_style_options(false);  // a path may begin with a slash
    command_set commands(app);
    for (const command_adder add : adders) add(commands);
    if (!parse(app, arguments, out)) return exit_code::fine;
    try {
        return commands.chosen()({out, err, environment, commands.wants_json()});
    } catch (const inspect_error& failure) {
        if (commands.wants_json()) write_json(out, {{"error", {{"message", failure.what()}}}});
        throw;
    }
}

// A disk that is full must not pass for a short answer.
int finish(int code, std::ostream& out) {
    if (!out.flush()) throw wrong_use("cannot write the output");
    return code;
}

}  // namespace

void write_error(std::ostream& err, std::string_view line) {
    err << "selvane_inspect: " << on_one_line(line) << '\n';
}

void write_line(std::ostream& out, std::string_view line) { out << visible_text(line) << '\n'; }

void write_json(std::ostream& out, const nlohmann::ordered_json& value) {
    constexpr int indent = 2;
    const std::string text = value.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    out << platform::visible_json(text) << '\n';
}

CLI::App* command_set::add_subcommand(const char* name, const char* about_command) {
    CLI::App* command = app_.add_subcommand(name, about_command);
    command->add_flag("--json", json_, "Print JSON");
    return command;
}

int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
        const run_environment& environment) {
    return run(all_commands, arguments, out, err, environment);
}

int run(gsl::span<const command_adder> commands, const std::vector<std::string>& arguments, std::ostream& out,
        std::ostream& err, const run_environment& environment) {
    try {
        return finish(carry_out(commands, arguments, out, err, environment), out);
    } catch (const inspect_error& failure) {
        write_error(err, failure.what());
        return failure.code();
    } catch (const std::exception& failure) {
        write_error(err, failure.what());
    }
    return exit_code::wrong_use;
}

}  // namespace selvane_inspect
