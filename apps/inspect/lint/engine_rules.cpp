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
        context.add(context.tree().at(found->path.front()).xml, "{}", context.guard().describe(*found));
    }
}

template <hazard::kind... kinds>
void check_hazards(lint_context& context) {
    (add_hazards(context, kinds), ...);
}

// The one way to get there: the name of a variable over an enumeration ends where that of an entry should
// begin.
bool breaks_load(const lint_context& context, pugi::xml_node variable) {
    constexpr std::string_view specifier = ".Entry";
    const std::string_view name = variable.attribute("Name").value();
    const std::size_t found = name.find(specifier);
    return found != std::string_view::npos && found + specifier.size() == name.size() &&
           is_element(context.element_named(variable.child_value()), "Enumeration");
}

void check_load_exception(lint_context& context) {
    if (context.subject().load_failure().empty()) return;
    text_position first;
    for (const node_element& element : context.tree().elements()) {
        for (const pugi::xml_node variable : element.xml.children("pVariable")) {
            if (first.line == 0 && breaks_load(context, variable))
                first = context.tree().position_of(variable);
        }
    }
    context.add(first, "an exception leaves the load: " + context.subject().load_failure());
}

/// A category on the way down, and the next of its entries to look at.
struct open_category {
    pugi::xml_node category;
    pugi::xml_node next;
};

// Where each category that was entered stands on the way down; not set for those that were left.
using entered_categories = std::map<pugi::xml_node, std::optional<std::size_t>>;

std::string category_circle(const std::vector<open_category>& path, std::size_t first) {
    const auto name_at = [&](std::size_t at) { return path[first + at].category.attribute("Name").value(); };
    return circle_text(path.size() - first, "lists", name_at);
}

// Goes down from a category, and into none for the second time.
void walk_down(lint_context& context, pugi::xml_node start, entered_categories& entered) {
    std::vector<open_category> path;
    const auto meet = [&](pugi::xml_node category, pugi::xml_node entry) {
        const auto [known, is_new] = entered.emplace(category, path.size());
        if (is_new) {
            path.push_back({category, category.child("pFeature")});
        } else if (known->second) {
            context.add(entry, "{}", category_circle(path, *known->second));
        }
    };
    meet(start, {});
    while (!path.empty()) {
        const pugi::xml_node entry = path.back().next;
        if (!entry) {
            entered[path.back().category].reset();
            path.pop_back();
            continue;
        }
        path.back().next = entry.next_sibling("pFeature");
        const pugi::xml_node listed = context.element_named(entry.child_value());
        if (is_element(listed, "Category")) meet(listed, entry);
    }
}

void check_category_circles(lint_context& context) {
    entered_categories entered;
    for (const node_element& element : context.tree().elements()) {
        if (is_element(element.xml, "Category")) walk_down(context, element.xml, entered);
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
