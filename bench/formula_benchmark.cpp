// What a formula costs, as a ratio to an optimising library that knows doubles only. Formulas of real
// descriptions are measured where that library can express them. Both are timed in turn, so that what else
// the machine does hits both, and the best of each counts.

#include "data_paths.h"
#include "formula/formula_evaluator.h"
#include "formula/formula_parser.h"
#include "formula/formula_store.h"
#include "formula/formula_token.h"
#include "tests/adapter/allocation_watch.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <muParser.h>
#include <pugixml.hpp>

using namespace GenICam;

namespace {

/// The variables of one formula, as a node keeps them.
class variables {
public:
    explicit variables(bool is_integer) : is_integer_(is_integer) {}

    resolved_name operator()(std::string_view name) {
        const auto known = std::find(names_.begin(), names_.end(), name);
        const auto index = static_cast<std::size_t>(known - names_.begin());
        if (known == names_.end()) {
            const std::int64_t number = static_cast<std::int64_t>(index) + 3;
            names_.emplace_back(name);
            values_.push_back(is_integer_ ? eval_value::of(number)
                                          : eval_value::of(static_cast<double>(number)));
        }
        return identifier_id{1000 + index};
    }
    const eval_value* operator()(identifier_id id) const {
        const std::size_t index = id - 1000;
        return index < values_.size() ? &values_[index] : nullptr;
    }
    [[nodiscard]] number_kind kind() const {
        return is_integer_ ? number_kind::integer : number_kind::floating;
    }
    [[nodiscard]] const std::vector<std::string>& names() const { return names_; }
    [[nodiscard]] double number(std::size_t index) const { return to_double(values_[index]); }

private:
    bool is_integer_;
    std::vector<std::string> names_;
    std::vector<eval_value> values_;
};

std::string with_underscores(std::string_view name) {
    std::string text = "v_";
    for (const char c : name) text += c == '.' ? '_' : c;
    return text;
}

const std::map<std::string_view, const char*> other_functions = {
    {"SIN", "sin("},   {"COS", "cos("},   {"TAN", "tan("}, {"ATAN", "atan("},
    {"ASIN", "asin("}, {"ACOS", "acos("}, {"EXP", "exp("}, {"LN", "ln("},
    {"LG", "log10("},  {"SQRT", "sqrt("}, {"ABS", "abs("}, {"SGN", "sign("},
};

/// One token as the other library writes it; nothing where it has no such thing.
std::optional<std::string> translate(const formula_token& token) {
    switch (token.kind) {
        case token_kind::number:
            return std::to_string(to_double(token.number));
        case token_kind::identifier:
            return with_underscores(token.text);
        case token_kind::function: {
            const auto found = other_functions.find(token.text);
            if (found == other_functions.end()) return std::nullopt;
            return found->second;
        }
        case token_kind::equal:
            return "==";
        case token_kind::not_equal:
            return "!=";
        case token_kind::power:
            return "^";
        case token_kind::complement:
        case token_kind::remainder:
        case token_kind::bit_and:
        case token_kind::bit_or:
        case token_kind::bit_xor:
        case token_kind::shift_left:
        case token_kind::shift_right:
        case token_kind::end:
            return std::nullopt;
        default:
            return std::string(operation_of(token.kind)->text);
    }
}

std::optional<std::string> translate(std::string_view text) {
    std::string translated;
    formula_token token = next_token(text);
    for (; token.kind != token_kind::end; token = next_token(token.rest)) {
        const std::optional<std::string> part = translate(token);
        if (!part) return std::nullopt;
        translated += *part + " ";
    }
    if (token.status != parse_status::end_of_text) return std::nullopt;
    return translated;
}

result<formula_program> compile(std::string_view text, variables& names) {
    return parse_formula(text, names, [&names](identifier_id) { return known(names.kind()); });
}

/// A formula made ready in both libraries.
class contest {
public:
    contest(std::string_view text, bool is_integer) : text_(text), variables_(is_integer) {
        auto parsed = parse_instructions(text, variables_);
        const std::optional<std::string> translated = translate(text);
        if (!parsed || parsed.value().empty() || !translated) return;
        plain_ = std::move(parsed.value());
        specialised_ = compile(text, variables_).value();
        translated_ = *translated;
        prepare_other();
    }

    [[nodiscard]] bool is_possible() const { return is_possible_; }
    [[nodiscard]] bool is_specialised() const { return specialised_.specialised != nullptr; }

