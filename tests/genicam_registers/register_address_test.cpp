// Where a register lies: fixed sums, and terms that other nodes add.

#include "tests/genicam_registers/register_test.h"

#include "genicam/nodes/float_reg_nodes.h"
#include "genicam/nodes/int_reg_nodes.h"
#include "genicam/nodes/masked_int_reg_nodes.h"

#include <functional>
#include <utility>

using namespace register_test;

namespace {

// Every kind of register, with a read that shows its address to the device.
struct register_kind {
    const char* element;
    std::function<std::error_code(TestDocument&)> read;
};

const register_kind kinds[] = {
    {"IntReg", [](TestDocument& doc) { return failure_of(doc.Integer("r").get_val(0)); }},
    {"FloatReg", [](TestDocument& doc) { return failure_of(doc.Float("r").get_val(0)); }},
    {"MaskedIntReg", [](TestDocument& doc) { return failure_of(doc.Integer("r").get_val(0)); }},
    {"StringReg", [](TestDocument& doc) { return failure_of(doc.String("r").get_val(0)); }},
    {"Register",
     [](TestDocument& doc) {
         std::uint32_t bytes = 0;
         return doc.Register("r").read(&bytes, sizeof bytes, 0);
     }},
    {"StructEntry", [](TestDocument& doc) { return failure_of(doc.Integer("r").get_val(0)); }},
};

std::string element_of(const register_kind& kind, const std::string& children) {
    if (std::string(kind.element) == "StructEntry") {
        return "<StructReg Name='struct'>" + children +
               "<StructEntry Name='r'><Bit>0</Bit></StructEntry></StructReg>";
    }
    const std::string always_read = "<Cachable>NoCache</Cachable>";
    return element(kind.element, always_read + children);
}

// The element and the name that messages about the address of this kind carry.
std::string named_element(const register_kind& kind) {
    return std::string(kind.element) == "StructEntry" ? "StructReg (\"struct\")"
                                                      : std::string(kind.element) + " (\"r\")";
}

std::uint64_t address_read(TestDocument& doc, const register_kind& kind) {
    doc.device.ForgetAccesses();
    EXPECT_EQ(kind.read(doc), std::error_code()) << kind.element;
    const auto accesses = doc.device.TakeAccesses();
    return accesses.empty() ? ~std::uint64_t{0} : accesses.back().address;
}

TEST(RegisterAddress, AddsItsElements) {
    for (const register_kind& kind : kinds) {
        TestDocument doc(element_of(kind, address("0x100") + address("0x20") + length("4")));
        EXPECT_EQ(address_read(doc, kind), 0x120U) << kind.element;
        EXPECT_THAT(doc.load_messages, IsEmpty());
    }
}

TEST(RegisterAddress, LeavesOutWhatIsNoNumber) {
    for (const register_kind& kind : kinds) {
        TestDocument doc(element_of(kind, address("0x100") + address("xyz") + address("0x20") + length("4")));
        EXPECT_EQ(address_read(doc, kind), 0x120U) << kind.element;
        EXPECT_THAT(doc.load_messages, ElementsAre("calc_address_nodes_sum, " + named_element(kind) +
                                                   ". Node contains invalid \"Address\" XML element.\n"));
    }
}

TEST(RegisterAddress, AddsDecimalAndNegativeTexts) {
    const struct {
        const char* first;
        const char* second;
        std::uint64_t sum;
    } rows[] = {
        {"256", "-16", 0xF0},
        {" 0X10", "+1", 0x11},
        {"0", "-1", ~std::uint64_t{0}},
        {"0xFFFFFFFFFFFFFFF0", "0x20", 0x10},
        {"12abc", "", 12},
    };
    for (const auto& row : rows) {
        TestDocument doc(element("IntReg", address(row.first) + address(row.second) + length("4")));
        EXPECT_EQ(address_read(doc, kinds[0]), row.sum) << row.first << " and " << row.second;
    }
}

TEST(RegisterAddress, WithoutAnAddressIsZero) {
    for (const register_kind& kind : kinds) {
        TestDocument doc(element_of(kind, length("4")));
        EXPECT_EQ(address_read(doc, kind), 0U) << kind.element;
        EXPECT_THAT(doc.load_messages, IsEmpty());
    }
}

TEST(RegisterAddress, AddsTheValueOfANode) {
    for (const register_kind& kind : kinds) {
        TestDocument doc(element_of(kind, address("0x100") + length("4") +
                                              "<pAddress>one</pAddress><pAddress>two</pAddress>") +
                         number("one", "0x1000") + number("two", "-0x10"));
        EXPECT_EQ(address_read(doc, kind), 0x10F0U) << kind.element;
        EXPECT_FALSE(doc.Integer("one").set_val(0x2000, 0));
        EXPECT_EQ(address_read(doc, kind), 0x20F0U) << kind.element << ": nothing evaluated is kept";
    }
}

TEST(RegisterAddress, AddsTheValueOfAnEmbeddedFormula) {
    for (const register_kind& kind : kinds) {
        TestDocument doc(element_of(kind, address("0x100") + length("4") +
                                              "<IntSwissKnife Name='sum'><pVariable Name='X'>one</pVariable>"
                                              "<Formula>X * 2 + 1</Formula></IntSwissKnife>") +
                         number("one", "0x1000"));
        EXPECT_EQ(address_read(doc, kind), 0x2101U) << kind.element;
        EXPECT_THAT(doc.load_messages, IsEmpty());
    }
}

TEST(RegisterAddress, MultipliesAnIndexByItsStride) {
    const struct {
        const char* attributes;
        const char* index;
        std::uint64_t address;
    } rows[] = {
        {"", "3", 0x100 + 12},
        {"Offset='8'", "3", 0x100 + 24},
        {"Offset='0x10'", "3", 0x100 + 48},
        {"Offset='0'", "3", 0x100 + 12},  // not a stride of zero
        {"Offset='8' pOffset='two'", "3", 0x100 + 30},
        {"pOffset='two'", "3", 0x100 + 6},
        {"Offset='0' pOffset='two'", "3", 0x100 + 6},
        {"pOffset='zero'", "3", 0x100},  // a node that says zero is taken at its word
        {"Offset='-4'", "3", 0x100 - 12},
        {"", "0", 0x100},
        {"", "-1", 0x100 - 4},
        {"Offset='8'", "-1", 0x100 - 8},
        {"Offset='16'", "0x1000000000000000", 0x100},
        {"Offset='3'", "0x7FFFFFFFFFFFFFFF", 0x80000000000000FD},
    };
    for (const register_kind& kind : kinds) {
        for (const auto& row : rows) {
            TestDocument doc(element_of(kind, address("0x100") + length("4") + "<pIndex " + row.attributes +
                                                  ">index</pIndex>") +
                             number("index", row.index) + number("two", "2") + number("zero", "0"));
            EXPECT_EQ(address_read(doc, kind), row.address)
                << kind.element << " " << row.attributes << " " << row.index;
            EXPECT_THAT(doc.load_messages, IsEmpty());
        }
    }
}

TEST(RegisterAddress, TakesTheLengthThatItHasNowAsStride) {
    TestDocument doc(element("Register", address("0x100") + "<pLength>size</pLength><pIndex>index</pIndex>") +
                     number("size", "16") + number("index", "3"));
    EXPECT_EQ(value_of(doc.Register("r").get_address(0)), 0x130U);
    EXPECT_FALSE(doc.Integer("size").set_val(-16, 0));
    EXPECT_EQ(value_of(doc.Register("r").get_address(0)), 0xD0U) << "wraps through a negative length";
}

TEST(RegisterAddress, IndexesMayBeOfAnyKindWithAValue) {
    TestDocument doc(
        element("IntReg", address("0x100") + length("4") + "<pIndex>real</pIndex><pAddress>flag</pAddress>") +
        element("Float", "<Value>2.5</Value>", "real") + element("Boolean", "<Value>true</Value>", "flag"));
    EXPECT_EQ(address_read(doc, kinds[0]), 0x100U + 3 * 4 + 1) << "2.5 rounds to 3";
}

TEST(RegisterAddress, EvaluatesFormulasFirstAndIndexesLast) {
    const std::string at_900 = element("IntReg", address("0x900") + length("4"), "index");
    const std::string at_910 = element("IntReg", address("0x910") + length("4"), "added");
    const std::string at_920 = element("IntReg", address("0x920") + length("4"), "variable");
    const std::string at_930 = element("IntReg", address("0x930") + length("4"), "size");
    const std::string terms =
        "<pIndex>index</pIndex><pAddress>added</pAddress>"
        "<IntSwissKnife Name='sum'><pVariable "
        "Name='X'>variable</pVariable><Formula>X</Formula></IntSwissKnife>"
        "<pLength>size</pLength>";
    TestDocument doc(element("IntReg", address("0x100") + terms) + at_900 + at_910 + at_920 + at_930);
    doc.device.Put(0x930, {0, 0, 0, 4});
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x930, 4), ReadOf(0x920, 4), ReadOf(0x910, 4),
                                                       ReadOf(0x900, 4), ReadOf(0x100, 4)));
}

