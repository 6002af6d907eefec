#include "apps/inspect/lint/rules.h"
#include "apps/inspect/marked_items.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace selvane_inspect {
namespace {

constexpr lint_rule rules[] = {
    {"load-message", severity::warning,
     "The engine says so while it loads, and leaves out what it speaks of.",
     "Mend the element that it names.", check_load_messages},
    {"ask-message", severity::warning, "The engine says so when it is asked for what the description states.",
     "Mend the element that it names.", check_ask_messages},
    {"read-message", severity::note,
     "The engine says so when it reads values, limits and states over the registers as they are.",
     "Look whether a real camera would have other registers (give them with --memory or --register), and "
     "whether the port is the one named Device: pages reach no other.",
     check_read_messages},
    {"load-exception", severity::error, "An exception leaves the load, and the page goes down with it.",
     "Write the name of an entry behind \".Entry.\".", check_load_exception},
    {"circle", severity::error, "The engine follows links without end, until its stack is used up.",
     "Let one of the nodes hold its value, or read it from somewhere else.", check_circles},
    {"category-circle", severity::warning,
     "A walk over the categories comes round again; what walks without looking back never ends.",
     "Take one of the entries out.", check_category_circles},
    {"deep-chain", severity::warning,
     "Every node on the way costs room on the stack of the host, and time: it is computed anew for "
     "everyone who asks.",
     "Let nodes read from closer to the registers.", check_depth},
    {"division-by-zero", severity::warning,
     "An integer division without a result ends the process, and these registers lead to one.",
     "Add something to the divisor that is never zero, such as (X=0); a ternary does not help.",
     check_divisions_by_zero},
    {"formula-refused", severity::error, "The node has no program: every read and write of it fails.",
     "Write what the language takes; see what stands before the place.", check_refused_formulas},
    {"round-one-argument", severity::error, "ROUND takes two arguments; the formula is refused.",
     "Say how many digits to keep: ROUND(x, 0).", check_short_rounds},
    {"formula-breaks-off", severity::warning,
     "The text ends where something is missing, and what was read so far is the formula.",
     "Complete the formula.", check_broken_off_formulas},
    {"formula-text-ignored", severity::warning,
     "The formula is complete before its text ends, and what follows is never read.",
     "Take the rest away, or write the operator that is missing.", check_ignored_text},
    {"operator-order", severity::warning,
     "The language has five levels of operators: ** binds like *, and & | ^ << >> share a level as "
     "comparisons and "
     "logic do.",
     "Write the parentheses that say what is meant.", check_operator_order},
    {"integer-division", severity::warning,
     "FROM comes as an integer from an integer node, and a division of integers drops the fraction.",
     "Write one of the numbers with a point, as in FROM/10.0.", check_integer_divisions},
    {"guarded-division", severity::warning,
     "Both branches of a ternary are computed before it chooses: an integer division by zero ends the "
     "process.",
     "Make the divisor itself harmless, as in A/(B+(B=0)).", check_guarded_divisions},
    {"no-node", severity::error,
     "An element without the children that decide its class becomes no node, in silence.",
     "Give it a Value, a pValue or a pIndex, as its kind takes them.", check_elements_without_node},
    {"unknown-element", severity::warning, "A name that nothing knows is passed over in silence.",
     "Mind the spelling; capitals count.", check_unknown_elements},
    {"unread-element", severity::note, "Other programs may read it, but the pages do not.",
     "Do not count on it on the pages.", check_unread_elements},
    {"cachable-not-read", severity::warning,
     "The element changes nothing: a node of that kind is read from the device every time.",
     "Leave it out, or use a kind of register that has a cache.", check_unread_cachables},
    {"no-name", severity::warning, "A node without a name cannot be referred to.", "Give it a Name.",
     check_missing_names},
    {"duplicate-name", severity::error, "A link finds one of the nodes of a name, and nobody knows which.",
     "Give each its own name.", check_duplicate_names},
    {"silent-link", severity::warning,
     "A link that leads nowhere, and nothing says so: the engine goes on as if it were not there.",
     "Write the name of a node of a kind that the link takes.", check_silent_links},
    {"float-without-min", severity::warning,
     "The default minimum is the smallest positive number: negative values are refused, and sliders begin "
     "there.",
     "State a Min or pMin.", check_floats_without_min},
    {"float-limit", severity::warning,
     "The engine wants digits before a point, takes no comma for one, and keeps integers to 64 bits: the "
     "limit "
     "is lost or is another number.",
     "Write 0.5 for .5 and 0,5, and a great number with a point or an exponent, as in 1e20.",
     check_float_limits},
    {"no-marks", severity::note, "Only what a description marks reaches a page.", no_marks_remedy,
     check_for_marks},
    {"mark-guid", severity::warning, "A mark that is no GUID in braces counts as none.",
     "Write it as {xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}.", check_mark_texts},
    {"mark-group", severity::warning, "Pages show items of their own groups alone, by exact name.",
     "List the item in a category whose display name is a group of a page: Exposure, Image, WDR, Special, "
     "Partial "
     "Scan, Partial scan, Lens or Color.",
     check_mark_groups},
    {"mark-kind", severity::warning,
     "There are controls for integers, floats, booleans, enumerations and commands.",
     "Mark a feature of such a kind.", check_mark_kinds},
    {"mark-empty", severity::warning, "An item without an element leaves no trace on any page.",
     "Mark a feature that the item lists, of a kind that has a control.", check_empty_items},
    {"mark-twice", severity::warning,
     "A page shows one item of an id, and puts one element of an id on the head row.",
     "Give each its own id.", check_double_marks},
    {"mark-lost", severity::warning,
     "Only items on the way from Root and the features that they list reach a page.",
     "List the item in a category below Root, and the feature in the item.", check_lost_marks},
    {"mark-range", severity::warning,
     "Pages keep the low 32 bits of integers and of their limits: the slider has another range or none.",
     "State a Min and a Max that fit into 32 bits with a sign.", check_wide_ranges},
    {"mark-steps", severity::warning,
     "A spin button counts positions in 16 bits, and a slider has them in 32: beyond, an arrow writes a "
     "value "
     "far from the one before.",
     "State a greater Inc, or a narrower Min and Max.", check_slider_steps},
    {"mark-unit", severity::warning,
     "An edit shows 19 characters of a number with three decimals and its unit; where both do not fit, the "
     "unit "
     "is left out.",
     "State a shorter Unit, or one in which the limits are smaller numbers.", check_units_without_room},
    {"mark-edge", severity::warning,
     "A page does not scroll: nobody sees or reaches what lies beyond its edge.",
     "List the feature on another page, or give it a shorter DisplayName or Unit; 13 rows fit on a page.",
     check_page_edges},
    {"mark-lock", severity::note,
     "Pages take pIsLocked for \"may be changed now\": without the link, a control over registers is always "
     "grey.",
     "Give it a pIsLocked that reads non-zero while the feature may be changed.", check_marks_without_lock},
    {"mark-grey", severity::note,
     "Pages take a pIsLocked that reads 0 for \"may not be changed\", the reverse of what other programs do.",
     "Where the link means \"locked\", let pIsLocked lead to an IntSwissKnife with the formula X=0 over it; "
     "where it does not, look over registers that a camera has (give them with --memory or --register).",
     check_grey_marks},
    {"mark-entries", severity::warning,
     "Over registers a page reads an enumeration by the values of its entries and writes it by their places: "
     "it shows another entry than the camera has.",
     "Number the entries from 0 without gaps; where the camera has other numbers, put an IntConverter "
     "between "
     "the enumeration and its register that turns places into them.",
     check_entry_numbers},
};

}  // namespace

