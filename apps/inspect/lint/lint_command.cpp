#include "apps/inspect/commands.h"
#include "apps/inspect/lint/lint_context.h"
#include "apps/inspect/similar_name.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

constexpr const char* never = "never";

struct file_report {
    std::string file;
    std::vector<finding> findings;
    severity_counts counts{};
};

void check_names(const std::vector<std::string>& names) {
    std::vector<std::string_view> known;
    for (const lint_rule& rule : all_lint_rules()) known.push_back(rule.name);
    for (const std::string& name : names) {
        if (std::find(known.begin(), known.end(), name) != known.end()) continue;
        throw wrong_use("there is no rule " + name + did_you_mean(name, known, " (--rules lists them)"));
    }
}

bool contains(const std::vector<std::string>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool is_wanted(const lint_rule& rule, const lint_options& options) {
    return (options.only.empty() || contains(options.only, rule.name)) &&
           !contains(options.ignore, rule.name);
}

file_report examine(const std::string& file, const lint_options& options) {
    const auto opened = description::open(file);
    prepare(*opened, options.memory);
    lint_context context(*opened);
    for (const lint_rule& rule : all_lint_rules()) {
        if (is_wanted(rule, options)) context.check(rule);
    }
    file_report report = {file, context.take_findings(), {}};
    for (const finding& one : report.findings)
        add_count(report.counts, one.rule->level, one.is_habit ? 1 : one.count);
    return report;
}

std::string position_text(const std::string& file, text_position at) {
    return at.line == 0 ? file : fmt::format("{}:{}:{}", file, at.line, at.column);
}

void print(std::ostream& out, const file_report& report) {
    std::set<const lint_rule*> broken;
    for (const finding& one : report.findings) {
        broken.insert(one.rule);
        write_line(out,
                   fmt::format("{}: {}: {}{} [{}]", position_text(report.file, one.at()),
                               severity_word(one.rule->level), one.message,
                               one.count > 1 ? fmt::format(" ({} times)", one.count) : "", one.rule->name));
    }
    for (const lint_rule& rule : all_lint_rules()) {
        if (broken.count(&rule) == 0) continue;
        out << fmt::format("    {}: {} {}\n", rule.name, rule.why, rule.what_to_do);
    }
    write_line(out, report.file + ": " + summary(report.counts));
}

nlohmann::ordered_json as_json(const finding& one) {
    nlohmann::ordered_json json = {{"rule", one.rule->name}, {"severity", severity_word(one.rule->level)},
                                   {"line", one.at().line},  {"column", one.at().column},
                                   {"message", one.message}, {"count", one.count},
                                   {"why", one.rule->why},   {"what_to_do", one.rule->what_to_do}};
    json["places"] = nlohmann::ordered_json::array();
    for (const text_position& at : one.positions)
        json["places"].push_back({{"line", at.line}, {"column", at.column}});
    return json;
}

nlohmann::ordered_json as_json(const file_report& report) {
    nlohmann::ordered_json json;
    json["file"] = report.file;
    json["findings"] = nlohmann::ordered_json::array();
    for (const finding& one : report.findings) json["findings"].push_back(as_json(one));
    put_counts(json, report.counts);
    return json;
}

int print_rules(const channels& to) {
    auto json = nlohmann::ordered_json::array();
    for (const lint_rule& rule : all_lint_rules()) {
        json.push_back({{"rule", rule.name},
                        {"severity", severity_word(rule.level)},
                        {"why", rule.why},
                        {"what_to_do", rule.what_to_do}});
        if (to.json) continue;
        to.out << fmt::format("{} ({})\n    {}\n    {}\n", rule.name, severity_word(rule.level), rule.why,
                              rule.what_to_do);
    }
    if (to.json) write_json(to.out, {{"command", "lint"}, {"rules", std::move(json)}});
    return exit_code::fine;
}

bool fails(const severity_counts& counts, const std::string& fail_on) {
    for (std::size_t at = 0; at < counts.size() && fail_on != never; ++at) {
        if (counts[at] > 0) return true;
        if (severity_word(severities[at]) == fail_on) break;
    }
    return false;
}

/// A run over all files; one that cannot be used does not keep the others from being examined.
class lint_run {
public:
    lint_run(const lint_options& options, const channels& to)
        : options_(options),
          to_(to),
          progress_(to.err, to.environment.show_progress && options.files.size() > 1) {}

    [[nodiscard]] int carry_out();

private:
    void take(const std::string& file);

    const lint_options& options_;
    const channels& to_;
    progress progress_;
    nlohmann::ordered_json files_ = nlohmann::ordered_json::array();
    severity_counts all_{};
    bool unusable_ = false;
};

void lint_run::take(const std::string& file) {
    try {
        const file_report report = examine(file, options_);
        for (std::size_t at = 0; at < all_.size(); ++at) all_[at] += report.counts[at];
        progress_.clear();
        if (to_.json) {
            files_.push_back(as_json(report));
        } else {
            print(to_.out, report);
        }
    } catch (const inspect_error& failure) {
        progress_.clear();
        write_error(to_.err, failure.what());
        unusable_ = true;
    }
}

int lint_run::carry_out() {
    for (std::size_t at = 0; at < options_.files.size(); ++at) {
        progress_.show(at + 1, options_.files.size(), options_.files[at]);
        take(options_.files[at]);
    }
    progress_.clear();
    if (to_.json) {
        nlohmann::ordered_json json = {{"command", "lint"}, {"files", std::move(files_)}};
        put_counts(json, all_);
        write_json(to_.out, json);
    } else if (options_.files.size() > 1) {
        to_.out << options_.files.size() << " files: " << summary(all_) << '\n';
    }
    if (unusable_) return exit_code::wrong_use;
    return fails(all_, options_.fail_on) ? exit_code::findings : exit_code::fine;
}

}  // namespace

std::set<std::string> fail_words() {
    std::set<std::string> words = {never};
    for (const severity level : severities) words.emplace(severity_word(level));
    return words;
}

int lint(const lint_options& options, const channels& to) {
    if (options.list_rules) return print_rules(to);
    if (options.files.empty()) throw wrong_use("lint needs a FILE (--help tells the options)");
    check_names(options.only);
    check_names(options.ignore);
    return lint_run(options, to).carry_out();
}

}  // namespace selvane_inspect
