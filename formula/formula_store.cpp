#include "formula/formula_store.h"

#include "genicam/core/log.h"

#include <algorithm>
#include <memory>
#include <new>
#include <type_traits>

namespace GenICam {
namespace {

// Texts with more versions than real descriptions have are not searched for one more.
constexpr std::size_t most_versions = 8;
// What is larger is read at once: the tools would keep room for it as long as the document lives.
constexpr std::size_t most_nodes_later = 1024;
// Enough for the formulas of some pages.
constexpr std::size_t most_room = std::size_t{24} << 10;

// Forms of real formulas have fewer steps than nodes.
std::size_t room_for(std::size_t nodes, const source_kinds& kinds) {
    const std::size_t of_form = sizeof(specialised_formula) + (nodes + 1) * sizeof(formula_step);
    return of_form + (kinds.are_certain ? 0 : nodes * sizeof(formula_instruction));
}

bool is_same(const variable_row& left, const variable_row& right) {
    return left.name == right.name && left.id == right.id &&
           left.constant.is_integer == right.constant.is_integer &&
           left.constant.value.integer == right.constant.value.integer;
}

bool is_same(const name_scope& left, const name_scope& right) {
    const variable_row* const end = left.rows.data() + left.rows.size();
    return left.no_from_to == right.no_from_to && left.rows.size() == right.rows.size() &&
           std::equal(left.rows.data(), end, right.rows.data(),
                      [](const variable_row& one, const variable_row& other) { return is_same(one, other); });
}

}  // namespace

// Nobody was told what is wrong with the formula while that was asked for. The log's threshold stays as it
// is: it is that of all threads.
void kept_formula::read_late() { store_->read(*this, names_, store_->room_.size == 0, false); }

kept_formula& formula_store::keep(std::string_view text, const variable_table& names,
                                  const source_kinds& kinds) {
    if (tools_ == nullptr) tools_ = std::make_unique<tools>();
    if (names.has_expressions() || log_enabled(log_failure)) {
        kept_formula& formula = add(text, kinds);
        read(formula, names, true);
        return formula;
    }
    if (kept_formula* known = find(text, names.names(), kinds)) return *known;
    kept_formula& formula = add(text, kinds);
    formula.names_ = copy(names.names());
    const formula_size size = measure_formula(text);
    if (size.nodes > most_nodes_later || names.is_large()) {
        read(formula, names, true);
    } else {
        largest_ = {std::max(largest_.nodes, size.nodes), std::max(largest_.marks, size.marks)};
        const std::size_t room = room_for(size.nodes, kinds);
        wanted_room_ += room;
        least_room_ = std::max(least_room_, room);
    }
    if (known_.count(text) < most_versions) known_.emplace(text, &formula);
    return formula;
}

void formula_store::close() {
    known_ = {};
    if (tools_ == nullptr) return;
    room_.size = std::max(least_room_, std::min(wanted_room_, most_room));
    room_.bytes.reset(new unsigned char[room_.size]);
    tools_->parser.reserve(largest_);
    tools_->specialiser.reserve(largest_.nodes);
}

kept_formula* formula_store::find(std::string_view text, const name_scope& names,
                                  const source_kinds& kinds) const {
    const auto [first, last] = known_.equal_range(text);
    const auto found = std::find_if(first, last, [&](const auto& entry) {
        return entry.second->kinds_ == kinds && is_same(entry.second->names_, names);
    });
    return found != last ? found->second : nullptr;
}

kept_formula& formula_store::add(std::string_view text, const source_kinds& kinds) {
    static_assert(std::is_trivially_destructible_v<kept_formula>);
    auto* formula = ::new (memory_.take(sizeof(kept_formula))) kept_formula();
    formula->text_ = text;
    formula->kinds_ = kinds;
    formula->store_ = this;
    return *formula;
}

// The formulas of a converter have the same names, and often those of nodes that follow one another.
name_scope formula_store::copy(const name_scope& names) {
    if (!is_same(last_names_, names))
        last_names_ = {memory_.copy(names.rows.data(), names.rows.size()), names.no_from_to};
    return last_names_;
}

void formula_store::read(kept_formula& formula, name_resolver names, bool is_lasting, bool is_told) {
    const formula_tree& tree = tools_->parser.read(formula.text_, names, is_told);
    formula.is_read_ = true;
    formula.is_refused_ = is_told ? !is_usable(tree) : !tree.is_accepted();
    formula.is_empty_ = formula.is_refused_ || tree.size() == 0;
    formula.is_lasting_ = is_lasting || formula.is_empty_;
    if (!formula.is_empty_) put(formula, tree, is_lasting);
}

// Where there is no room for a form, the instructions have some.
void formula_store::put(kept_formula& formula, const formula_tree& tree, bool is_lasting) {
    const std::size_t of_instructions = tree.size() * sizeof(formula_instruction);
    auto parts = tools_->specialiser.prepare(tree, formula.kinds_);
    const std::size_t of_form = parts ? specialised_formula::size_of(*parts) : 0;
    // Whoever listens while the description is loaded may want to watch its formulas later on.
    const bool needs_instructions = !parts || !formula.kinds_.are_certain || is_lasting;
    std::size_t before_form = needs_instructions ? of_instructions : 0;
    if (parts && !is_lasting && before_form + of_form > room_.size) {
        parts.reset();
        before_form = of_instructions;
    }
    const std::size_t size = before_form + (parts ? of_form : 0);
    auto* const room = is_lasting ? static_cast<unsigned char*>(memory_.take(size)) : take_room(size);
    formula.program_ = {};
    if (before_form != 0) formula.program_.instructions = put_instructions(tree, room);
    if (parts) formula.program_.specialised = specialised_formula::make(room + before_form, *parts);
    formula.round_ = room_.round;
}

unsigned char* formula_store::take_room(std::size_t size) noexcept {
    constexpr std::size_t alignment = alignof(specialised_formula);
    const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
    if (rounded > room_.size - room_.used) {
        room_.used = 0;
        ++room_.round;
    }
    unsigned char* const taken = room_.bytes.get() + room_.used;
    room_.used += rounded;
    return taken;
}

gsl::span<const formula_instruction> formula_store::put_instructions(const formula_tree& tree, void* room) {
    auto* const instructions = static_cast<formula_instruction*>(room);
    const auto nodes = tree.nodes();
    std::transform(nodes.begin(), nodes.end(), instructions,
                   [](const formula_node& node) { return node.instruction; });
    return {instructions, nodes.size()};
}

}  // namespace GenICam