    void run_plain() const { benchmark::DoNotOptimize(evaluate_formula(plain_, variables_)); }
    void run_specialised() const { benchmark::DoNotOptimize(evaluate_formula(specialised_, variables_)); }
    void run_other() const { benchmark::DoNotOptimize(other_.Eval()); }

    /// Has the formula kept as a document keeps those of a node with the same names.
    [[nodiscard]] kept_formula& keep_in(formula_store& store) const {
        expansion_budget budget;
        variable_table names(true, budget);
        names.reserve(variables_.names().size(), 0);
        identifier_id id = first_source_id;
        for (const std::string& name : variables_.names()) names.add_variable(name, id++);
        return store.keep(text_, names, {variables_.kind(), variables_.kind()});
    }

    // From the text to what can be run. It parses when it computes for the first time.
    void compile_other() {
        other_.SetExpr(translated_);
        benchmark::DoNotOptimize(other_.Eval());
    }

private:
    void prepare_other() {
        try {
            for (std::size_t at = 0; at < variables_.names().size(); ++at) {
                numbers_.push_back(variables_.number(at));
                other_.DefineVar(with_underscores(variables_.names()[at]), &numbers_.back());
            }
            other_.SetExpr(translated_);
            other_.Eval();
            other_.Eval();
            is_possible_ = true;
        } catch (const mu::ParserError&) {
            is_possible_ = false;
        }
    }

    std::string text_;
    std::string translated_;
    variables variables_;
    formula_program plain_;
    formula_program specialised_;
    std::deque<double> numbers_;
    mu::Parser other_;
    bool is_possible_ = false;
};

template <class Run>
double nanoseconds_of(Run run, int runs = 500) {
    const auto start = std::chrono::steady_clock::now();
    for (int at = 0; at < runs; ++at) run();
    const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - start;
    return taken.count() / runs;
}

struct times {
    double plain = std::numeric_limits<double>::max();
    double specialised = std::numeric_limits<double>::max();
    double other = std::numeric_limits<double>::max();

    void measure(const contest& both) {
        plain = std::min(plain, nanoseconds_of([&both] { both.run_plain(); }));
        specialised = std::min(specialised, nanoseconds_of([&both] { both.run_specialised(); }));
        other = std::min(other, nanoseconds_of([&both] { both.run_other(); }));
    }
};

void single(benchmark::State& state, const char* text, bool is_integer) {
    const contest both(text, is_integer);
    if (!both.is_possible()) {
        state.SkipWithError("not a formula of both libraries");
        return;
    }
    times best;
    for ([[maybe_unused]] const auto _ : state) best.measure(both);
    state.counters["plain_ns"] = best.plain;
    state.counters["specialised_ns"] = best.specialised;
    state.counters["other_ns"] = best.other;
    state.counters["ratio"] = best.specialised / best.other;
}

struct real_formula {
    std::string text;
    bool is_integer;

    bool operator<(const real_formula& other) const {
        return std::tie(text, is_integer) < std::tie(other.text, other.is_integer);
    }
};

class formula_collector : public pugi::xml_tree_walker {
public:
    explicit formula_collector(std::set<real_formula>& found) : found_(found) {}

