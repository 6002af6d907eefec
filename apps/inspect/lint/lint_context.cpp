#include "apps/inspect/lint/lint_context.h"

#include "inspection/feature_reader.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace selvane_inspect {
namespace {

using namespace GenICam;

/// Takes answers in the order in which they stand. Nobody wants them: what the engine says meanwhile counts.
struct asked {
    template <class... Answers>
    explicit asked(const Answers&...) {}
};

void ask(IInteger& node) { asked{node.get_representation(), node.get_unit(), node.get_selected()}; }

void ask(IFloat& node) {
    asked{node.get_representation(), node.get_unit(), node.get_display_notation(),
          node.get_display_precision()};
}

void ask(IEnumeration& node) { asked{node.get_polling_time(), node.get_selected()}; }

void ask(IBoolean& node) { asked{node.get_selected()}; }

void ask(INode& node) {
    asked{node.get_visibility(), node.is_deprecated(),  node.get_streamable(),   node.get_event_id(),
          node.get_alias(),      node.get_cast_alias(), node.get_block_polling()};
    switch (node.get_node_type()) {
        case node_type::integer:
            return ask(static_cast<IInteger&>(node));
        case node_type::floating:
            return ask(static_cast<IFloat&>(node));
        case node_type::enumeration:
            return ask(static_cast<IEnumeration&>(node));
        case node_type::boolean:
            return ask(static_cast<IBoolean&>(node));
        default:
            return;
    }
}

// What a feature list does not ask for.
void read_rest(INode& node) {
    const node_type kind = node.get_node_type();
    if (kind == node_type::command) asked{static_cast<ICommand&>(node).is_done(access_flags::none)};
    if (kind == node_type::port) asked{static_cast<IPort&>(node).get_chunk_id(access_flags::none)};
}

}  // namespace

lint_context::lint_context(description& of) : description_(of), guard_(of) {
    if (!is_loaded()) return;
    look_at_everything();
    ask_everything();
    read_everything();
}

void lint_context::look_at_everything() {
    for (element_index element = 0; element < tree().elements().size(); ++element) {
        for (std::size_t which = 0; which < operation_count; ++which)
            static_cast<void>(guard_.find({element, static_cast<operation>(which)}));
    }
}

// What it said while it loaded need not be told again.
void lint_context::ask_everything() {
    std::unordered_set<std::string> known;
    for (const engine_message& message : description_.load_messages()) known.insert(message.text);
    message_capture messages(tree());
    for (element_index element = 0; element < tree().elements().size(); ++element) {
        INode* node = description_.node_of(element);
        if (node == nullptr || guard_.find({element, operation::unit}) != nullptr) continue;
        ask(*node);
        for (engine_message& message : messages.take(position_of(element))) {
            if (known.count(message.text) == 0) ask_messages_.push_back(std::move(message));
        }
    }
}

void lint_context::read_everything() {
    message_capture messages(tree());
    feature_reader reader(guard_);
    for (element_index element = 0; element < tree().elements().size(); ++element) {
        INode* node = description_.node_of(element);
        if (node == nullptr) continue;
        const feature_state state = reader.read(*node);
        static_cast<void>(reader.read_flag(*node, operation::locked));
        if (guard_.find({element, operation::value}) == nullptr) read_rest(*node);
        for (engine_message& message : messages.take(position_of(element)))
            read_messages_.push_back(std::move(message));
        const bool threw = !state.value.failure.empty() && state.value.code == 0 &&
                           guard_.find({element, operation::value}) == nullptr;
        if (threw)
            read_messages_.push_back(
                {"an exception leaves the read of " + state.name + ": " + state.value.failure,
                 position_of(element)});
    }
}

std::vector<pugi::xml_node> lint_context::elements_for_nodes() const {
    std::vector<pugi::xml_node> found;
    std::vector<pugi::xml_node> containers = {tree().root()};
    while (!containers.empty()) {
        const pugi::xml_node container = containers.back();
        containers.pop_back();
        for (const pugi::xml_node child : container.children()) {
            if (child.type() != pugi::node_element) continue;
            found.push_back(child);
            if (is_container(child)) containers.push_back(child);
        }
    }
    return found;
}

void lint_context::for_each_node(const std::function<void(INode&)>& visit) const {
    if (is_loaded()) description_.document()->for_each_node([&](INode* node) { visit(*node); });
}

pugi::xml_node lint_context::element_named(std::string_view name) const {
    const std::vector<element_index>& found = tree().find(name);
    return found.empty() ? pugi::xml_node() : tree().at(found.front()).xml;
}

INode* lint_context::node_of(pugi::xml_node element) const {
    const std::optional<element_index> made = tree().find(element);
    return made ? description_.node_of(*made) : nullptr;
}

text_position lint_context::position_of(element_index element) const {
    return tree().position_of(tree().at(element).xml);
}

// The text in the file is longer than its meaning where it has references and line ends of two characters.
text_position lint_context::position_in_text(pugi::xml_node element, std::size_t offset) const {
    for (const pugi::xml_node part : element.children()) {
        const bool is_plain = part.type() == pugi::node_cdata;
        if (!is_plain && part.type() != pugi::node_pcdata) continue;
        if (part.offset_debug() < 0) break;
        const std::string_view text = description_.source().utf8();
        auto at = static_cast<std::size_t>(part.offset_debug());
        for (std::size_t done = 0; done < offset && at < text.size(); ++done) {
            const std::size_t end =
                text[at] == '&' && !is_plain ? text.find(';', at) : std::string_view::npos;
            if (end != std::string_view::npos) at = end;
            if (text.substr(at, 2) == "\r\n") ++at;
            ++at;
        }
        return description_.source().position_of(at);
    }
    return tree().position_of(element);
}

finding& lint_context::at_key(finding_key which) {
    const auto [known, is_new] = known_.emplace(std::move(which), findings_.size());
    if (is_new) findings_.push_back({rule_, std::get<std::string>(known->first), {}, 0});
    return findings_[known->second];
}

void lint_context::add(text_position at, std::string message) {
    finding& one = at_key({rule_, std::move(message), at.line, at.column});
    if (++one.count == 1 && at.line != 0) one.positions.push_back(at);
}

void lint_context::add_habit(text_position at, std::string message) {
    finding& one = at_key({rule_, std::move(message), 0, 0});
    one.is_habit = true;
    ++one.count;
    if (at.line != 0) one.positions.push_back(at);
}

std::vector<finding> lint_context::take_findings() {
    const auto is_before = [](text_position left, text_position right) {
        return std::tie(left.line, left.column) < std::tie(right.line, right.column);
    };
    for (finding& one : findings_) std::sort(one.positions.begin(), one.positions.end(), is_before);
    std::stable_sort(findings_.begin(), findings_.end(), [&](const finding& left, const finding& right) {
        return is_before(left.at(), right.at());
    });
    return std::move(findings_);
}

const std::vector<lint_rule>& all_lint_rules() {
    static const std::vector<lint_rule> all = [] {
        std::vector<lint_rule> rules;
        for (const auto group :
             {engine_rules(), formula_rules(), element_rules(), mark_rules(), page_rules()})
            rules.insert(rules.end(), group.begin(), group.end());
        return rules;
    }();
    return all;
}

std::string title_of(pugi::xml_node element) {
    const std::string name = element.attribute("Name").value();
    return element.name() + (name.empty() ? name : " " + name);
}

}  // namespace selvane_inspect
