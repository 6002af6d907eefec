#include "apps/inspect/run.h"

#include "apps/inspect/command.h"

#include <algorithm>
#include <exception>

#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

constexpr const char* about =
    "Tells what a camera description holds, computes and shows on the Selvane property pages, without a "
    "camera.";
constexpr const char* exit_codes =
    "Exit codes: 0 fine, 1 findings or a refused operation, 2 wrong use or unreadable input.";

constexpr void (*all_commands[])(command_set&) = {add_info, add_list, add_describe, add_get, add_set,
                                                  add_eval, add_lint, add_pages,    add_dump};

// The library breaks some of its messages into lines.
std::string one_line(std::string text) {
    while (!text.empty() && text.back() == '\n') text.pop_back();
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

// False when the command line asked for nothing but a text.
bool parse(CLI::App& app, std::vector<std::string> arguments, std::ostream& out) {
    std::reverse(arguments.begin(), arguments.end());  // as the library wants them
    try {
        app.parse(std::move(arguments));
        return true;
    } catch (const CLI::CallForHelp&) {
        const auto called = app.get_subcommands();
        out << (called.empty() ? app.help() : called.front()->help());
    } catch (const CLI::CallForVersion& version) {
        out << version.what() << '\n';
    } catch (const CLI::Error& error) {
        throw wrong_use(one_line(error.what()) + " (--help tells the options)");
    }
    return false;
}

int carry_out(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
              const run_environment& environment) {
    CLI::App app(about, "selvane_inspect");
    app.footer(exit_codes);
    app.set_version_flag("--version", "selvane_inspect " SELVANE_VERSION);
    app.require_subcommand(1);
    command_set commands(app);
    for (const auto add : all_commands) add(commands);
    if (!parse(app, arguments, out)) return exit_code::fine;
    return commands.chosen()({out, err, environment, commands.wants_json()});
}

}  // namespace

void write_error(std::ostream& err, std::string_view line) { err << "selvane_inspect: " << line << '\n'; }

void write_json(std::ostream& out, const nlohmann::ordered_json& value) {
    constexpr int indent = 2;
    out << value.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

CLI::App* command_set::add_subcommand(const char* name, const char* about_command) {
    CLI::App* command = app_.add_subcommand(name, about_command);
    command->add_flag("--json", json_, "Print JSON");
    return command;
}

int run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
        const run_environment& environment) {
    try {
        return carry_out(arguments, out, err, environment);
    } catch (const inspect_error& failure) {
        write_error(err, failure.what());
        return failure.code();
    } catch (const std::exception& failure) {
        write_error(err, failure.what());
    }
    return exit_code::wrong_use;
}

}  // namespace selvane_inspect
