#include "apps/inspect/commands.h"
#include "inspection/feature_reader.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace selvane_inspect {
namespace {

using GenICam::ICategory;
using GenICam::INode;
using GenICam::node_type;
using GenICam::Visibility;

constexpr Visibility visibilities[] = {Visibility::Beginner, Visibility::Expert, Visibility::Guru,
                                       Visibility::Invisible};

Visibility parse_visibility(const std::string& word) {
    return *std::find_if(std::begin(visibilities), std::prev(std::end(visibilities)),
                         [&](Visibility visibility) { return visibility_word(visibility) == word; });
}

/// A line of the list.
struct listed_node {
    INode* node;
    std::size_t depth;
    const char* left_out = "";  ///< why a category's features are not listed
};

/// The tree below a category, in the order of its lines.
class tree_walk {
public:
    tree_walk(Visibility limit) : limit_(limit) {}

    [[nodiscard]] std::vector<listed_node> walk(INode* root);
    [[nodiscard]] bool has_met(INode* node) const { return met_.count(node) != 0; }

private:
    struct level {
        INode* category;
        std::vector<INode*> features;
        std::size_t next = 0;
    };

    void visit(INode* node);
    [[nodiscard]] const char* reason_to_stop(INode* category) const;

    static constexpr std::size_t max_depth = 500;
    static constexpr std::size_t max_repeated_lines = 100000;

    Visibility limit_;
    std::vector<level> path_;
    std::unordered_set<INode*> met_;
    std::unordered_set<INode*> entered_;
    std::vector<listed_node> lines_;
};

std::vector<listed_node> tree_walk::walk(INode* root) {
    if (root != nullptr) visit(root);
    while (!path_.empty()) {
        level& top = path_.back();
        if (top.next == top.features.size()) {
            path_.pop_back();
        } else {
            visit(top.features[top.next++]);
        }
    }
    return std::move(lines_);
}

void tree_walk::visit(INode* node) {
    met_.insert(node);
    if (node->get_visibility() > limit_) return;
    lines_.push_back({node, path_.size()});
    if (node->get_node_type() != node_type::category) return;
    lines_.back().left_out = reason_to_stop(node);
    if (*lines_.back().left_out != 0) return;
    entered_.insert(node);
    path_.push_back({node, static_cast<ICategory*>(node)->get_features()});
}

// A category is listed wherever others list it, which can be more often than anyone has paper for.
const char* tree_walk::reason_to_stop(INode* category) const {
    const auto is_above = [&](const level& open) { return open.category == category; };
    if (std::any_of(path_.begin(), path_.end(), is_above)) return "lists itself: its features stand above";
    if (path_.size() >= max_depth) return "too deep to go on";
    const bool is_repeated = lines_.size() > max_repeated_lines && entered_.count(category) != 0;
    return is_repeated ? "its features stand above" : "";
}

std::string line_text(const listed_node& line, feature_reader& reader) {
    const std::string indent(line.depth * 2, ' ');
    if (line.node->get_node_type() == node_type::category) {
        const std::string note = *line.left_out != 0 ? fmt::format(" ({})", line.left_out) : "";
        return fmt::format("{}{}{}", indent, line.node->get_name(), note);
    }
    const feature_state state = reader.read(*line.node);
    const std::string range = range_text(state);
    return fmt::format("{}{:<11} {} {}{}{}", indent, kind_word(state.kind), state.access,
                       is_absent(state) ? state.name : assignment_text(state, some_bytes),
                       range.empty() ? "" : " ", range);
}

std::vector<INode*> outside(description& opened, const tree_walk& met, Visibility limit) {
    std::vector<INode*> nodes;
    opened.document()->for_each_node([&](INode* node) {
        if (!met.has_met(node) && node->get_visibility() <= limit) nodes.push_back(node);
    });
    return nodes;
}

nlohmann::ordered_json node_json(INode& node, feature_reader& reader) {
    nlohmann::ordered_json json = to_json(reader.read(node));
    json["visibility"] = visibility_word(node.get_visibility());
    return json;
}

// The lines of a category's features stand behind it, one deeper.
nlohmann::ordered_json tree_json(const std::vector<listed_node>& lines, std::size_t& at,
                                 feature_reader& reader) {
    const listed_node& line = lines[at++];
    nlohmann::ordered_json json = node_json(*line.node, reader);
    if (line.node->get_node_type() != node_type::category) return json;
    if (*line.left_out != 0) json["left_out"] = line.left_out;
    json["features"] = nlohmann::ordered_json::array();
    while (at < lines.size() && lines[at].depth > line.depth)
        json["features"].push_back(tree_json(lines, at, reader));
    return json;
}

void print_json(const channels& to, const description& opened, const std::vector<listed_node>& lines,
                const std::vector<INode*>& others, bool all, feature_reader& reader) {
    nlohmann::ordered_json json;
    json["command"] = "list";
    json["file"] = opened.path();
    std::size_t at = 0;
    json["root"] = lines.empty() ? nlohmann::ordered_json() : tree_json(lines, at, reader);
    if (all) json["outside"] = nlohmann::ordered_json::array();
    for (INode* node : others) json["outside"].push_back(node_json(*node, reader));
    write_json(to.out, json);
}

void print(const channels& to, const std::vector<listed_node>& lines, const std::vector<INode*>& others,
           feature_reader& reader) {
    for (const listed_node& line : lines) write_line(to.out, line_text(line, reader));
    if (!others.empty()) to.out << (lines.empty() ? "" : "\n") << "outside the tree\n";
    for (INode* node : others) write_line(to.out, line_text({node, 1}, reader));
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
    const Visibility limit = parse_visibility(options.visibility);
    evaluation_guard guard(*opened);
    feature_reader reader(guard);
    tree_walk walk(limit);
    const std::vector<listed_node> lines = walk.walk(root);
    const std::vector<INode*> others = options.all ? outside(*opened, walk, limit) : std::vector<INode*>();
    if (to.json) {
        print_json(to, *opened, lines, others, options.all, reader);
    } else {
        print(to, lines, others, reader);
    }
    return exit_code::fine;
}

}  // namespace selvane_inspect
