#include "apps/inspect/commands.h"
#include "inspection/feature_reader.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

using GenICam::ICategory;
using GenICam::INode;
using GenICam::node_type;
using GenICam::Visibility;
using nlohmann::ordered_json;

constexpr Visibility visibilities[] = {Visibility::Beginner, Visibility::Expert, Visibility::Guru,
                                       Visibility::Invisible};

Visibility parse_visibility(const std::string& word) {
    return *std::find_if(std::begin(visibilities), std::prev(std::end(visibilities)),
                         [&](Visibility visibility) { return visibility_word(visibility) == word; });
}

/// Lists nodes, as text or as data. The data goes among that of the nodes beside them.
class feature_list {
public:
    feature_list(description& in, Visibility limit, const channels& to)
        : in_(in), guard_(in), reader_(guard_), limit_(limit), to_(to) {}

    /// A node, and behind a category its features.
    void add_tree(INode* node, ordered_json& among);
    /// What the trees before do not hold.
    void add_others(ordered_json& among);

private:
    [[nodiscard]] const char* reason_to_stop(INode* category) const;
    void add(INode& node, std::size_t depth, const char* left_out, ordered_json& among);
    [[nodiscard]] std::string line_text(INode& node, const char* left_out);

    static constexpr std::size_t max_depth = 500;
    static constexpr std::size_t max_repeated_lines = 100000;

    description& in_;
    evaluation_guard guard_;
    feature_reader reader_;
    Visibility limit_;
    const channels& to_;
    std::vector<INode*> path_;
    std::unordered_set<INode*> met_;
    std::unordered_set<INode*> entered_;
    std::size_t lines_ = 0;
};

void feature_list::add_tree(INode* node, ordered_json& among) {
    met_.insert(node);
    if (node->get_visibility() > limit_) return;
    ++lines_;
    const bool is_category = node->get_node_type() == node_type::category;
    const char* const left_out = is_category ? reason_to_stop(node) : "";
    add(*node, path_.size(), left_out, among);
    if (!is_category) return;
    auto features = ordered_json::array();
    if (*left_out == 0) {
        entered_.insert(node);
        path_.push_back(node);
        for (INode* feature : static_cast<ICategory*>(node)->get_features()) add_tree(feature, features);
        path_.pop_back();
    }
    if (to_.json) among.back()["features"] = std::move(features);
}

// A category is listed wherever others list it, which can be more often than anyone has paper for.
const char* feature_list::reason_to_stop(INode* category) const {
    const bool is_in_itself = std::find(path_.begin(), path_.end(), category) != path_.end();
    if (is_in_itself) return "lists itself: its features stand above";
    if (path_.size() >= max_depth) return "too deep to go on";
    const bool is_repeated = lines_ > max_repeated_lines && entered_.count(category) != 0;
    return is_repeated ? "its features stand above" : "";
}

void feature_list::add_others(ordered_json& among) {
    among = ordered_json::array();
    std::vector<INode*> others;
    in_.document()->for_each_node([&](INode* node) {
        if (met_.count(node) == 0 && node->get_visibility() <= limit_) others.push_back(node);
    });
    if (!to_.json && !others.empty()) to_.out << (lines_ == 0 ? "" : "\n") << "outside the tree\n";
    for (INode* node : others) add(*node, 1, "", among);
}

void feature_list::add(INode& node, std::size_t depth, const char* left_out, ordered_json& among) {
    if (!to_.json) {
        write_line(to_.out, std::string(depth * 2, ' ') + line_text(node, left_out));
        return;
    }
    ordered_json& json = among.emplace_back(to_json(reader_.read(node)));
    json["visibility"] = visibility_word(node.get_visibility());
    if (*left_out != 0) json["left_out"] = left_out;
}

std::string feature_list::line_text(INode& node, const char* left_out) {
    if (node.get_node_type() == node_type::category)
        return std::string(node.get_name()) + (*left_out != 0 ? fmt::format(" ({})", left_out) : "");
    const feature_state state = reader_.read(node);
    const std::string range = range_text(state);
    return fmt::format("{:<11} {} {}{}{}", kind_word(state.kind), state.access,
                       is_absent(state) ? state.name : assignment_text(state, some_bytes),
                       range.empty() ? "" : " ", range);
}

}  // namespace

std::set<std::string> visibility_words() {
    std::set<std::string> words;
    for (const Visibility visibility : visibilities) words.emplace(visibility_word(visibility));
    return words;
}

int list(const list_options& options, const channels& to) {
    const auto opened = open(options.input);
    INode* const root = opened->document()->find_node("Root");
    if (root == nullptr) {
        write_error(to.err, opened->path() + " has no feature Root, where the tree begins" +
                                (options.all ? "" : " (--all lists what there is)"));
    }
    feature_list listed(*opened, parse_visibility(options.visibility), to);
    ordered_json json = {{"command", "list"}, {"file", opened->path()}, {"root", nullptr}};
    auto trees = ordered_json::array();
    if (root != nullptr) listed.add_tree(root, trees);
    if (!trees.empty()) json["root"] = std::move(trees.front());
    if (options.all) listed.add_others(json["outside"]);
    if (to.json) write_json(to.out, json);
    return exit_code::fine;
}

}  // namespace selvane_inspect
