// What an author would regret in elements, names and links.

#include "tests/inspect/lint_fixture.h"

namespace inspect_test {
namespace {

class LintElements : public LintTest {};

TEST_F(LintElements, NoNodeForAnElementWithoutWhatDecidesItsClass) {
    Finds("no-node", "error",
          R"(@<Integer Name="I"><Min>0</Min></Integer>
<Group Comment="inner">
  @<Float Name="F"><Representation>Linear</Representation></Float>
</Group>
@<Boolean Name="B"/>
@<Command Name="C"><CommandValue>1</CommandValue></Command>
@<Enumeration Name="E"><EnumEntry Name="On"><Value>1</Value></EnumEntry></Enumeration>)",
          {"Integer I becomes no node", "Float F becomes no node", "Boolean B becomes no node",
           "Command C becomes no node", "Enumeration E becomes no node"});
}

TEST_F(LintElements, NoNodeKeepsQuietWhereARuleTakesTheElement) {
    FindsNothing("no-node", R"(<Integer Name="I"><Value>1</Value></Integer>
<Integer Name="J"><pIndex>I</pIndex></Integer>
<Float Name="F"><pValue>I</pValue></Float>
<Boolean Name="B"><Value>true</Value></Boolean>
<String Name="S"/>
<Group Comment="empty"/>
<StructReg Comment="empty"/>
<Integer Name="Debug"><Value>1</Value><Extension><ZELIsDebugProperty>1</ZELIsDebugProperty></Extension></Integer>)");
}

TEST_F(LintElements, UnknownElementForMisspeltNames) {
    Finds("unknown-element", "warning",
          R"(@<Interger Name="I"><Value>1</Value></Interger>
<IntReg Name="R"><Address>0</Address><Length>4</Length>@<Endianness>LittleEndian</Endianness></IntReg>
<Enumeration Name="E"><Value>0</Value>
  <EnumEntry Name="Off"><Value>0</Value>@<DisplyName>Off</DisplyName></EnumEntry></Enumeration>
<StructReg Comment="S"><Address>0</Address>@<Lenght>4</Lenght></StructReg>
@<EnumEntry Name="Stray"><Value>0</Value></EnumEntry>
<Integer Name="Q"><Value>1</Value>@<Zebra>1</Zebra></Integer>)",
          {"nothing knows the element Interger (did you mean Integer?)",
           "nothing knows the element Endianness in IntReg R (did you mean Endianess?)",
           "nothing knows the element DisplyName in EnumEntry Off (did you mean DisplayName?)",
           "nothing knows the element Lenght in StructReg (did you mean Length?)",
           "nothing knows the element EnumEntry", "nothing knows the element Zebra in Integer Q"});
}

TEST_F(LintElements, UnknownElementForKeysThatLookLikeOurs) {
    Finds(
        "unknown-element", "warning",
        R"(<Integer Name="I"><Extension>@<ZELElementGuid>{}</ZELElementGuid></Extension><Value>1</Value></Integer>
<Category Name="C">@<ZELItemGUID>{}</ZELItemGUID></Category>)",
        {"nothing knows the key ZELElementGuid in the Extension of Integer I (did you mean "
         "ZELElementGUID?)",
         "nothing knows the element ZELItemGUID in Category C"});
}

TEST_F(LintElements, UnknownElementLetsExtensionsBe) {
    FindsNothing("unknown-element", R"(<Integer Name="I">
  <Extension><ZELElementGUID>x</ZELElementGUID><VendorKey><Deeper/></VendorKey><Default>1</Default></Extension>
  <Value>1</Value><!-- a comment --><?target and an instruction?>
</Integer>)");
}