TEST(RegisterAddress, HandsTheFlagsToEveryTerm) {
    const std::string node = element("IntReg", address("0x900") + length("4"), "index");
    TestDocument doc(element("IntReg", address("0x100") + "<pLength>index</pLength><pAddress>index</pAddress>"
                                                          "<pIndex pOffset='index'>index</pIndex>") +
                     node);
    doc.device.Put(0x900, {0, 0, 0, 4});
    EXPECT_TRUE(doc.Integer("r").get_val(access_flags::bypass_cache));
    EXPECT_THAT(doc.device.TakeAccesses(),
                ElementsAre(ReadOf(0x900, 4, 0x200), ReadOf(0x900, 4, 0x200), ReadOf(0x900, 4, 0x200),
                            ReadOf(0x900, 4, 0x200), ReadOf(0x100 + 4 + 16, 4, 0x200)));
}

TEST(RegisterAddress, LogsEveryTermThatDoesNotResolve) {
    const struct {
        const char* term;
        const char* in_message;
        std::uint64_t address;
    } rows[] = {
        {"<IntSwissKnife><Formula>1</Formula></IntSwissKnife>", "IntSwissKnife", 0x100},
        {"<pAddress>nobody</pAddress>", "pAddress", 0x100},
        {"<pAddress/>", "pAddress", 0x100},
        {"<pIndex>nobody</pIndex>", "pIndex", 0x100},
        {"<pIndex Offset='8' pOffset='two'/>", "pIndex", 0x100},
        {"<pIndex Offset='x'>two</pIndex>", "pIndex/@Offset", 0x108},
        {"<pIndex Offset=''>two</pIndex>", "pIndex/@Offset", 0x108},
        {"<pIndex pOffset='nobody'>two</pIndex>", "pIndex/@pOffset", 0x108},
        {"<pIndex pOffset=''>two</pIndex>", "pIndex/@pOffset", 0x108},
        {"<pIndex Offset='8' pOffset='nobody'>two</pIndex>", "pIndex/@pOffset", 0x110},
    };
    for (const register_kind& kind : kinds) {
        for (const auto& row : rows) {
            TestDocument doc(element_of(kind, address("0x100") + length("4") + row.term) +
                             number("two", "2"));
            EXPECT_THAT(doc.load_messages,
                        ElementsAre("GenICam::address_eval::resolve_references, " + named_element(kind) +
                                    ". Node contains invalid \"" + row.in_message + "\" XML element.\n"));
            EXPECT_EQ(address_read(doc, kind), row.address) << kind.element << " " << row.term;
        }
    }
}

