// Descriptions, formulas and numbers.

#include "adapter/item_discovery.h"
#include "formula/formula_parser.h"
#include "fuzz/fuzz_targets.h"
#include "genicam/core/number_parser.h"
#include "genicam/ieval.h"
#include "genicam/nodes/formula_watch.h"
#include "inspection/evaluation_guard.h"
#include "inspection/guarded_run.h"
#include "inspection/inspect_error.h"
#include "platform/text.h"
#include "tests/genicam_registers/feature_reader.h"
#include "tests/support/plain_number.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fuzz {
namespace {

using namespace GenICam;
using selvane_inspect::operation;

bool is_same(const eval_value& left, const eval_value& right) {
    if (left.is_integer != right.is_integer) return false;
    if (!left.is_integer && std::isnan(left.value.real)) return std::isnan(right.value.real);
    return std::memcmp(&left.value, &right.value, sizeof left.value) == 0;
}

void require_same(const result<eval_value>& left, const result<eval_value>& right, const char* what) {
    require(left.has_value() == right.has_value(), what);
    if (left) require(is_same(left.value(), right.value()), what);
}

std::uint64_t sum_of(std::string_view text) {
    std::uint64_t sum = 0xCBF29CE484222325;
    for (const char c : text) sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    return sum;
}

// A memory without order. Some of its addresses cannot be reached, and some writes are refused.
class faulty_memory final : public IDevicePort {
public:
    explicit faulty_memory(std::uint64_t seed) : seed_(seed) { bytes_.scatter(seed | 1); }

    std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                         std::uint32_t flags) override {
        if (is_unreachable(address)) return make_error_code(device_lost);
        return bytes_.read(address, buffer, length, flags);
    }
    std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                          std::uint32_t flags) override {
        if (is_unreachable(address) || is_unreachable(address + 1)) return make_error_code(access_denied);
        return bytes_.write(address, buffer, length, flags);
    }

private:
    [[nodiscard]] bool is_unreachable(std::uint64_t address) const {
        return (address ^ seed_) * 0x9E3779B97F4A7C15 >> 60 == 0;
    }

    std::uint64_t seed_;
    simcam::register_memory bytes_;
};

// Formulas of nodes are computed in their fast form and compared with the instructions one by one; one that
// would end the process fails instead.
class comparing_watch final : public formula_watch {
public:
    comparing_watch() : former_(std::exchange(present_formula_watch, this)) {}
    ~comparing_watch() { present_formula_watch = former_; }
    comparing_watch(const comparing_watch&) = delete;
    comparing_watch& operator=(const comparing_watch&) = delete;

private:
    result<eval_value> compute(const formula_view& program, const variable_map_impl& variables,
                               pugi::xml_node, child) override {
        const auto find = [&](identifier_id id) -> std::optional<eval_value> {
            const eval_value* const value = variables(id);
            return value != nullptr ? std::optional<eval_value>(*value) : std::nullopt;
        };
        const auto slow = selvane_inspect::run_guarded(program, find);
        if (slow.ends_process) return make_error_code(formula_parse_failed);
        result<eval_value> fast = evaluate_formula(program, variables);
        require(fast.has_value() == slow.failure.empty(), "a formula of a node fails in one form only");
        if (fast) require(is_same(fast.value(), slow.value), "the forms of a formula of a node differ");
        return fast;
    }

    formula_watch* former_;
};

class harmless_nodes {
public:
    explicit harmless_nodes(selvane_inspect::description& in) : guard_(in) {
        in.document()->for_each_node([this](INode* node) {
            if (is_harmless(*node)) nodes.push_back(node);
        });
    }

    void write(INode& node, std::uint64_t number) {
        static_cast<void>(guard_.find_in_store(node, [&] {
            const auto integer = static_cast<std::int64_t>(number % 1000);
            switch (node.get_node_type()) {
                case node_type::integer:
                    static_cast<void>(static_cast<IInteger&>(node).set_val(integer, 0));
                    break;
                case node_type::floating:
                    static_cast<void>(
                        static_cast<IFloat&>(node).set_val(static_cast<double>(integer) / 8, 0));
                    break;
                case node_type::boolean:
                    static_cast<void>(static_cast<IBoolean&>(node).set_val(integer % 2 == 0, 0));
                    break;
                case node_type::string:
                    static_cast<void>(static_cast<IString&>(node).set_val("text", 0));
                    break;
                case node_type::command:
                    static_cast<void>(static_cast<ICommand&>(node).execute(0));
                    break;
                case node_type::enumeration: {
                    auto& list = static_cast<IEnumeration&>(node);
                    static_cast<void>(
                        list.set_selected_entry(list.find_nearest_entry(static_cast<double>(integer)), 0));
                    break;
                }
                case node_type::register_block:
                    static_cast<void>(static_cast<IRegister&>(node).write(&number, 4, 0));
                    break;
                default:
                    break;
            }
        }));
    }

