// Where in the file each message of the engine is about.

#include "tests/inspect/lint_fixture.h"

#include <algorithm>
#include <cstddef>
#include <ostream>

namespace inspect_test {
namespace {

// Elements with an @ at the position, and a part of the one message about them.
struct position_case {
    const char* name;
    const char* elements;
    const char* message;
    const char* rule = "load-message";
};

void PrintTo(const position_case& one, std::ostream* out) { *out << one.name; }

constexpr position_case cases[] = {
    {"ImposedAccessMode",
     R"(<Integer Name="A"><Value>1</Value>@<ImposedAccessMode>ro</ImposedAccessMode></Integer>)",
     "Invalid contents of \"ImposedAccessMode\" node (\"ro\""},
    {"ImposedAccessModeOfAnEntry",
     R"(<Enumeration Name="E"><Value>0</Value><EnumEntry Name="A"><Value>0</Value>@<ImposedAccessMode>ro</ImposedAccessMode></EnumEntry></Enumeration>)",
     "Invalid contents of \"ImposedAccessMode\" node (\"ro\""},
    {"AccessMode",
     R"(<IntReg Name="A"><Address>0</Address><Length>4</Length>@<AccessMode>RX</AccessMode></IntReg>)",
     "Invalid contents of \"AccessMode\" node (\"RX\""},
    {"Sign", R"(<Register Name="B"><Address>0</Address><Length>4</Length><Sign>up</Sign></Register>
<MaskedIntReg Name="A"><Address>0</Address><Length>4</Length><Bit>0</Bit>@<Sign>up</Sign></MaskedIntReg>)",
     "Invalid contents of \"Sign\" node (\"up\""},
    {"Endianess",
     R"(<FloatReg Name="A"><Address>0</Address><Length>4</Length>@<Endianess>Little</Endianess></FloatReg>)",
     "Invalid contents of \"Endianess\" node (\"Little\""},
    {"EndianessOfAStructure",
     R"(<StructReg Comment="S"><Address>0</Address><Length>4</Length>@<Endianess>Little</Endianess><StructEntry Name="A"><Bit>0</Bit></StructEntry></StructReg>)",
     "Invalid contents of \"Endianess\" node (\"Little\""},
    {"CachablePassesOverThoseThatAreNotRead",
     R"(<MaskedIntReg Name="M"><Address>0</Address><Length>4</Length><Bit>0</Bit><Cachable>Yes</Cachable></MaskedIntReg>
<StringReg Name="A"><Address>0</Address><Length>4</Length>@<Cachable>Yes</Cachable></StringReg>)",
     "Invalid contents of \"Cachable\" node (\"Yes\""},
    {"CachableOfAStructurePassesOverItsEntries",
     R"(<StructReg Comment="S"><Address>0</Address><Length>4</Length>@<Cachable>Yes</Cachable><StructEntry Name="A"><Bit>0</Bit><Cachable>Yes</Cachable></StructEntry></StructReg>)",
     "Invalid contents of \"Cachable\" node (\"Yes\""},
    {"TurnedAccessMode",
     R"(<IntReg Name="A"><Address>0</Address><Length>4</Length>@<ImposedAccessMode>RO</ImposedAccessMode><AccessMode>WO</AccessMode></IntReg>)",
     "Trying to change access mode from ImposedAccessMode == RO to WO."},
    {"Streamable", R"(<Integer Name="A"><Value>1</Value>@<Streamable>yes</Streamable></Integer>)",
     "Failed to parse \"Streamable\""},
    {"pInvalidator",
     R"(<Integer Name="A"><Value>1</Value><pInvalidator>B</pInvalidator>@<pInvalidator>Gone</pInvalidator></Integer>
<Integer Name="B"><Value>1</Value></Integer>)",
     "Failed to resolve \"pInvalidator\""},
    {"PairWithABadNumber", R"(<Integer Name="A"><Value>1</Value>@<Max>high</Max></Integer>)",
     "Failed to parse content of \"Max\" node."},
    {"PairOfBoth",
     R"(<Integer Name="A"><Value>1</Value><pMax>B</pMax>@<Max>1</Max></Integer><Integer Name="B"><Value>1</Value></Integer>)",
     "Node contains both \"Max\" and \"pMax\" nodes."},
    {"PairWithALostLink", R"(<Integer Name="A"><Value>1</Value>@<pMax>Gone</pMax></Integer>)",
     "Failed to resolve node in \"Max\" ."},
    {"BadDefault",
     R"(<Integer Name="A"><Value>1</Value><Extension>@<Default>x</Default></Extension></Integer>)",
     "resolve_link_or_value_from_contents, Integer \"A\". Failed to parse content of \"Default\" node."},
    {"LostDefault",
     R"(<Integer Name="A"><Value>1</Value><Extension>@<pDefault>Gone</pDefault></Extension></Integer>)",
     "resolve_link_or_value_from_contents, Integer \"A\". Failed to resolve node in \"pDefault\" ."},
    {"pIndex",
     R"(<Integer Name="A">@<pIndex>F</pIndex><ValueDefault>1</ValueDefault></Integer><Float Name="F"><Value>1</Value></Float>)",
     "GenICam::resolve_pIndex, Integer (\"A\"). Invalid or no IInteger base \"pIndex\" element."},
    {"IndexOfALink", R"(<Integer Name="I"><Value>1</Value></Integer>
<Integer Name="A"><pIndex>I</pIndex><pValueIndexed Index="1">I</pValueIndexed><pValueIndexed @Index="one">I</pValueIndexed><ValueDefault>1</ValueDefault></Integer>)",
     "Failed to parse \"Index\" attribute of \"pValueIndexed\" element."},
    {"IndexOfAConstantThatHasNone", R"(<Integer Name="I"><Value>1</Value></Integer>
<Integer Name="A"><pIndex>I</pIndex>@<ValueIndexed>1</ValueIndexed><ValueDefault>1</ValueDefault></Integer>)",
     "Failed to parse \"Index\" attribute of \"ValueIndexed\" element."},
    {"ContentsOfAnIndexedLink", R"(<Integer Name="I"><Value>1</Value></Integer>
<Integer Name="A"><pIndex>I</pIndex><pValueIndexed Index="0">I</pValueIndexed>@<pValueIndexed Index="1">Gone</pValueIndexed><ValueDefault>1</ValueDefault></Integer>)",
     "Failed to parse resolve contents of \"pValueIndexed\" element."},
    {"ContentsOfAnIndexedConstant", R"(<Integer Name="I"><Value>1</Value></Integer>
<Integer Name="A"><pIndex>I</pIndex><ValueIndexed Index="0">1</ValueIndexed>@<ValueIndexed Index="1">x</ValueIndexed><ValueDefault>1</ValueDefault></Integer>)",
     "Failed to parse resolve contents of \"ValueIndexed\" element."},
    {"NoDefaultOfATable", R"(<Integer Name="I"><Value>1</Value></Integer>
@<Integer Name="A"><pIndex>I</pIndex></Integer>)",
     "Invalid or no \"pValueDefault\"/\"ValueDefault\" element."},
    {"ValueOfAnInteger", R"(<Integer Name="A">@<Value>x</Value></Integer>)",
     "Failed to parse or resolve \"Value\" xml element."},
    {"ValueOfAConstant",
     R"(<Float Name="A"><ImposedAccessMode>RO</ImposedAccessMode>@<Value>x</Value></Float>)",
     "GenICam::float_constant_value_type::_resolve_references, Float (\"A\"). Failed to parse \"Value\" xml "
     "element."},
    {"pValue", R"(<Float Name="A">@<pValue>Gone</pValue></Float>)",
     "Failed to parse or resolve \"pValue\" xml element."},
    {"pValueCopy",
     R"(<Integer Name="A"><pValue>B</pValue><pValueCopy>B</pValueCopy>@<pValueCopy>Gone</pValueCopy></Integer><Integer Name="B"><Value>1</Value></Integer>)",
     "Failed to parse or resolve \"pValueCopy\" xml element."},
    {"ValueOfABoolean", R"(<Boolean Name="A">@<Value>True</Value></Boolean>)",
     "Boolean (\"A\"). Failed to parse or resolve \"Value\" xml element."},
    {"ValueOfACommand", R"(<Command Name="A">@<Value>x</Value><CommandValue>1</CommandValue></Command>)",
     "Failed to parse contents of \"Value\" xml node."},
    {"NoCommandValue", R"(@<Command Name="A"><Value>1</Value></Command>)",
     "Failed to parse contents of \"CommandValue\"/\"pCommandValue\" xml node."},
    {"pValueOfAString",
     R"(<String Name="A">@<pValue>B</pValue></String><Integer Name="B"><Value>1</Value></Integer>)",
     "String (\"A\"). Failed to parse or resolve \"pValue\" xml node."},
    {"ValueOfAnEnumeration",
     R"(<Enumeration Name="A">@<Value>x</Value><EnumEntry Name="Off"><Value>0</Value></EnumEntry></Enumeration>)",
     "Enumeration (\"A\"). Failed to parse \"Value\" xml element."},
    {"ValueOfAnEntry",
     R"(<Enumeration Name="A"><Value>0</Value><EnumEntry Name="Off"><Value>0</Value></EnumEntry><EnumEntry Name="On">@<Value>x</Value></EnumEntry></Enumeration>)",
     "EnumEntry (\"On\"). Failed to parse \"Value\" xml node."},
    {"pFeature",
     R"(<Category Name="A"><pFeature>B</pFeature>@<pFeature>Gone</pFeature></Category><Integer Name="B"><Value>1</Value></Integer>)",
     "Failed to resolve \"pFeature\" for feature=Gone."},
    {"Address", R"(<IntReg Name="A"><Address>0</Address>@<Address>here</Address><Length>4</Length></IntReg>)",
     "calc_address_nodes_sum, IntReg (\"A\"). Node contains invalid \"Address\" XML element."},
    {"AddressOfAStructureWithoutAName",
     R"(<StructReg Comment="S">@<Address>here</Address><Length>4</Length><StructEntry Name="A"><Bit>0</Bit></StructEntry></StructReg>)",
     "calc_address_nodes_sum, StructReg (\"\"). Node contains invalid \"Address\" XML element."},
    {"LengthOfAFixedRegister", R"(<IntReg Name="A"><Address>0</Address>@<Length>long</Length></IntReg>)",
     "register_const_address_eval, IntReg (\"A\"). Failed to parse \"Length\" XML element."},
    {"NoLength", R"(@<Register Name="A"><Address>0</Address></Register>)",
     "resolve_references_len, node=\"A\"."},
    {"NoLengthOfTheSecondOfTwoWithoutAName",
     R"(<StructReg Comment="S"><Address>0</Address><Length>4</Length><StructEntry Name="A"><Bit>0</Bit></StructEntry></StructReg>
@<StructReg Comment="T"><Address>4</Address><StructEntry Name="B"><Bit>0</Bit></StructEntry></StructReg>)",
     "resolve_references_len, node=\"\"."},
    {"LengthOfAMaskedRegister", R"(@<MaskedIntReg Name="A"><Address>0</Address><Bit>0</Bit></MaskedIntReg>)",
     "masked_int_reg_type_base::_resolve_references, MaskedIntReg (\"A\"). Failed to parse \"Length\" XML "
     "element."},
    {"pAddress", R"(<IntReg Name="A">@<pAddress>Gone</pAddress><Length>4</Length></IntReg>)",
     "Node contains invalid \"pAddress\" XML element."},
    {"pIndexOfARegister", R"(<IntReg Name="A">@<pIndex>Gone</pIndex><Length>4</Length></IntReg>)",
     "Node contains invalid \"pIndex\" XML element."},
    {"Offset", R"(<Integer Name="I"><Value>1</Value></Integer>
<IntReg Name="A"><pIndex Offset="4">I</pIndex><pIndex @Offset="far">I</pIndex><Length>4</Length></IntReg>)",
     "Node contains invalid \"pIndex/@Offset\" XML element."},
    {"pOffset", R"(<Integer Name="I"><Value>1</Value></Integer>
<IntReg Name="A"><pIndex pOffset="I">I</pIndex><pIndex @pOffset="Gone">I</pIndex><Length>4</Length></IntReg>)",
     "Node contains invalid \"pIndex/@pOffset\" XML element."},
    {"Port", R"(<Register Name="A"><Address>0</Address><Length>4</Length>@<pPort>Gone</pPort></Register>)",
     "Failed resolve port."},
    {"ChunkID", R"(@<Port Name="A"><ChunkID>xyz</ChunkID></Port>)", "Failed to fetch ChunkID or pChunkID."},
    {"NoFormula", R"(@<SwissKnife Name="A"/>)", "SwissKnife (\"A\"). Failed due to missing Formula member."},
    {"NoTarget",
     R"(@<IntConverter Name="A"><FormulaTo>1</FormulaTo><FormulaFrom>1</FormulaFrom></IntConverter>)",
     "Failed due to missing pValue element."},
    {"OneFormula", R"(<Integer Name="I"><Value>1</Value></Integer>
@<Converter Name="A"><FormulaTo>1</FormulaTo><pValue>I</pValue></Converter>)",
     "Failed due to missing FormulaFrom/FormulaTo member(s)."},
    {"Constant", R"(<SwissKnife Name="B"><Constant Name="C">1</Constant><Formula>1</Formula></SwissKnife>
<SwissKnife Name="A"><Constant Name="B">x</Constant>@<Constant Name="C">x</Constant><Formula>1</Formula></SwissKnife>)",
     "failed to parse Constant named=\"C\" content=\"x\"."},
    {"ConstantOfAnAddressFormula",
     R"(<IntReg Name="A"><IntSwissKnife Name="K">@<Constant Name="C">x</Constant><Formula>1</Formula></IntSwissKnife><Length>4</Length></IntReg>)",
     "failed to parse Constant named=\"C\" content=\"x\"."},
    {"EntryOfNoEnumeration",
     R"(<SwissKnife Name="A"><pVariable Name="I">I</pVariable>@<pVariable Name="I.Entry.On">I</pVariable><Formula>1</Formula></SwissKnife><Integer Name="I"><Value>1</Value></Integer>)",
     "did not find enumeration for pVariable with \".Entry\" specifier."},
    {"EntryOfNothing",
     R"(<SwissKnife Name="A">@<pVariable Name="I.Entry.On">Gone</pVariable><Formula>1</Formula></SwissKnife>)",
     "did not find enumeration for pVariable with \".Entry\" specifier."},
    {"UnknownEntry",
     R"(<Enumeration Name="E"><Value>0</Value><EnumEntry Name="On"><Value>0</Value></EnumEntry></Enumeration>
<SwissKnife Name="A"><pVariable Name="E.Entry.On">E</pVariable>@<pVariable Name="E.Entry.Off">E</pVariable><Formula>1</Formula></SwissKnife>)",
     "did not find entry in enumeration for pVariable with \".Entry\" specifier."},
    {"LimitOfABoolean",
     R"(<SwissKnife Name="A"><pVariable Name="I.Max">I</pVariable>@<pVariable Name="B.Max">B</pVariable><Formula>1</Formula></SwissKnife>
<Boolean Name="B"><Value>true</Value></Boolean><Integer Name="I"><Value>1</Value></Integer>)",
     "create_resulting_entry, invalid node type for pVariable with \".Min\" specifier."},
    {"IncrementOfABoolean",
     R"(<SwissKnife Name="A">@<pVariable Name="B.Inc">B</pVariable><Formula>1</Formula></SwissKnife>
<Boolean Name="B"><Value>true</Value></Boolean>)",
     "create_resulting_entry, invalid node type for pVariable with \".Inc\" specifier."},
    {"Alias",
     R"(<Integer Name="A"><Value>1</Value><pIsLocked>Gone</pIsLocked>@<pAlias>Gone</pAlias></Integer>)",
     "Failed to resolve \"pAlias\" xml node contents (\"Gone\").", "ask-message"},
    {"Selected",
     R"(<Integer Name="A"><pValue>B</pValue><pSelected>B</pSelected>@<pSelected>Gone</pSelected></Integer><Integer Name="B"><Value>1</Value></Integer>)",
     "Failed to resolve \"pSelected\" xml node contents (\"Gone\").", "ask-message"},
    {"DisplayNotation",
     R"(<Float Name="A"><Value>1</Value>@<DisplayNotation>fixed</DisplayNotation></Float>)",
     "Invalid contents (\"fixed\") of \"DisplayNotation\" xml node.", "ask-message"},
    {"DisplayPrecision",
     R"(<FloatReg Name="A"><Address>0</Address><Length>4</Length>@<DisplayPrecision>x</DisplayPrecision></FloatReg>)",
     "Invalid contents (\"x\") of \"DisplayPrecision\" xml node.", "ask-message"},
    {"UnitOfAnother",
     R"(<Integer Name="A"><pIndex>I</pIndex><pValueIndexed Index="1">B</pValueIndexed><ValueDefault>0</ValueDefault></Integer>
<Integer Name="I"><Value>1</Value></Integer>
<Integer Name="B"><Value>1</Value>@<Representation>linear</Representation></Integer>)",
     "Invalid contents (\"linear\") of Integer \"Representation\" xml node.", "ask-message"},
    {"FloatLength", R"(@<FloatReg Name="A"><Address>0</Address><Length>3</Length></FloatReg>)",
     "GenICam::float_reg_type_base::get_val, length value out of range [1;8]. value=3.", "read-message"},
    {"AddressWithoutAValue", R"(@<IntReg Name="A"><pAddress>B</pAddress><Length>4</Length></IntReg>
<String Name="B"/><Integer Name="Unknown"><Value>1</Value></Integer>)",
     "GenICam::address_eval::calc_address, RegisterNodeTemplate (\"Unknown\"). Failed to fetch value from "
     "\"pAddres\" element.",
     "read-message"},
};