TEST(RegisterAddress, BothFailingAttributesOfOneIndexAreLogged) {
    TestDocument doc(element("IntReg", fixed_span(4) + "<pIndex Offset='x' pOffset='y'>two</pIndex>") +
                     number("two", "2"));
    EXPECT_THAT(doc.load_messages,
                ElementsAre(testing::HasSubstr("@Offset"), testing::HasSubstr("@pOffset")));
}

TEST(RegisterAddress, ATermThatFailsKeepsTheDeviceUntouched) {
    const struct {
        const char* term;
        const char* in_message;
    } rows[] = {
        {"<pIndex>broken</pIndex>", "pIndex"},
        {"<pIndex pOffset='broken'>two</pIndex>", "pIndex/@pOffset"},
        {"<pAddress>broken</pAddress>", "pAddres"},
        {"<IntSwissKnife Name='sum'><Formula>(</Formula></IntSwissKnife>", "pAddres"},
    };
    for (const register_kind& kind : kinds) {
        for (const auto& row : rows) {
            TestDocument doc(element_of(kind, address("0x100") + length("4") + row.term) + broken("broken") +
                             number("two", "2"));
            EXPECT_EQ(kind.read(doc), code(not_implemented)) << kind.element << " " << row.term;
            EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
            EXPECT_THAT(doc.log.Take(),
                        ElementsAre(std::string("GenICam::address_eval::calc_address, RegisterNodeTemplate "
                                                "(\"Unknown\"). Failed to fetch value from \"") +
                                    row.in_message + "\" element.\n"));
        }
    }
}

