#include "apps/inspect/lint/lint_context.h"

#include <map>
#include <optional>
#include <vector>

namespace selvane_inspect {
namespace {

void add_all(lint_context& context, const std::vector<engine_message>& messages) {
    for (const engine_message& message : messages) context.add(message.at, message.text);
}

void add_hazards(lint_context& context, hazard::kind what) {
    for (const hazard* found : context.guard().all()) {
        if (found->what != what) continue;
        const pugi::xml_node first = context.tree().at(found->path.front()).xml;
        context.add(context.tree().position_of(first), context.guard().describe(*found));
    }
}

template <hazard::kind... kinds>
void check_hazards(lint_context& context) {
    (add_hazards(context, kinds), ...);
}

// The first node of that name.
pugi::xml_node element_named(const description_tree& tree, std::string_view name) {
    const std::vector<element_index>& found = tree.find(name);
    return found.empty() ? pugi::xml_node() : tree.at(found.front()).xml;
}

// The one way to get there: the name of a variable over an enumeration ends where that of an entry should
// begin.
bool breaks_load(const description_tree& tree, pugi::xml_node variable) {
    constexpr std::string_view specifier = ".Entry";
    const std::string_view name = variable.attribute("Name").value();
    const std::size_t found = name.find(specifier);
    return found != std::string_view::npos && found + specifier.size() == name.size() &&
           is_element(element_named(tree, variable.child_value()), "Enumeration");
}

void check_load_exception(lint_context& context) {
    if (context.subject().load_failure().empty()) return;
    text_position first;
    for (const node_element& element : context.tree().elements()) {
        for (const pugi::xml_node variable : element.xml.children("pVariable")) {
            if (first.line == 0 && breaks_load(context.tree(), variable))
                first = context.tree().position_of(variable);
        }
    }
    context.add(first, "an exception leaves the load: " + context.subject().load_failure());
}

/// A walk over the categories in depth that does not go round.
class category_walk {
public:
    explicit category_walk(lint_context& context) : context_(context), tree_(context.tree()) {}

    void start(pugi::xml_node category);

private:
    struct open_category {
        pugi::xml_node category;
        pugi::xml_node next;  // the entry to look at
    };

    void enter(pugi::xml_node category);
    void look_at(pugi::xml_node entry);
    void add_circle(std::size_t first, pugi::xml_node entry);

    lint_context& context_;
    const description_tree& tree_;
    std::vector<open_category> path_;
    // Where each that was entered stands on the path; not set for those that were left.
    std::map<pugi::xml_node, std::optional<std::size_t>> entered_;
};

void category_walk::enter(pugi::xml_node category) {
    entered_[category] = path_.size();
    path_.push_back({category, category.child("pFeature")});
}

void category_walk::start(pugi::xml_node category) {
    if (entered_.count(category) != 0) return;
    enter(category);
    while (!path_.empty()) {
        const pugi::xml_node entry = path_.back().next;
        if (entry) {
            path_.back().next = entry.next_sibling("pFeature");
            look_at(entry);
        } else {
            entered_[path_.back().category].reset();
            path_.pop_back();
        }
    }
}

void category_walk::look_at(pugi::xml_node entry) {
    const pugi::xml_node listed = element_named(tree_, entry.child_value());
    if (!is_element(listed, "Category")) return;
    const auto known = entered_.find(listed);
    if (known == entered_.end()) {
        enter(listed);
    } else if (known->second) {
        add_circle(*known->second, entry);
    }
}

void category_walk::add_circle(std::size_t first, pugi::xml_node entry) {
    const auto name_at = [&](std::size_t at) { return path_[first + at].category.attribute("Name").value(); };
    context_.add(tree_.position_of(entry), circle_text(path_.size() - first, "lists", name_at));
}

void check_category_circles(lint_context& context) {
    category_walk walk(context);
    for (const node_element& element : context.tree().elements()) {
        if (is_element(element.xml, "Category")) walk.start(element.xml);
    }
}

constexpr lint_rule engine_table[] = {
    {"load-message", severity::warning,
     "The engine says so while it loads, and leaves out what it speaks of.",
     "Mend the element that it names.",
     [](lint_context& context) { add_all(context, context.subject().load_messages()); }},
    {"ask-message", severity::warning, "The engine says so when it is asked for what the description states.",
     "Mend the element that it names.",
     [](lint_context& context) { add_all(context, context.ask_messages()); }},
    {"read-message", severity::note,
     "The engine says so when it reads values, limits and states over the registers as they are.",
     "Look whether a real camera would have other registers (give them with --memory or --register), and "
     "whether the port is the one named Device: pages reach no other.",
     [](lint_context& context) { add_all(context, context.read_messages()); }},
    {"load-exception", severity::error, "An exception leaves the load, and the page goes down with it.",
     "Write the name of an entry behind \".Entry.\".", check_load_exception},
    {"circle", severity::error, "The engine follows links without end, until its stack is used up.",
     "Let one of the nodes hold its value, or read it from somewhere else.",
     check_hazards<hazard::kind::circle>},
    {"category-circle", severity::warning,
     "A walk over the categories comes round again; what walks without looking back never ends.",
     "Take one of the entries out.", check_category_circles},
    {"deep-chain", severity::warning,
     "Every node on the way costs room on the stack of the host, and time: it is computed anew for everyone "
     "who asks.",
     "Let nodes read from closer to the registers.",
     check_hazards<hazard::kind::depth, hazard::kind::effort>},
    {"division-by-zero", severity::warning,
     "An integer division without a result ends the process, and these registers lead to one.",
     "Add something to the divisor that is never zero, such as (X=0); a ternary does not help.",
     check_hazards<hazard::kind::division>},
};

}  // namespace

gsl::span<const lint_rule> engine_rules() noexcept { return engine_table; }

}  // namespace selvane_inspect