TEST_F(LintElements, UnreadElementForWhatOtherProgramsRead) {
    const auto findings = Lint("unread-element", R"(<IntReg Name="R"><Address>0</Address><Length>4</Length>
<PollingTime>1</PollingTime></IntReg>
<IntReg Name="Q"><Address>4</Address><Length>4</Length>
<PollingTime>1</PollingTime></IntReg>
<Float Name="F"><Value>1</Value><Min>0</Min><pSelected>R</pSelected></Float>
<Integer Name="I"><Value>1</Value><pValue>R</pValue></Integer>
<SmartFeature Name="S"/>)");
    ASSERT_EQ(findings.size(), 4U);
    EXPECT_EQ(findings[0]["message"], "nothing reads PollingTime in IntReg elements of this kind");
    EXPECT_EQ(findings[0]["severity"], "note");
    EXPECT_EQ(findings[0]["count"], 2);
    EXPECT_EQ(findings[0]["line"], 3);
    EXPECT_EQ(findings[0]["places"],
              nlohmann::json::parse(R"([{"line":3,"column":1},{"line":5,"column":1}])"));
    EXPECT_EQ(findings[1]["message"], "nothing reads pSelected in Float elements of this kind");
    EXPECT_EQ(findings[2]["message"], "nothing reads pValue in Integer elements of this kind");
    EXPECT_EQ(findings[3]["message"], "nothing reads SmartFeature elements");
}

TEST_F(LintElements, UnreadElementKnowsWhoReadsWhat) {
    FindsNothing(
        "unread-element",
        R"(<Register Name="R"><Address>0</Address><Length>4</Length><PollingTime>1</PollingTime></Register>
<Integer Name="F"><Value>1</Value><pSelected>I</pSelected></Integer>
<Integer Name="I"><pValue>F</pValue><pValueCopy>F</pValueCopy></Integer>)");
}

TEST_F(LintElements, CachableWhereItIsNotRead) {
    Finds(
        "cachable-not-read", "warning",
        R"(<MaskedIntReg Name="M"><Address>0</Address><Length>4</Length><Bit>1</Bit>@<Cachable>WriteThrough</Cachable></MaskedIntReg>
<Register Name="R"><Address>0</Address><Length>4</Length>@<Cachable>NoCache</Cachable></Register>)",
        {"nothing reads Cachable in MaskedIntReg elements", "nothing reads Cachable in Register elements"});
    FindsNothing(
        "cachable-not-read",
        R"(<IntReg Name="I"><Address>0</Address><Length>4</Length><Cachable>WriteThrough</Cachable></IntReg>
<FloatReg Name="F"><Address>0</Address><Length>4</Length><Cachable>WriteAround</Cachable></FloatReg>
<StringReg Name="T"><Address>0</Address><Length>4</Length><Cachable>NoCache</Cachable></StringReg>
<StructReg Comment="S"><Address>0</Address><Length>4</Length><Cachable>NoCache</Cachable>
  <StructEntry Name="E"><Bit>0</Bit><Cachable>WriteThrough</Cachable></StructEntry></StructReg>)");
}

TEST_F(LintElements, NoName) {
    Finds("no-name", "warning", R"(@<Integer><Value>1</Value></Integer>
<Enumeration Name="E"><Value>0</Value>@<EnumEntry><Value>0</Value></EnumEntry></Enumeration>)",
          {"Integer without a Name", "EnumEntry without a Name"});
    FindsNothing("no-name", R"(<Integer Name="I"><Value>1</Value></Integer>
<StructReg Comment="S"><Address>0</Address><Length>4</Length></StructReg>)");
}

TEST_F(LintElements, DuplicateNames) {
    Finds("duplicate-name", "error",
          R"(<Integer Name="Gain"><Value>1</Value></Integer>
@<Float Name="Gain"><Value>1</Value></Float>
<Enumeration Name="Mode"><Value>0</Value>
<EnumEntry Name="On"><Value>0</Value></EnumEntry>
@<EnumEntry Name="On"><Value>1</Value></EnumEntry></Enumeration>
@<Category Name="Gain"/>)",
          {"Float Gain bears the name of the Integer in line 2", "entry On of Mode stands in line 5 already",
           "Category Gain bears the name of the Integer in line 2"});
}

