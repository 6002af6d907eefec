#include "apps/inspect/lint/rules.h"

namespace selvane_inspect {
namespace {

void add_all(const std::vector<engine_message>& messages, finding_list& findings) {
    for (const engine_message& message : messages) findings.add(message.at, message.text);
}

void add_hazards(lint_context& context, hazard::kind what, finding_list& findings) {
    for (const hazard* found : context.guard().all()) {
        if (found->what != what) continue;
        findings.add(context.position_of(found->path.front()), context.guard().describe(*found));
    }
}

}  // namespace

void check_load_messages(lint_context& context, finding_list& findings) {
    add_all(context.subject().load_messages(), findings);
}

void check_ask_messages(lint_context& context, finding_list& findings) {
    add_all(context.ask_messages(), findings);
}

void check_read_messages(lint_context& context, finding_list& findings) {
    add_all(context.read_messages(), findings);
}

// The one way to get there: the name of a variable over an enumeration ends where that of an entry should
// begin.
void check_load_exception(lint_context& context, finding_list& findings) {
    if (context.subject().load_failure().empty()) return;
    constexpr std::string_view specifier = ".Entry";
    text_position first;
    for (const node_element& element : context.tree().elements()) {
        for (const pugi::xml_node variable : element.xml.children("pVariable")) {
            const std::string_view name = variable.attribute("Name").value();
            const std::size_t found = name.find(specifier);
            const bool ends = found != std::string_view::npos && found + specifier.size() == name.size();
            const std::vector<element_index>& targets = context.tree().find(variable.child_value());
            const bool is_enumeration =
                !targets.empty() &&
                std::string_view(context.tree().at(targets.front()).xml.name()) == "Enumeration";
            if (ends && is_enumeration && first.line == 0) first = context.tree().position_of(variable);
        }
    }
    findings.add(first, "an exception leaves the load: " + context.subject().load_failure());
}

void check_circles(lint_context& context, finding_list& findings) {
    add_hazards(context, hazard::kind::circle, findings);
}

void check_depth(lint_context& context, finding_list& findings) {
    add_hazards(context, hazard::kind::depth, findings);
    add_hazards(context, hazard::kind::effort, findings);
}

void check_divisions_by_zero(lint_context& context, finding_list& findings) {
    add_hazards(context, hazard::kind::division, findings);
}

}  // namespace selvane_inspect
