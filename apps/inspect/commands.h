#pragma once

#include "apps/inspect/command.h"
#include "apps/inspect/description_options.h"

#include <set>
#include <string>
#include <vector>

namespace selvane_inspect {

// Each command: what the command line says to it, and what it does. All return the exit code and throw
// `inspect_error`.

struct info_options {
    std::string file;
};
int info(const info_options& options, const channels& to);

/// Names of visibilities, which --visibility takes.
[[nodiscard]] std::set<std::string> visibility_words();

struct list_options {
    description_options input;
    std::string visibility = "Invisible";
    bool all = false;
};
int list(const list_options& options, const channels& to);

struct describe_options {
    description_options input;
    std::vector<std::string> features;
};
int describe(const describe_options& options, const channels& to);

struct get_options {
    description_options input;
    std::vector<std::string> features;
    bool trace = false;
};
int get(const get_options& options, const channels& to);

struct set_options {
    description_options input;
    std::vector<std::string> assignments;
    std::string save;
    bool trace = false;
};
int set(const set_options& options, const channels& to);

struct eval_options {
    std::string formula;
    std::vector<std::string> variables;
    bool explain = false;
};
int eval(const eval_options& options, const channels& to);

/// What --fail-on takes: names of severities, and never.
[[nodiscard]] std::set<std::string> fail_words();

struct lint_options {
    std::vector<std::string> files;
    memory_options memory;
    std::vector<std::string> only;
    std::vector<std::string> ignore;
    std::string fail_on = "warning";
    bool list_rules = false;
};
int lint(const lint_options& options, const channels& to);

constexpr const char* named_path = "named";
constexpr const char* register_path = "registers";

struct pages_options {
    description_options input;
    std::string folder;
    std::string access_path = register_path;
};
int pages(const pages_options& options, const channels& to);

constexpr const char* dump_statistics = "stats";
constexpr const char* dump_nodes = "nodes";

struct dump_options {
    std::string file;
    std::string what;
};
int dump(const dump_options& options, const channels& to);

struct cameras_options {};
int cameras(const cameras_options& options, const channels& to);

}  // namespace selvane_inspect