TEST(RegisterAddress, TheCodeOfATermReachesWritersToo) {
    TestDocument doc(element("IntReg", fixed_span(4) + "<pAddress>term</pAddress>") +
                     element("IntReg", address("0x900") + length("4"), "term"));
    doc.device.FailAccess(1, code(device_lost));
    EXPECT_EQ(doc.Integer("r").set_val(1, 0), code(device_lost));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x900, 4)));
    EXPECT_FALSE(doc.Integer("r").set_val(1, 0));
}

TEST(RegisterAddress, NodesWithoutAValueFailAsTerms) {
    TestDocument doc(element("IntReg", fixed_span(4) + "<pAddress>text</pAddress>") +
                     element("String", "<Value>1</Value>", "text"));
    EXPECT_EQ(failure_of(doc.Integer("r").get_val(0)), code(not_implemented));
    EXPECT_THAT(doc.log.Take(),
                ElementsAre("GenICam::get_eval_val, get value on a (4) node_type seems to be futile ...\n",
                            testing::HasSubstr("pAddres")));
}

TEST(RegisterAddress, HearsOfEveryTermButItsIndex) {
    for (const register_kind& kind : kinds) {
        TestDocument doc(
            element_of(kind, address("0x100") + length("4") +
                                 "<pIndex pOffset='offset'>index</pIndex><pAddress>added</pAddress>"
                                 "<IntSwissKnife Name='sum'><pVariable Name='X'>variable</pVariable>"
                                 "<Formula>X</Formula></IntSwissKnife>") +
            number("index", "0") + number("offset", "0") + number("added", "0") + number("variable", "0"));
        EXPECT_THAT(dependents_of(doc, "index"), IsEmpty()) << kind.element;
        EXPECT_THAT(dependents_of(doc, "offset"), ElementsAre("r")) << kind.element;
        EXPECT_THAT(dependents_of(doc, "added"), ElementsAre("r")) << kind.element;
        EXPECT_THAT(dependents_of(doc, "variable"), testing::UnorderedElementsAre("r", "sum"))
            << kind.element;
    }
}

// Lengths. `MaskedIntReg` has a rule of its own.

bool has_length_record(const register_kind& kind) { return std::string(kind.element) != "MaskedIntReg"; }

TEST(RegisterLength, CanBeALink) {
    for (const register_kind& kind : kinds) {
        if (!has_length_record(kind)) continue;
        TestDocument doc(element_of(kind, address("0x100") + "<pLength>size</pLength>") +
                         number("size", "4"));
        doc.device.ForgetAccesses();
        EXPECT_EQ(kind.read(doc), std::error_code());
        EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 4))) << kind.element;
        EXPECT_THAT(dependents_of(doc, "size"), ElementsAre("r")) << kind.element;
    }
}

TEST(RegisterLength, ALinkThatFailsIsSeenAtRunTime) {
    for (const register_kind& kind : kinds) {
        if (!has_length_record(kind)) continue;
        TestDocument doc(element_of(kind, address("0x100") + "<pLength>size</pLength>") + broken("size"));
        EXPECT_THAT(messages_of(doc), IsEmpty());
        EXPECT_EQ(kind.read(doc), code(not_implemented)) << kind.element;
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
        EXPECT_THAT(doc.log.Take(), IsEmpty());
    }
}

TEST(RegisterLength, IsFourWithoutAnElement) {
    for (const register_kind& kind : kinds) {
        if (!has_length_record(kind)) continue;
        TestDocument doc(element_of(kind, address("0x100")));
        const std::string name = std::string(kind.element) == "StructEntry" ? "struct" : "r";
        EXPECT_THAT(doc.load_messages,
                    ElementsAre("resolve_references_len, node=\"" + name +
                                "\". Node contains neither pLength nor Length XML elements.\n"));
        EXPECT_EQ(kind.read(doc), std::error_code());
        EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 4))) << kind.element;
    }
}

TEST(RegisterLength, IsFourWhereTheElementCannotBeUsed) {
    const struct {
        const char* elements;
        const char* first_message;
    } rows[] = {
        {"<Length>abc</Length><pAddress>zero</pAddress>",
         "GenICam::resolve_link_or_value_, IntReg \"r\". Failed to parse content of \"Length\" node.\n"},
        {"<pLength>nobody</pLength>",
         "GenICam::resolve_link_or_value_, IntReg \"r\". Failed to resolve node in \"Length\" .\n"},
    };
    for (const auto& row : rows) {
        TestDocument doc(element("IntReg", address("0x100") + row.elements) + number("zero", "0"));
        EXPECT_THAT(
            doc.load_messages,
            ElementsAre(row.first_message,
                        "resolve_references_len, node=\"r\". Node contains neither pLength nor Length XML "
                        "elements.\n"));
        EXPECT_TRUE(doc.Integer("r").get_val(0));
        EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 4)));
    }
}