TEST_F(LintElements, EntriesOfTwoEnumerationsMayShareANameWithEachOtherAndWithNodes) {
    FindsNothing(
        "duplicate-name",
        R"(<Enumeration Name="A"><Value>0</Value><EnumEntry Name="On"><Value>0</Value></EnumEntry></Enumeration>
<Enumeration Name="B"><Value>0</Value><EnumEntry Name="On"><Value>0</Value></EnumEntry></Enumeration>
<Integer Name="On"><Value>1</Value></Integer>
<Integer Name="on"><Value>1</Value></Integer>)");
}

TEST_F(LintElements, FloatWithoutMin) {
    Finds("float-without-min", "warning",
          R"(@<Float Name="Bare"><Value>1</Value><Max>5</Max></Float>
@<Float Name="OverConverter"><pValue>Converter</pValue></Float>
<Converter Name="Converter"><FormulaTo>FROM</FormulaTo><FormulaFrom>FROM</FormulaFrom><pValue>Reg</pValue></Converter>
@<Float Name="OverSingle"><pValue>Reg</pValue></Float>
<FloatReg Name="Reg"><Address>0</Address><Length>4</Length></FloatReg>
@<Float Name="LostMin"><Value>1</Value><pMin>Nowhere</pMin></Float>)",
          {"Bare states no Min, so that its minimum is 2.2250738585072014e-308",
           "OverConverter states no Min, so that its minimum is 2.2250738585072014e-308",
           "OverSingle states no Min, so that its minimum is 1.1754943508222875e-38",
           "LostMin states no Min, so that its minimum is 2.2250738585072014e-308"});
}

TEST_F(LintElements, FloatsWithAMinimumOfTheirOwnOrTheirTargetAreFine) {
    FindsNothing("float-without-min", R"(<Float Name="A"><Value>1</Value><Min>0</Min></Float>
<Float Name="B"><Value>1</Value><pMin>A</pMin></Float>
<Float Name="C"><pValue>A</pValue></Float>
<Float Name="OverInteger"><pValue>Reg</pValue></Float>
<IntReg Name="Reg"><Address>0</Address><Length>4</Length></IntReg>
<Float Name="ReadOnly"><Value>1</Value><ImposedAccessMode>RO</ImposedAccessMode></Float>
<Float Name="OfKnife"><pValue>SwissKnife</pValue></Float>
<SwissKnife Name="Knife"><Formula>1</Formula></SwissKnife>)");
}

TEST_F(LintElements, CategoryCircles) {
    Finds("category-circle", "warning",
          R"(<Category Name="Root"><pFeature>A</pFeature></Category>
<Category Name="A"><pFeature>B</pFeature></Category>
<Category Name="B"><pFeature>I</pFeature>@<pFeature>A</pFeature></Category>
<Category Name="Self">@<pFeature>Self</pFeature></Category>
<Integer Name="I"><Value>1</Value></Integer>)",
          {"a circle: A lists B lists A", "a circle: Self lists Self"});
    FindsNothing("category-circle",
                 R"(<Category Name="Root"><pFeature>A</pFeature><pFeature>B</pFeature></Category>
<Category Name="A"><pFeature>B</pFeature></Category>
<Category Name="B"><pFeature>I</pFeature><pFeature>Gone</pFeature></Category>
<Integer Name="I"><Value>1</Value></Integer>)");
}

TEST_F(LintElements, LongCirclesOfCategoriesAreToldByTheirFirstNames) {
    std::string chain;
    for (int at = 0; at < 25; ++at)
        chain += "<Category Name=\"C" + std::to_string(at) + "\"><pFeature>C" +
                 std::to_string((at + 1) % 25) + "</pFeature></Category>\n";
    const nlohmann::json findings = Lint("category-circle", chain);
    ASSERT_EQ(findings.size(), 1U);
    const std::string message = findings[0]["message"];
    EXPECT_EQ(message.substr(0, 21), "a circle: C0 lists C1");
    EXPECT_EQ(message.substr(message.find("C19")), "C19 lists (5 more) lists C0");
}