    bool for_each(pugi::xml_node& node) override {
        const std::string_view name = node.name();
        if (name.substr(0, 7) != "Formula") return true;
        const bool is_integer = std::string_view(node.parent().name()).substr(0, 3) == "Int";
        found_.insert({node.child_value(), is_integer});
        return true;
    }

private:
    std::set<real_formula>& found_;
};

std::set<real_formula> read_real_formulas() {
    std::set<real_formula> found;
    formula_collector collector(found);
    std::error_code missing;
    const std::filesystem::path folder = std::filesystem::path(SELVANE_SHARED_DESCRIPTIONS) / "real";
    for (const auto& file : std::filesystem::directory_iterator(folder, missing)) {
        pugi::xml_document xml;
        xml.load_file(file.path().c_str());
        xml.traverse(collector);
    }
    return found;
}

/// The real formulas that both libraries can express.
std::deque<contest> hold_contests() {
    std::deque<contest> contests;
    for (const real_formula& formula : read_real_formulas()) {
        contests.emplace_back(formula.text, formula.is_integer);
        if (!contests.back().is_possible()) contests.pop_back();
    }
    return contests;
}

// The sum over all formulas, and the mean of the logarithms of the ratios of each.
void real_formulas(benchmark::State& state) {
    const std::deque<contest> contests = hold_contests();
    if (contests.empty()) {
        state.SkipWithError("no descriptions");
        return;
    }
    std::vector<times> best(contests.size());
    for ([[maybe_unused]] const auto _ : state) {
        for (int round = 0; round < 10; ++round) {
            for (std::size_t at = 0; at < contests.size(); ++at) best[at].measure(contests[at]);
        }
    }
    times sum{0, 0, 0};
    double logarithms = 0;
    for (const times& one : best) {
        sum.plain += one.plain;
        sum.specialised += one.specialised;
        sum.other += one.other;
        logarithms += std::log(one.specialised / one.other);
    }
    const auto count = static_cast<double>(contests.size());
    state.counters["formulas"] = count;
    state.counters["unspecialised"] = static_cast<double>(std::count_if(
        contests.begin(), contests.end(), [](const contest& both) { return !both.is_specialised(); }));
    state.counters["ratio_plain"] = sum.plain / sum.other;
    state.counters["ratio_sum"] = sum.specialised / sum.other;
    state.counters["ratio_mean"] = std::exp(logarithms / count);
    const std::uint64_t before = adapter_test::AllocationCount();
    for (const contest& one : contests) one.run_specialised();
    state.counters["allocations"] = static_cast<double>(adapter_test::AllocationCount() - before);
    state.counters["mean_ns"] = sum.specialised / count;
}

// From the texts to programs. A document has room for the programs of some dozen formulas: who asks for one
// after the other has each of them read.
void compile_real_formulas(benchmark::State& state) {
    std::deque<contest> contests = hold_contests();
    if (contests.empty()) {
        state.SkipWithError("no descriptions");
        return;
    }
    formula_store store;
    std::vector<kept_formula*> kept;
    for (const contest& both : contests) kept.push_back(&both.keep_in(store));
    store.close();
    const auto read_all = [&kept] {
        for (kept_formula* formula : kept) benchmark::DoNotOptimize(formula->program());
    };
    const auto read_by_other = [&contests] {
        for (contest& both : contests) both.compile_other();
    };
    double own = std::numeric_limits<double>::max();
    double other = own;
    for ([[maybe_unused]] const auto _ : state) {
        for (int pass = 0; pass < 20; ++pass) {
            const std::uint64_t round = store.round();
            own = std::min(own, nanoseconds_of(read_all, 1));
            if (store.round() < round + 2) state.SkipWithError("some formulas were not read again");
            other = std::min(other, nanoseconds_of(read_by_other, 1));
        }
    }
    const auto count = static_cast<double>(contests.size());
    state.counters["formulas"] = count;
    state.counters["own_ns"] = own / count;
    state.counters["other_ns"] = other / count;
    state.counters["compile_ratio"] = own / other;
}

constexpr const char* base_and_offset = "BASE + 0x50000";
constexpr const char* threshold = "(C>=15)?1:0";
constexpr const char* scale = "FROM*0.001";
constexpr const char* divide = "FROM/1000";
constexpr const char* polynomial = "((a*x+b)*x+c)*x+d";
constexpr const char* root = "SQRT(a*a+b*b)";
constexpr const char* decibels = "20*LG(FROM/100)";
constexpr const char* layout = "(DLT<7)?0:(LIN+QDC+MDV+DIV+(2*DEL)+((UAS=0)?0:4)+EIN+C2C+(7))";
constexpr const char* chain =
    "(BPP=1)?0:((BPP=2)?1:((BPP=4)?2:((BPP=8)?3:((BPP=10)?4:((BPP=12)?5:((BPP=14)?6:((BPP=16)?7:8)))))))";
constexpr const char* mixed = "(S=G)?D*0.5:0";

BENCHMARK_CAPTURE(single, base_and_offset, base_and_offset, true);
BENCHMARK_CAPTURE(single, threshold, threshold, true);
BENCHMARK_CAPTURE(single, scale, scale, false);
BENCHMARK_CAPTURE(single, divide_integer, divide, true);
BENCHMARK_CAPTURE(single, divide_float, divide, false);
BENCHMARK_CAPTURE(single, polynomial_integer, polynomial, true);
BENCHMARK_CAPTURE(single, polynomial_float, polynomial, false);
BENCHMARK_CAPTURE(single, root, root, false);
BENCHMARK_CAPTURE(single, decibels, decibels, false);
BENCHMARK_CAPTURE(single, layout, layout, true);
BENCHMARK_CAPTURE(single, chain, chain, true);
BENCHMARK_CAPTURE(single, mixed_branches, mixed, false);
BENCHMARK(real_formulas)->Iterations(3);
BENCHMARK(compile_real_formulas)->Iterations(3);

}  // namespace