TEST(RegisterLength, ALinkBeatsANumber) {
    TestDocument doc(element("IntReg", fixed_span(4) + "<pLength>size</pLength>") + number("size", "2"));
    EXPECT_THAT(doc.load_messages,
                ElementsAre("GenICam::resolve_link_or_value_, IntReg \"r\". Node contains both "
                            "\"Length\" and \"pLength\" nodes.\n"));
    EXPECT_TRUE(doc.Integer("r").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 2)));
}

TEST(RegisterLength, AFractionIsRoundedOnlyWhereTheAddressIsDynamic) {
    TestDocument doc(element("Register", address("0x100") + length("7.5"), "block") +
                     element("Register", address("0x100") + length("-7.5"), "negative") +
                     element("IntReg", address("0x100") + length("3.5"), "fixed"));
    EXPECT_EQ(value_of(doc.Register("block").get_length(0)), 8);
    EXPECT_EQ(value_of(doc.Register("negative").get_length(0)), -8);
    EXPECT_TRUE(doc.Integer("fixed").get_val(0));
    EXPECT_THAT(doc.device.TakeAccesses(), ElementsAre(ReadOf(0x100, 3))) << "integer text ends at the point";
}

TEST(RegisterLength, FixedAddressesParseTheirOwn) {
    for (const char* text : {"abc", "", "."}) {
        TestDocument doc(element("IntReg", address("0x100") + length(text), "i") +
                         element("FloatReg", address("0x100") + length(text), "f"));
        constexpr const char* message =
            "GenICam::register_const_address_eval::register_const_address_eval, %s. Failed to parse "
            "\"Length\" XML "
            "element.\n";
        const std::string prefix = std::string(message).substr(0, std::string(message).find('%'));
        const std::string rest = std::string(message).substr(prefix.size() + 2);
        EXPECT_THAT(doc.load_messages,
                    ElementsAre(prefix + "IntReg (\"i\")" + rest, prefix + "FloatReg (\"f\")" + rest));
        EXPECT_EQ(failure_of(doc.Integer("i").get_val(0)), code(index_out_of_range));
        EXPECT_EQ(doc.Integer("i").set_val(0, 0), code(index_out_of_range));
        EXPECT_EQ(failure_of(doc.Float("f").get_val(0)), code(index_out_of_range));
        EXPECT_EQ(doc.Float("f").set_val(0, 0), code(index_out_of_range));
        EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
    }
}

TEST(RegisterSpan, TheEvaluatedHalvesOfABlock) {
    TestDocument doc(element("Register", address("0x100") + "<pAddress>term</pAddress><pLength>size</pLength>"
                                                            "<AccessMode>WO</AccessMode>") +
                     number("term", "0x10") + number("size", "24"));
    EXPECT_EQ(value_of(doc.Register("r").get_address(0)), 0x110U) << "no access check";
    EXPECT_EQ(value_of(doc.Register("r").get_length(0)), 24);
    EXPECT_THAT(doc.device.TakeAccesses(), IsEmpty());
}

TEST(RegisterSpan, OneFailingHalfFailsBoth) {
    TestDocument doc(element("Register", fixed_span(4) + "<pAddress>broken</pAddress>", "a") +
                     element("Register", address("0x100") + "<pLength>broken</pLength>", "b") +
                     broken("broken"));
    for (const char* name : {"a", "b"}) {
        EXPECT_EQ(failure_of(doc.Register(name).get_address(0)), code(not_implemented)) << name;
        EXPECT_EQ(failure_of(doc.Register(name).get_length(0)), code(not_implemented)) << name;
    }
}

// The address as the classes tell it to one another.

template <class Base>
Base& eval_as(TestDocument& doc, const char* name) {
    return static_cast<Base&>(*doc.Node(name).get_eval());
}

