// The formulas of real cameras: all parse but a few, all end with the text, and all take the fast path.

#include "data_paths.h"
#include "formula/formula_store.h"
#include "tests/adapter/allocation_watch.h"
#include "tests/formula/formula_node_test.h"
#include "tests/formula/formula_test_support.h"

#include <fstream>
#include <iterator>
#include <set>

#include <pugixml.hpp>

using namespace formula_test;

namespace {

struct found_formula {
    std::string text;
    std::set<std::string, std::less<>> names;  // constants, variables and expressions of the element
    bool has_from_and_to;
};

class formula_collector : public pugi::xml_tree_walker {
public:
    bool for_each(pugi::xml_node& element) override {
        const std::string_view name = element.name();
        if (name == "Formula" || name == "FormulaTo" || name == "FormulaFrom" || name == "Expression") {
            found.push_back({element.child_value(), names_of(element.parent()), name != "Formula"});
        }
        return true;
    }

    std::vector<found_formula> found;

private:
    static std::set<std::string, std::less<>> names_of(pugi::xml_node owner) {
        std::set<std::string, std::less<>> names;
        for (const char* binding : {"Constant", "pVariable", "Expression"}) {
            for (const pugi::xml_node element : owner.children(binding)) {
                names.insert(element.attribute("Name").value());
            }
        }
        return names;
    }
};

struct description {
    const char* file;
    std::size_t formulas;
    std::vector<std::string> refused;
};

// ROUND with one argument is no function of the language.
const std::vector<std::string> flir_refused = {"ROUND(FROM*SCALE)", "ROUND(FROM*SCALE/100)",
                                               "ROUND(FROM*SCALE/100)", "ROUND(FROM*SCALE/100)"};

const description descriptions[] = {
    {"real/adimec-q12a180cxp", 48, {}},
    {"real/alliedvision-gt1930", 67, {}},
    {"real/basler-a2a2600_20gmbas", 127, {}},
    {"real/euresys-coaxlink_tlinterface", 1078, {}},
    {"real/flir-bfs_u3_161s7m", 227, flir_refused},
    {"real/flir-sc6700", 6, {}},
    {"real/hamamatsu-c16240_20up", 5, {}},
    {"real/pointgrey-blackfly_50s5c-leading-line", 246, {}},
    {"real/pointgrey-gs3_u3_51s5c", 242, {}},
    {"real/vieworks-vnp604", 27, {}},
    {"marked/basler-a2a2600-marked", 127, {}},
    {"marked/flir-bfs_u3-marked", 227, flir_refused},
};

std::string read_file(const std::string& file) {
    std::ifstream in(std::string(SELVANE_SHARED_DESCRIPTIONS) + "/" + file + ".xml", std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// The formulas of a real description; none where there is no such file.
struct real_formulas {
    explicit real_formulas(const description& of) {
        const std::string text = read_file(of.file);
        pugi::xml_document xml;
        is_there = xml.load_buffer(text.data(), text.size());
        xml.traverse(collector);
    }

    bool is_there = false;
    formula_collector collector;
    const std::vector<found_formula>& found = collector.found;
};

resolved_name resolve(const found_formula& formula, std::string_view name) {
    const bool is_known =
        formula.names.count(name) != 0 || (formula.has_from_and_to && (name == "FROM" || name == "TO"));
    return is_known ? resolved_name(identifier_id{1}) : resolved_name();
}

void check(const description& expected, const std::vector<found_formula>& found) {
    std::vector<std::string> refused;
    for (const found_formula& formula : found) {
        const auto program =
            parse_formula(formula.text, [&formula](std::string_view name) { return resolve(formula, name); });
        if (!program) {
            refused.push_back(formula.text);
            continue;
        }
        EXPECT_FALSE(program.value().empty()) << formula.text;
        EXPECT_NE(program.value().specialised, nullptr) << formula.text;
    }
    std::sort(refused.begin(), refused.end());
    EXPECT_EQ(refused, expected.refused);
}

TEST(RealFormulas, ParseOrFailAsTheyShould) {
    std::size_t files = 0;
    for (const description& expected : descriptions) {
        const real_formulas formulas(expected);
        if (!formulas.is_there) continue;
        ++files;
        SCOPED_TRACE(expected.file);
        EXPECT_EQ(formulas.found.size(), expected.formulas);
        check(expected, formulas.found);
    }
    if (files == 0) GTEST_SKIP() << "no descriptions in " << SELVANE_SHARED_DESCRIPTIONS;
    EXPECT_EQ(files, std::size(descriptions));
}

// Whoever reads a formula of a real camera for the first time needs no memory from the heap, and gets the
// form that any formula gets.
TEST(RealFormulas, AreReadyAtFirstUse) {
    std::size_t compared = 0;
    for (const description& expected : descriptions) {
        const real_formulas formulas(expected);
        formula_store store;
        std::vector<kept_formula*> kept;
        const source_kinds kinds = {number_kind::floating, number_kind::floating, true};
        for (const found_formula& formula : formulas.found) {
            expansion_budget budget;
            variable_table names(!formula.has_from_and_to, budget);
            for (const std::string& name : formula.names) names.add_variable(name, first_source_id);
            kept.push_back(&store.keep(formula.text, names, kinds));
        }
        store.close();
        const std::uint64_t before = adapter_test::AllocationCount();
        for (kept_formula* formula : kept) static_cast<void>(formula->program());
        EXPECT_EQ(adapter_test::AllocationCount() - before, 0U) << expected.file;
        for (std::size_t at = 0; at < kept.size(); ++at) {
            const found_formula& formula = formulas.found[at];
            const auto program = parse_formula(
                formula.text, [&formula](std::string_view name) { return resolve(formula, name); }, kinds);
            EXPECT_EQ(kept[at]->is_refused(), !program.has_value()) << formula.text;
            if (!program) continue;
            EXPECT_EQ(kept[at]->program().specialised == nullptr, program.value().specialised == nullptr)
                << formula.text;
            ++compared;
        }
    }
    if (compared == 0) GTEST_SKIP() << "no descriptions in " << SELVANE_SHARED_DESCRIPTIONS;
}

TEST(RealFormulas, EveryAcceptedOneEndsWithItsText) {
    std::size_t accepted = 0;
    for (const description& expected : descriptions) {
        const real_formulas formulas(expected);
        for (const found_formula& formula : formulas.found) {
            const formula_tree tree = read_formula(
                formula.text, [&formula](std::string_view name) { return resolve(formula, name); });
            if (!tree.is_accepted()) continue;
            ++accepted;
            EXPECT_EQ(tree.end.status, parse_status::end_of_text) << formula.text;
        }
    }
    if (accepted == 0) GTEST_SKIP() << "no descriptions in " << SELVANE_SHARED_DESCRIPTIONS;
}

}  // namespace