TEST_F(LintElements, SilentLinksOfConditionsAndVariables) {
    Finds(
        "silent-link", "warning",
        R"(<Integer Name="I"><Value>1</Value>@<pIsAvailable>Gone</pIsAvailable>@<pIsLocked>S</pIsLocked></Integer>
<String Name="S"/>
<SwissKnife Name="K">@<pVariable Name="X">Gone</pVariable><Formula>1</Formula></SwissKnife>
<Integer Name="J"><pIndex>I</pIndex>@<pValueDefault>Gone</pValueDefault><ValueDefault>0</ValueDefault></Integer>
<Enumeration Name="E"><Value>0</Value>
<EnumEntry Name="Off"><Value>0</Value>@<pIsImplemented>Gone</pIsImplemented></EnumEntry></Enumeration>)",
        {"pIsAvailable of Integer I names no node: Gone",
         "pIsLocked of Integer I names a node that has no number: S",
         "pVariable of SwissKnife K names no node: Gone", "pValueDefault of Integer J names no node: Gone",
         "pIsImplemented of EnumEntry Off names no node: Gone"});
}

TEST_F(LintElements, ALinkLeadsToTheFirstNodeOfAName) {
    const std::string link = "<Integer Name=\"I\"><Value>1</Value>@<pIsLocked>N</pIsLocked></Integer>\n";
    const std::string text = "<String Name=\"N\"/>\n";
    const std::string number = "<Integer Name=\"N\"><Value>1</Value></Integer>\n";
    Finds("silent-link", "warning", link + text + number,
          {"pIsLocked of Integer I names a node that has no number: N"});
    FindsNothing("silent-link",
                 "<Integer Name=\"I\"><Value>1</Value><pIsLocked>N</pIsLocked></Integer>\n" + number + text);
}

TEST_F(LintElements, SilentLinksOfPorts) {
    Finds("silent-link", "warning",
          R"(<IntReg Name="R"><Address>0</Address><Length>4</Length>@<pPort>Devise</pPort></IntReg>
<StructReg Comment="S"><Address>0</Address><Length>4</Length>@<pPort>R</pPort><StructEntry Name="E"><Bit>0</Bit></StructEntry></StructReg>)",
          {"pPort of IntReg R names no port: Devise", "pPort of StructReg names no port: R"});
}

TEST_F(LintElements, SilentLinkForADescriptionWithoutItsPort) {
    const std::string file = Write("a.xml", R"(<RegisterDescription>
<IntReg Name="A"><Address>0</Address><Length>4</Length></IntReg>
<IntReg Name="B"><Address>4</Address><Length>4</Length></IntReg>
</RegisterDescription>)");
    const Outcome outcome = Call({"lint", "--only", "silent-link", file});
    EXPECT_EQ(Lines(outcome.out).at(0),
              file +
                  ":2:1: warning: IntReg elements without a pPort are on the port Device, and there is "
                  "none (2 times) [silent-link]");
}

TEST_F(LintElements, LinksThatLeadSomewhereAreNotSilent) {
    FindsNothing(
        "silent-link",
        R"(<Integer Name="I"><Value>1</Value><pIsAvailable>E</pIsAvailable><pIsLocked>F</pIsLocked><pIsImplemented/></Integer>
<Float Name="F"><Value>1</Value></Float>
<String Name="S"/>
<Enumeration Name="E"><Value>0</Value><EnumEntry Name="Off"><Value>0</Value></EnumEntry></Enumeration>
<SwissKnife Name="K"><pVariable Name="X">S</pVariable><Formula>1</Formula></SwissKnife>
<IntReg Name="R"><Address>0</Address><Length>4</Length></IntReg>
<Register Name="Said"><Address>0</Address><Length>4</Length><pPort>Gone</pPort></Register>)");
}

TEST_F(LintElements, CommentsAndTextsAreNoElements) {
    FindsNothing(
        "unknown-element",
        "<!-- a --> text <Group Comment=\"g\"><!-- b -->text<Integer Name=\"I\"><!-- c -->"
        "<Extension><!-- d -->text<Default>1</Default></Extension><Value>1</Value>text</Integer></Group>");
}

}  // namespace
}  // namespace inspect_test