template <class Base>
void expect_spans(TestDocument& doc, const std::vector<const char*>& names) {
    for (const char* name : names) {
        const result<register_span> address = eval_as<Base>(doc, name).get_address_and_length(0);
        ASSERT_TRUE(address) << name;
        EXPECT_EQ(address.assume_value().address, 0x110U) << name;
        EXPECT_EQ(address.assume_value().length, 8) << name;
        EXPECT_EQ(eval_as<Base>(doc, name).get_length(), 8) << name;
    }
    EXPECT_EQ(failure_of(eval_as<Base>(doc, "broken_address").get_address_and_length(0)),
              code(not_implemented));
    EXPECT_EQ(eval_as<Base>(doc, "broken_address").get_length(), 8) << "the length alone is asked for";
    EXPECT_EQ(eval_as<Base>(doc, "broken_length").get_length(), 4);
}

std::string addressed_registers(const std::string& kind) {
    return element(kind, address("0x110") + length("8"), "fixed") +
           element(kind, address("0x100") + "<pLength>eight</pLength><pIndex Offset='16'>one</pIndex>",
                   "dynamic") +
           element(kind, length("8") + "<pAddress>broken</pAddress>", "broken_address") +
           element(kind, "<pLength>broken</pLength>", "broken_length") + broken("broken") +
           number("one", "1") + number("eight", "8");
}

TEST(RegisterSpan, OfNumbers) {
    TestDocument integers(addressed_registers("IntReg"));
    expect_spans<int_reg_type_base>(integers, {"fixed", "dynamic"});
    EXPECT_THAT(integers.device.TakeAccesses(), IsEmpty());
}

TEST(RegisterSpan, OfFloats) {
    TestDocument floats(addressed_registers("FloatReg"));
    expect_spans<float_reg_type_base>(floats, {"fixed", "dynamic"});
    EXPECT_THAT(floats.device.TakeAccesses(), IsEmpty());
}

TEST(RegisterSpan, OfMaskedRegisters) {
    TestDocument doc(
        element("MaskedIntReg", address("0x110") + length("2"), "fixed") +
        element("MaskedIntReg", address("0x10E") + length("2") + "<pIndex>one</pIndex>", "dynamic") +
        element("MaskedIntReg", length("2") + "<pAddress>broken</pAddress>", "failing") + broken("broken") +
        number("one", "1"));
    for (const char* name : {"fixed", "dynamic"}) {
        EXPECT_EQ(value_of(eval_as<masked_int_reg_type_base>(doc, name).get_address(0)), 0x110U) << name;
    }
    EXPECT_EQ(failure_of(eval_as<masked_int_reg_type_base>(doc, "failing").get_address(0)),
              code(not_implemented));
}

TEST(RegisterSpan, DecidesTheClass) {
    const struct {
        const char* element;
        const char* children;
        const char* node_class;
    } rows[] = {
        {"IntReg", "<Address>1</Address><Length>4</Length>", "int_reg_type_const_address"},
        {"IntReg", "<Address>1</Address><pLength>n</pLength>", "int_reg_type_dyn"},
        {"IntReg", "<Address>1</Address><Length>4</Length><pIndex>n</pIndex>", "int_reg_type_dyn"},
        {"IntReg", "<Address>1</Address><Length>4</Length><pAddress>n</pAddress>", "int_reg_type_dyn"},
        {"IntReg", "<Length>4</Length>", "int_reg_type_dyn"},
        {"IntReg", "<Address>1</Address>", "int_reg_type_dyn"},
        {"FloatReg", "<Address>1</Address><Length>4</Length>", "float_reg_type_const_address"},
        {"FloatReg", "<Address>1</Address><pLength>n</pLength>", "float_reg_type_dyn"},
        {"MaskedIntReg", "<Address>1</Address>", "masked_int_reg_type_const_address"},
        {"MaskedIntReg", "<Address>1</Address><pLength>n</pLength>", "masked_int_reg_type_const_address"},
        {"MaskedIntReg", "<Address>1</Address><pAddress>n</pAddress>", "masked_int_reg_type_dyn_address"},
        {"MaskedIntReg", "", "masked_int_reg_type_dyn_address"},
        {"Register", "<Address>1</Address><Length>4</Length>", "register_type"},
        {"StringReg", "<Address>1</Address><Length>4</Length>", "string_reg_type"},
    };
    for (const auto& row : rows) {
        TestDocument doc(element(row.element, row.children));
        const std::string dump = doc->dump(0);
        const std::string line = "      " + std::string(row.node_class);
        const auto at = dump.find(line + " ");
        ASSERT_NE(at, std::string::npos) << row.node_class;
        EXPECT_EQ(std::stoi(dump.substr(at + line.size())), 1) << row.element << row.children;
    }
}

}  // namespace