    std::vector<INode*> nodes;

private:
    bool is_harmless(INode& node) {
        for (std::size_t asked = 0; asked < selvane_inspect::operation_count; ++asked) {
            if (guard_.find(node, static_cast<operation>(asked)) != nullptr) return false;
        }
        if (node.get_node_type() != node_type::enumeration) return true;
        for (IEnumEntry* entry : static_cast<IEnumeration&>(node).get_entries()) {
            for (const operation asked : {operation::implemented, operation::available, operation::locked}) {
                if (guard_.find(*entry, asked) != nullptr) return false;
            }
        }
        return true;
    }

    selvane_inspect::evaluation_guard guard_;
};

// No write has happened since the caches were empty, so that they may not be noticed.
void require_caches_unseen(const std::vector<INode*>& nodes) {
    const comparing_watch watch;
    for (INode* node : nodes) {
        const std::string first = register_test::read_feature(*node, access_flags::none);
        require(register_test::read_feature(*node, access_flags::none) == first, "a second read differs");
        require(register_test::read_feature(*node, access_flags::bypass_cache) == first,
                "a read past the cache differs");
    }
}

// Evaluation of all of a large description takes longer than a fuzzer has.
constexpr std::size_t most_elements = 100;

void evaluate_all(selvane_inspect::description& in, std::uint64_t seed) {
    faulty_memory memory(seed);
    std::vector<unsigned char> block(64);
    in.document()->for_each_node([&](INode* node) {
        if (node->get_node_type() != node_type::port) return;
        auto* const port = static_cast<IPort*>(node);
        port->unbind();
        if (port->bind(&memory)) port->bind(0, block.data(), static_cast<std::int64_t>(block.size()));
    });
    harmless_nodes harmless(in);
    require_caches_unseen(harmless.nodes);
    for (INode* node : harmless.nodes) harmless.write(*node, seed = seed * 6364136223846793005 + 1);
    for (INode* node : harmless.nodes) node->get_eval()->invalidate();
    require_caches_unseen(harmless_nodes(in).nodes);
}

// A plain reading of what `parse_int` and `parse_hex` take.
template <class Number>
std::size_t plain_integer(std::string_view text, bool hexadecimal, Number& number) {
    std::string digits = hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
    const std::size_t first = text.find_first_of(digits);
    if (first == std::string_view::npos) return 0;
    bool negative = false;
    for (const char c : text.substr(0, first)) {
        if (std::strchr(" \t\n\v\f\r+-", c) == nullptr || c == '\0') return 0;
        if (c == '-') negative = !negative;
    }
    std::size_t at = first;
    const std::string_view rest = text.substr(first);
    if (!hexadecimal && rest.size() > 2 && rest[0] == '0' && (rest[1] == 'x' || rest[1] == 'X')) {
        hexadecimal = true;
        digits = "0123456789abcdefABCDEF";
        at += 2;
        if (digits.find(text[at]) == std::string::npos) return 0;
    }
    std::uint64_t sum = 0;
    for (; at < text.size() && digits.find(text[at]) != std::string::npos; ++at) {
        const std::string digit(1, text[at]);
        sum = sum * (hexadecimal ? 16 : 10) + std::strtoull(digit.c_str(), nullptr, 16);
    }
    number = static_cast<Number>(negative ? 0 - sum : sum);
    return at;
}

void check_guid(std::string_view text) {
    GUID guid{};
    const bool was_read = platform::parse_guid(platform::widen(text), guid);
    constexpr std::string_view form = "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
    bool is_guid = text.size() == form.size();
    std::string upper(text);
    for (std::size_t at = 0; is_guid && at < form.size(); ++at) {
        const char c = upper[at];
        if (c >= 'a' && c <= 'f') upper[at] = static_cast<char>(c - 'a' + 'A');
        is_guid = form[at] == 'x' ? std::strchr("0123456789abcdefABCDEF", c) != nullptr && c != '\0'
                                  : form[at] == c;
    }
    require(was_read == is_guid, "a GUID is read that is none, or none that is one");
    if (was_read) require(platform::narrow(platform::format_guid(guid)) == upper, "a GUID is another one");
}

}  // namespace

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "fuzz: %s\n", what);
    std::abort();
}