class MessagePositions : public LintTest, public testing::WithParamInterface<position_case> {};

TEST_P(MessagePositions, AreThoseOfWhatIsAtFault) {
    const position_case& tested = GetParam();
    std::string marked = tested.elements;
    const std::size_t mark = marked.find('@');
    ASSERT_NE(mark, std::string::npos);
    marked.erase(mark, 1);
    const std::string before = marked.substr(0, mark);
    const auto line = 2 + std::count(before.begin(), before.end(), '\n');
    const std::size_t column = mark - (before.find_last_of('\n') + 1) + 1;  // npos + 1 is the first line
    std::size_t found = 0;
    for (const nlohmann::json& finding : Lint(tested.rule, marked)) {
        if (finding["message"].get<std::string>().find(tested.message) == std::string::npos) continue;
        ++found;
        EXPECT_EQ(finding["line"], line);
        EXPECT_EQ(finding["column"], column);
    }
    EXPECT_EQ(found, 1U) << Lint(tested.rule, marked);
}

INSTANTIATE_TEST_SUITE_P(Messages, MessagePositions, testing::ValuesIn(cases),
                         [](const testing::TestParamInfo<position_case>& tested) {
                             return std::string(tested.param.name);
                         });

class RepeatedMessages : public LintTest {};

TEST_F(RepeatedMessages, EachGetTheNextPosition) {
    Finds("load-message", "warning", R"(<Group Comment="later">
  <IntReg Name="B"><Address>0</Address><Length>4</Length>@<Sign>up</Sign></IntReg>
</Group>
<IntReg Name="A"><Address>4</Address><Length>4</Length>@<Sign>up</Sign></IntReg>)",
          {"Invalid contents of \"Sign\" node (\"up\"", "Invalid contents of \"Sign\" node (\"up\""});
}

