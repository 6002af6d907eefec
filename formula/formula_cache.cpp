#include "formula/formula_cache.h"

#include <algorithm>
#include <utility>

namespace GenICam {
namespace {

// Texts with more versions than real descriptions have are not searched for one more.
constexpr std::size_t most_versions = 8;

known_kind kind_of(const resolved_name& meaning, variable_kinds kinds) {
    const auto* variable = std::get_if<identifier_id>(&meaning);
    return variable != nullptr ? kinds(*variable) : known_kind::either;
}

// An expression lives no longer than the table of its node, and each use of it counts.
bool is_lasting(const resolved_name& meaning) {
    return std::holds_alternative<identifier_id>(meaning) || std::holds_alternative<eval_value>(meaning);
}

bool is_same(const resolved_name& left, const resolved_name& right) {
    if (const auto* variable = std::get_if<identifier_id>(&left)) {
        const auto* other = std::get_if<identifier_id>(&right);
        return other != nullptr && *other == *variable;
    }
    const auto* constant = std::get_if<eval_value>(&left);
    const auto* other = std::get_if<eval_value>(&right);
    return constant != nullptr && other != nullptr && constant->is_integer == other->is_integer &&
           constant->value.integer == other->value.integer;
}

}  // namespace

const formula_program* formula_cache::find(std::string_view text, name_resolver resolver,
                                           variable_kinds kinds) const {
    const auto [first, last] = known_.equal_range(text);
    const auto found = std::find_if(first, last, [&](const auto& entry) {
        const std::vector<answered_name>& names = entry.second.names;
        return std::all_of(names.begin(), names.end(), [&](const answered_name& asked) {
            const resolved_name meaning = resolver(asked.name);
            return is_same(asked.meaning, meaning) && asked.kind == kind_of(meaning, kinds);
        });
    });
    return found != last ? found->second.program : nullptr;
}

std::error_code formula_cache::parse(std::string_view text, name_resolver resolver, variable_kinds kinds,
                                     formula_program& program) {
    if (const formula_program* known = find(text, resolver, kinds)) {
        program = *known;
        return {};
    }
    known_formula made = {{}, &program};
    const auto ask = [&](std::string_view name) {
        const auto before = std::find_if(made.names.begin(), made.names.end(),
                                         [name](const answered_name& asked) { return asked.name == name; });
        if (before != made.names.end() && is_lasting(before->meaning)) return before->meaning;
        const resolved_name meaning = resolver(name);
        made.names.push_back({name, meaning, kind_of(meaning, kinds)});
        return meaning;
    };
    result<formula_program> parsed = parse_formula(text, ask, kinds);
    if (!parsed) return parsed.error();
    program = std::move(parsed.assume_value());
    const bool can_be_shared =
        std::all_of(made.names.begin(), made.names.end(),
                    [](const answered_name& asked) { return is_lasting(asked.meaning); });
    if (can_be_shared && known_.count(text) < most_versions) known_.emplace(text, std::move(made));
    return {};
}

}  // namespace GenICam
