#include "apps/inspect/lint/formula_outline.h"

#include "genicam/document/node_facts.h"
#include "platform/ascii.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <utility>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

using GenICam::formula_tree;
using GenICam::token_kind;
using platform::trimmed;
using node_index = formula_tree::index;

// What people expect who have learnt mathematics and one of the common languages: what binds tightest first.
constexpr GenICam::name_list expected_levels[] = {
    "**", "* / %", "+ -", "<< >>", "&", "^", "|", "> >= < <= = <>", "&&", "||",
};

std::ptrdiff_t expected_level(token_kind kind) {
    const std::string_view sign = GenICam::operation_of(kind)->text;
    return std::find_if(std::begin(expected_levels), std::end(expected_levels),
                        [&](const GenICam::name_list& level) { return level.contains(sign); }) -
           std::begin(expected_levels);
}

bool expects_left_first(token_kind left, token_kind right) {
    if (left == token_kind::power && right == token_kind::power) return false;
    return expected_level(left) <= expected_level(right);
}

bool computes_left_first(token_kind left, token_kind right) {
    return GenICam::operation_of(left)->level >= GenICam::operation_of(right)->level;
}

std::string shortened(std::string_view text) {
    constexpr std::size_t longest = 40;
    const std::string_view inner = trimmed(text);
    return inner.size() <= longest ? std::string(inner) : std::string(inner.substr(0, longest - 3)) + "...";
}

class outline_writer {
public:
    explicit outline_writer(const formula_tree& tree) : tree_(tree), chain_of_(tree.size()) {}

    [[nodiscard]] formula_outline write();

private:
    void add_breaks();
    void add_short_rounds();
    void add_surprises();
    [[nodiscard]] std::vector<std::vector<node_index>> join_chains();
    [[nodiscard]] bool stand_together(std::size_t end, std::size_t start) const;
    [[nodiscard]] bool is_negated(node_index operand) const;
    void judge_order(const std::vector<node_index>& chain, std::size_t first);
    void judge_base(const std::vector<node_index>& chain, std::size_t power);

    [[nodiscard]] bool is_operator(node_index node) const {
        return tree_[node].instruction.code == GenICam::op_code::op_binary &&
               GenICam::operation_of(tree_[node].symbol) != nullptr;
    }

    // Of operators between two operands.
    [[nodiscard]] token_kind kind(node_index node) const { return tree_[node].symbol; }
    [[nodiscard]] std::string_view sign(node_index node) const {
        return GenICam::operation_of(kind(node))->text;
    }
    [[nodiscard]] std::size_t start(node_index node) const { return tree_[node].offset; }
    [[nodiscard]] std::size_t end(node_index node) const { return start(node) + sign(node).size(); }
    [[nodiscard]] node_index left_operand(node_index node) const {
        return tree_.operand_before(formula_tree::last_operand(node));
    }

    [[nodiscard]] std::string piece(std::size_t start, std::size_t end) const {
        return shortened(tree_.text().substr(start, end - start));
    }

    const formula_tree& tree_;
    // A chain is operands with operators between them, without parentheses around a part of them. For each
    // operator the one that is computed last.
    std::vector<node_index> chain_of_;
    formula_outline outline_;
};

formula_outline outline_writer::write() {
    add_breaks();
    add_short_rounds();
    add_surprises();
    return std::move(outline_);
}

void outline_writer::add_breaks() {
    const std::size_t end = tree_.text().size();
    if (tree_.dropped) {
        outline_.breaks.push_back(
            {*tree_.dropped, "ends behind \"" + piece(*tree_.dropped, end) + "\", which is dropped"});
    }
    // One colon is missing for all that are missing between the same parentheses.
    constexpr const char* no_colon = "a ? has no :";
    bool lacks_colon = false;
    for (const GenICam::unfinished_part& part : tree_.unfinished) {
        const bool is_call = part.symbol == token_kind::function;
        if (is_call && lacks_colon) outline_.breaks.push_back({part.offset, no_colon});
        if (is_call) outline_.breaks.push_back({part.offset, piece(part.offset, end) + " is not closed"});
        lacks_colon = !is_call;
    }
    if (lacks_colon) outline_.breaks.push_back({0, no_colon});
}

void outline_writer::add_short_rounds() {
    for (node_index node = 0; node < tree_.size(); ++node) {
        if (tree_[node].symbol != token_kind::function || tree_.operands(node).size() != 1) continue;
        const std::size_t start = tree_[node].offset;
        const std::string_view name = GenICam::next_token(tree_.text().substr(start)).text;
        if (name != "ROUND" && name != "round") continue;
        const std::size_t close = tree_.text().find(')', tree_[formula_tree::last_operand(node)].end);
        outline_.short_rounds.push_back({start, piece(start, close + 1)});
    }
}

// Where a text breaks off, operators may have got operands that do not stand beside them.
bool outline_writer::stand_together(std::size_t end, std::size_t start) const {
    return end <= start && trimmed(tree_.text().substr(end, start - end)).empty();
}