gsl::span<const lint_rule> all_lint_rules() noexcept { return rules; }

std::string_view severity_word(severity level) noexcept {
    switch (level) {
        case severity::error:
            return "error";
        case severity::warning:
            return "warning";
        case severity::note:
            break;
    }
    return "note";
}

finding& finding_list::at_key(key which) {
    const auto [known, is_new] = known_.emplace(std::move(which), findings_.size());
    if (is_new) findings_.push_back({rule_, std::get<std::string>(known->first), {}, 0});
    return findings_[known->second];
}

void finding_list::add(text_position at, std::string message) {
    finding& one = at_key({rule_, std::move(message), at.line, at.column});
    if (++one.count == 1 && at.line != 0) one.positions.push_back(at);
}

void finding_list::add_habit(text_position at, std::string message) {
    finding& one = at_key({rule_, std::move(message), 0, 0});
    one.is_habit = true;
    ++one.count;
    if (at.line != 0) one.positions.push_back(at);
}

std::vector<finding> finding_list::take_sorted() {
    const auto is_before = [](text_position left, text_position right) {
        return std::tie(left.line, left.column) < std::tie(right.line, right.column);
    };
    for (finding& one : findings_) std::sort(one.positions.begin(), one.positions.end(), is_before);
    std::stable_sort(findings_.begin(), findings_.end(), [&](const finding& left, const finding& right) {
        return is_before(left.at(), right.at());
    });
    return std::move(findings_);
}

}  // namespace selvane_inspect