void description(std::string_view input) {
    for (const bool keep : {true, false}) {
        if (!keep && input.find("ZELIsDebugProperty") == std::string_view::npos) return;
        std::unique_ptr<IGenICamDoc> doc(load_genicam_doc(input.data(), input.size(), {true, keep}));
        if (!doc) return;
        std::string_view before;
        doc->for_each_node([&](INode* node) {
            require(before <= node->get_name(), "the nodes are not in the order of their names");
            before = node->get_name();
            INode* const found = doc->find_node(before);
            require(before.empty() ? found == nullptr : found != nullptr && found->get_name() == before,
                    "a node is not found by its name");
            static_cast<void>(node->get_eval()->describe());
            static_cast<void>(genicam_adapter::read_extension_guid(node, "ZELItemGUID"));
        });
        static_cast<void>(doc->dump(0));
        static_cast<void>(doc->dump(1));
        for (INode* node : doc->get_streamable_nodes())
            require(node->get_streamable(), "a node is streamable in the list alone");
        static_cast<void>(doc->find_port({}));
        INode* const root = doc->find_node("Root");
        if (root != nullptr && root->get_node_type() == node_type::category)
            static_cast<void>(genicam_adapter::collect_items(root));
    }
}

void evaluation(std::string_view input) {
    try {
        const auto in = selvane_inspect::description::from_bytes("input", std::string(input));
        if (in->document() == nullptr || in->tree().elements().size() > most_elements) return;
        const silence quiet;
        evaluate_all(*in, sum_of(input));
    } catch (const selvane_inspect::inspect_error&) {
        // The text is no XML.
    } catch (const std::bad_alloc&) {
        // A register may be as long as its description says.
    }
}

void formula(std::string_view text) {
    constexpr identifier_id first_id = 1000;
    const eval_value values[] = {eval_value::of(std::int64_t{7}), eval_value::of(-2.5),
                                 eval_value::of(std::int64_t{-9223372036854775807 - 1}),
                                 eval_value::of(1e300)};
    // "a" to "d" are variables, "x" to "z" constants, everything else is unknown.
    const auto resolve = [&](std::string_view name) -> resolved_name {
        if (name.size() != 1) return {};
        const char c = name.front();
        if (c >= 'a' && c <= 'd') return identifier_id{first_id + static_cast<unsigned>(c - 'a')};
        if (c >= 'x' && c <= 'z') return values[c - 'x'];
        return {};
    };
    const auto find = [&](identifier_id id) { return &values[id - first_id]; };
    const auto answer = [&](identifier_id id) { return std::optional<eval_value>(*find(id)); };
    const auto plain = parse_instructions(text, resolve);
    const auto untyped = parse_formula(text, resolve);
    const auto typed =
        parse_formula(text, resolve, [&](identifier_id id) { return known(kind_of(*find(id))); });
    require(plain.has_value() == untyped.has_value() && plain.has_value() == typed.has_value(),
            "a formula can be read for some kinds of variables only");
    if (!plain || selvane_inspect::run_guarded(plain.value(), answer).ends_process) return;
    const auto stepwise = evaluate_formula(plain.value(), find);
    for (const formula_program* program : {&untyped.value(), &typed.value()}) {
        require_same(stepwise, evaluate_formula(*program, find), "a specialised formula differs");
        require_same(stepwise, evaluate_formula(*program, answer), "a formula that asks differs");
    }
}

void numbers(std::string_view input) {
    check_guid(input);
    std::int64_t integer = 17;
    std::int64_t plain = 17;
    require(parse_int(input, integer) == plain_integer(input, false, plain), "an integer's length");
    require(integer == plain, "an integer's value");
    std::uint64_t hexadecimal = 17;
    std::uint64_t plain_hexadecimal = 17;
    require(parse_hex(input, hexadecimal) == plain_integer(input, true, plain_hexadecimal),
            "a hexadecimal number's length");
    require(hexadecimal == plain_hexadecimal, "a hexadecimal number's value");

    const std::string text(input);
    char* end = nullptr;
    double real = 17;
    const double expected = test_support::plain_strtod(text.c_str(), &end);
    const auto length = static_cast<std::size_t>(end - text.c_str());
    require(parse_double(input, real) == length, "a float's length");
    require(length == 0 || is_same(eval_value::of(real), eval_value::of(expected)), "a float's value");

    eval_value number = eval_value::of(std::int64_t{17});
    const std::size_t consumed = parse_number(input, number);
    const std::size_t whole = plain_integer(input, false, plain);
    const bool is_float = whole != 0 && whole < input.size() && std::strchr(".eE", input[whole]) != nullptr &&
                          input[whole] != '\0';
    require(consumed == (is_float ? length : whole), "a number's length");
    if (consumed == 0) return;
    require(is_same(number, is_float ? eval_value::of(expected) : eval_value::of(integer)),
            "a number's value");
}

}  // namespace fuzz