// The operators of each chain in the order of the text. From the last one on, so that a chain is known before
// its parts.
std::vector<std::vector<node_index>> outline_writer::join_chains() {
    std::vector<std::vector<node_index>> chains(tree_.size());
    std::iota(chain_of_.begin(), chain_of_.end(), node_index{0});
    for (node_index node = tree_.size(); node-- > 0;) {
        const std::vector<node_index> operands = tree_.operands(node);
        if (!is_operator(node) || operands.size() != 2) continue;
        chains[chain_of_[node]].push_back(node);
        const auto join = [&](node_index operand, bool is_beside) {
            if (is_beside && is_operator(operand) && !tree_[operand].is_enclosed)
                chain_of_[operand] = chain_of_[node];
        };
        join(operands[0], stand_together(tree_[operands[0]].end, start(node)));
        join(operands[1], stand_together(end(node), tree_[operands[1]].start));
    }
    for (std::vector<node_index>& chain : chains) {
        std::sort(chain.begin(), chain.end(),
                  [this](node_index left, node_index right) { return start(left) < start(right); });
    }
    return chains;
}

void outline_writer::add_surprises() {
    for (const std::vector<node_index>& chain : join_chains()) {
        for (std::size_t at = 0; at < chain.size(); ++at) judge_order(chain, at);
        for (std::size_t at = 0; at < chain.size(); ++at) judge_base(chain, at);
    }
}

bool outline_writer::is_negated(node_index operand) const {
    while (tree_[operand].instruction.code == GenICam::op_code::op_unary && !tree_[operand].is_enclosed &&
           tree_[operand].symbol != token_kind::function) {
        if (tree_[operand].symbol == token_kind::minus) return true;
        operand = formula_tree::last_operand(operand);
    }
    return false;
}

// Looks at an operator and each behind it that competes for the operand between them.
void outline_writer::judge_order(const std::vector<node_index>& chain, std::size_t first) {
    const node_index left = chain[first];
    for (std::size_t second = first + 1; second < chain.size(); ++second) {
        const node_index right = chain[second];
        const bool left_first = computes_left_first(kind(left), kind(right));
        if (left_first != expects_left_first(kind(left), kind(right))) {
            const char* const order = left_first ? "({} {} {}) {} {}" : "{} {} ({} {} {})";
            const std::size_t stop = tree_[formula_tree::last_operand(right)].end;
            outline_.surprises.push_back(
                {start(left),
                 "computed as " + fmt::format(fmt::runtime(order),
                                              piece(tree_[left_operand(left)].start, start(left)), sign(left),
                                              piece(end(left), start(right)), sign(right),
                                              piece(end(right), stop))});
        }
        if (left_first) return;  // those further behind get the result of both
    }
}

// A minus before the left operand of ** belongs to it.
void outline_writer::judge_base(const std::vector<node_index>& chain, std::size_t power) {
    const node_index node = chain[power];
    const bool is_first = power == 0;
    const bool stands_alone = is_first || chain_of_[left_operand(node)] != chain_of_[node];
    const node_index base = stands_alone ? left_operand(node) : formula_tree::last_operand(chain[power - 1]);
    if (kind(node) != token_kind::power || !is_negated(base)) return;
    const std::string_view before = tree_.text().substr(0, tree_[left_operand(node)].start);
    const std::size_t from =
        is_first ? before.find_last_not_of(platform::white_space) + 1 : end(chain[power - 1]);
    const std::string text = piece(from, start(node));
    outline_.surprises.push_back({from, fmt::format("{} ** is computed as ({}) **", text, text)});
}

}  // namespace

formula_outline outline_formula(const formula_tree& tree) { return outline_writer(tree).write(); }

std::string refusal_text(std::string_view formula, const GenICam::parse_end& end) {
    const std::size_t read = formula.size() - end.rest.size();
    const std::string_view why = status_text(end.status);
    constexpr std::size_t shown = 30;
    const std::string_view before = formula.substr(read > shown ? read - shown : 0, std::min(read, shown));
    return fmt::format("refused at character {}, behind \"{}\": {}", read + 1, trimmed(before),
                       why.empty() ? "too deep or too long" : why);
}

std::string_view ignored_text(const GenICam::parse_end& end) {
    return end.status == GenICam::parse_status::none ? trimmed(end.rest) : std::string_view();
}

std::vector<std::string> formula_notes(const formula_tree& tree) {
    std::vector<std::string> notes;
    const std::string_view ignored = ignored_text(tree.end);
    if (!ignored.empty()) notes.push_back("ends before \"" + shortened(ignored) + "\", which is ignored");
    const formula_outline outline = outline_formula(tree);
    for (const auto* remarks : {&outline.breaks, &outline.surprises}) {
        for (const formula_remark& remark : *remarks) notes.push_back(remark.text);
    }
    return notes;
}

}  // namespace selvane_inspect