TEST_F(RepeatedMessages, OfOneStructureStandOnceAndAreCounted) {
    const auto findings =
        Lint("load-message",
             R"(<StructReg Comment="S"><Address>0</Address><Length>4</Length><Endianess>Little</Endianess>
<StructEntry Name="A"><Bit>0</Bit></StructEntry><StructEntry Name="B"><Bit>1</Bit></StructEntry></StructReg>)");
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0]["count"], 2);
    EXPECT_EQ(findings[0]["places"].size(), 1U);
}

TEST_F(RepeatedMessages, OfChildrenWithOtherNamesOrParentsHaveTheirOwnPositions) {
    Finds("load-message", "warning",
          R"(<StructReg Comment="S"><Address>0</Address><Length>4</Length>@<Endianess>Little</Endianess>
@<Cachable>often</Cachable><StructEntry Name="A"><Bit>0</Bit></StructEntry></StructReg>
<StructReg Comment="T"><Address>4</Address><Length>4</Length>@<Endianess>Big</Endianess>
<StructEntry Name="B"><Bit>0</Bit></StructEntry></StructReg>)",
          {"Invalid contents of \"Endianess\" node (\"Little\"",
           "Invalid contents of \"Cachable\" node (\"often\"",
           "Invalid contents of \"Endianess\" node (\"Big\""});
}

TEST_F(RepeatedMessages, OfTheParserShareThePositionOfTheFormula) {
    Finds(
        "load-message", "warning", R"(<IntSwissKnife Name="K"><Constant Name="X">1</Constant>
@@@<Formula>X + Y</Formula></IntSwissKnife>)",
        {"math_parser::add_identifier_token, failed to map variable \"Y\" to either a constant or a pValue.",
         "km_parse_tree failed with result=Failed to map a variable name to a identifier_id. Last token "
         "view: .",
         "GenICam::converter::swissknife_impl::resolve_converter_references, SwissKnife (\"K\"). failed to "
         "evaluate \"X + Y\""});
}

TEST_F(RepeatedMessages, OfTextsThatAreCutFindTheirPositionToo) {
    const std::string formula = "1 + " + std::string(600, 'Z');
    const auto findings =
        Lint("load-message", "<SwissKnife Name=\"K\">\n  <Formula>" + formula + "</Formula></SwissKnife>");
    ASSERT_EQ(findings.size(), 3U);
    for (const nlohmann::json& finding : findings) {
        EXPECT_EQ(finding["line"], 3);
        EXPECT_EQ(finding["column"], 3);
    }
}

}  // namespace
}  // namespace inspect_test
