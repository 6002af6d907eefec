// What an author would regret in the marks for the property pages.

#include "tests/inspect/lint_fixture.h"

#include <algorithm>

namespace inspect_test {
namespace {

class LintMarks : public LintTest {
protected:
    static std::string Mark(const char* key, char id) {
        return std::string("<Extension><") + key + ">{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D100" + id + "}</" +
               key + "></Extension>";
    }
    static std::string ItemMark(char id) { return Mark("ZELItemGUID", id); }
    static std::string ElementMark(char id) { return Mark("ZELElementGUID", id); }
    /// An integer that is marked as an element.
    static std::string Feature(const std::string& name, char id = '1') {
        return "<Integer Name=\"" + name + "\">" + ElementMark(id) +
               "<pIsLocked>One</pIsLocked><Value>1</Value><Min>0</Min><Max>9</Max></Integer>\n";
    }
    static std::string Item(const std::string& name, const std::string& feature, char id = '0') {
        return "<Category Name=\"" + name + "\">" + ItemMark(id) + "<pFeature>" + feature +
               "</pFeature></Category>\n";
    }
    /// One item with one element in a group, with everything that it needs.
    static std::string Page(const std::string& group = "Special") {
        return "<Category Name=\"Root\"><pFeature>Group</pFeature></Category>\n<Category "
               "Name=\"Group\"><DisplayName>" +
               group + "</DisplayName><pFeature>Item</pFeature></Category>\n" + Rest();
    }
    static std::string Rest() {
        return Item("Item", "Feature") + Feature("Feature") +
               "<Integer Name=\"One\"><Value>1</Value></Integer>\n";
    }

    void FindsNothingAtAll(const std::string& elements) const {
        const Outcome outcome = LintAll(elements);
        EXPECT_EQ(outcome.code, 0);
        EXPECT_EQ(Lines(outcome.out).size(), 1U) << outcome.out;
    }
};

TEST_F(LintMarks, AMarkedPageIsFine) { FindsNothingAtAll(Page()); }

TEST_F(LintMarks, TextThatIsNoId) {
    Finds(
        "mark-guid", "warning",
        R"(<Category Name="C"><Extension>@<ZELItemGUID>3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1000</ZELItemGUID></Extension></Category>
<Integer Name="I"><Extension>@<ZELElementGUID>{3F6A2B10}</ZELElementGUID></Extension><Value>1</Value></Integer>)",
        {"ZELItemGUID of C is no GUID in braces: 3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1000",
         "ZELElementGUID of I is no GUID in braces: {3F6A2B10}"});
    FindsNothing(
        "mark-guid",
        R"(<Integer Name="I"><Extension><ZELElementGUID>{3f6a2b10-5c1e-4d77-9a40-8e2c7b5d1000}</ZELElementGUID></Extension><Value>1</Value></Integer>
<Integer Name="J"><Extension><ZELElementGUID/></Extension><Value>1</Value></Integer>)");
}

TEST_F(LintMarks, GroupThatNoPageShows) {
    const std::string head =
        "<Category Name=\"Root\"><pFeature>Group</pFeature></Category>\n<Category "
        "Name=\"Group\"><DisplayName>";
    const std::string rest = "<Category Name=\"Item\"><Extension>@" + ItemMark('0').substr(11) +
                             "<pFeature>Feature</pFeature></Category>\n" + Feature("Feature");
    Finds("mark-group", "warning",
          head + "special</DisplayName><pFeature>Item</pFeature></Category>\n" + rest,
          {"the item Item is listed by special, and no page shows that group"});
    Finds("mark-group", "warning", "<Category Name=\"Root\"><pFeature>Item</pFeature></Category>\n" + rest,
          {"the item Item is listed by Root, and no page shows that group"});
}

TEST_F(LintMarks, EveryGroupOfAPageIsFine) {
    for (const char* group :
         {"Exposure", "Image", "WDR", "Special", "Partial Scan", "Partial scan", "Lens", "Color"})
        FindsNothingAtAll(Page(group));
    EXPECT_EQ(Lint("mark-group", Page("partial scan")).size(), 1U);
}

TEST_F(LintMarks, KindWithoutAControl) {
    Finds("mark-kind", "warning",
          "<String Name=\"S\"><Extension>@" + ElementMark('1').substr(11) + "</String>\n" +
              "<Category Name=\"C\"><Extension>@" + ElementMark('2').substr(11) + "</Category>\n" +
              "<Register Name=\"R\"><Extension>@" + ElementMark('3').substr(11) +
              "<Address>0</Address><Length>4</Length></Register>",
          {"S is marked as an element, but no page has a control for its kind",
           "C is marked as an element, but no page has a control for its kind",
           "R is marked as an element, but no page has a control for its kind"});
    std::string fine;
    for (const char* element :
         {"<Integer Name=\"A\">?<Value>1</Value></Integer>", "<Float Name=\"B\">?<Value>1</Value></Float>",
          "<Boolean Name=\"C\">?<Value>1</Value></Boolean>",
          "<Command Name=\"D\">?<Value>1</Value><CommandValue>1</CommandValue></Command>",
          "<Enumeration Name=\"E\">?<Value>1</Value></Enumeration>",
          "<MaskedIntReg Name=\"F\">?<Address>0</Address><Length>1</Length></MaskedIntReg>"}) {
        const std::string text = element;
        fine += text.substr(0, text.find('?')) + ElementMark('1') + text.substr(text.find('?') + 1) + "\n";
    }
    FindsNothing("mark-kind", fine);
}

TEST_F(LintMarks, ItemWithoutElements) {
    const std::string root =
        "<Category Name=\"Root\"><DisplayName>Special</DisplayName><pFeature>Item</pFeature></Category>\n";
    const std::string item = "<Category Name=\"Item\"><Extension>@" + ItemMark('0').substr(11);
    Finds("mark-empty", "warning", root + item + "</Category>",
          {"the item Item lists no marked feature with a control"});
    Finds("mark-empty", "warning",
          root + item +
              "<pFeature>Plain</pFeature><pFeature>S</pFeature></Category>\n<Integer "
              "Name=\"Plain\"><Value>1</Value></Integer>\n<String Name=\"S\">" +
              ElementMark('1') + "</String>",
          {"the item Item lists no marked feature with a control"});
    FindsNothing("mark-empty", Page());
    Finds(
        "mark-empty", "warning",
        "<Category "
        "Name=\"Root\"><DisplayName>Special</DisplayName><pFeature>First</pFeature><pFeature>Item</pFeature>"
        "<pFeature>Last</pFeature></Category>\n" +
            item + "</Category>\n" + Item("First", "Feature", '2') + Item("Last", "Feature", '3') +
            Feature("Feature"),
        {"the item Item lists no marked feature with a control"});
}

TEST_F(LintMarks, TwoItemsWithOneId) {
    const std::string root =
        "<Category Name=\"Root\"><pFeature>Group</pFeature><pFeature>Other</pFeature></Category>\n"
        "<Category Name=\"Group\"><DisplayName>Special</DisplayName><pFeature>Item</pFeature></Category>\n";
    const auto other = [](const std::string& group) {
        return "<Category Name=\"Other\"><DisplayName>" + group +
               "</DisplayName><pFeature>Twin</pFeature></Category>\n";
    };
    const std::string twin = "<Category Name=\"Twin\"><Extension>@" + ItemMark('0').substr(11) +
                             "<pFeature>Feature</pFeature></Category>\n";
    const std::vector<std::string> message = {
        "Twin bears the mark {3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1000} of Item"};
    Finds("mark-twice", "warning", root + other("Special") + twin + Rest(), message);
    Finds("mark-twice", "warning", root + other("Partial scan") + twin + Rest(), message);  // the same page
    FindsNothing("mark-twice", root + other("Lens") + Item("Twin", "Feature") + Rest());
    FindsNothing("mark-twice", root + other("Special") + Item("Twin", "Feature", '9') + Rest());
}

TEST_F(LintMarks, TwoElementsWithOneId) {
    const std::string root =
        "<Category Name=\"Root\"><DisplayName>Special</DisplayName><pFeature>Item</pFeature></Category>\n"
        "<Category Name=\"Item\">" +
        ItemMark('0') + "<pFeature>A</pFeature><pFeature>B</pFeature></Category>\n";
    Finds("mark-twice", "warning",
          root + Feature("A") + "<Integer Name=\"B\"><Extension>@" + ElementMark('1').substr(11) +
              "<Value>1</Value></Integer>",
          {"B bears the mark {3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1001} of A in the item Item"});
    FindsNothing("mark-twice", root + Feature("A", '1') + Feature("B", '2'));
    FindsNothing("mark-twice",
                 "<Category "
                 "Name=\"Root\"><DisplayName>Special</DisplayName><pFeature>I</pFeature><pFeature>J</"
                 "pFeature></Category>\n" +
                     Item("I", "A", '8') + Item("J", "B", '9') + Feature("A") + Feature("B"));
}

TEST_F(LintMarks, MarksThatNoPageReaches) {
    Finds("mark-lost", "warning",
          "<Category Name=\"Root\"><pFeature>Listed</pFeature></Category>\n" +
              Feature("Listed").insert(34, "@") + "<Category Name=\"Stray\"><Extension>@" +
              ItemMark('0').substr(11) + "<pFeature>Under</pFeature></Category>\n" + Feature("Under", '2') +
              "<Integer Name=\"I\"><Extension>@" + ItemMark('3').substr(11) + "<Value>1</Value></Integer>",
          {"Listed is marked as an element, but no item lists it", "no way leads from Root to the item Stray",
           "I is marked as an item, but is no category"});
    FindsNothing("mark-lost", Page());
}

// The item's mark lacks a brace, which is told; what it lists is lost for no other reason.
TEST_F(LintMarks, WhatFollowsFromAMisspeltMarkIsNotToldAgain) {
    std::string page = Page();
    page.replace(page.find("ZELItemGUID>{"), 13, "ZELItemGUID>");
    FindsNothing("mark-lost", page);
    EXPECT_EQ(Lint("mark-guid", page).size(), 1U);
}

TEST_F(LintMarks, NoneAtAll) {
    const auto lint = [&](const std::string& elements) {
        return Call({"lint", "--json", "--only", "no-marks", WriteElements(elements)}).Json()["files"][0];
    };
    const nlohmann::json none = lint("<Integer Name=\"I\"><Value>1</Value></Integer>");
    EXPECT_EQ(none["notes"], 1);
    EXPECT_EQ(none["findings"][0]["message"], "nothing is marked for the pages");
    EXPECT_EQ(lint(Page())["notes"], 0);
    EXPECT_EQ(lint("<Integer Name=\"I\">" + ElementMark('1') + "<Value>1</Value></Integer>")["notes"], 0);
}

TEST_F(LintMarks, AnItemInsideAnItemIsLost) {
    Finds(
        "mark-lost", "warning",
        "<Category Name=\"Root\"><DisplayName>Special</DisplayName><pFeature>Outer</pFeature></Category>\n" +
            Item("Outer", "Inner") + "<Category Name=\"Inner\"><Extension>@" + ItemMark('5').substr(11) +
            "</Category>",
        {"no way leads from Root to the item Inner"});
}

TEST_F(LintMarks, RangesBeyond32Bits) {
    const std::string mark = "<Integer Name=\"I\"><Extension>@" + ElementMark('1').substr(11);
    Finds("mark-range", "warning",
          mark +
              "<pValue>R</pValue></Integer>\n<IntReg "
              "Name=\"R\"><Address>0</Address><Length>4</Length></IntReg>",
          {"I is marked and goes from 0 to 4294967295, beyond 32 bits"});
    Finds("mark-range", "warning", mark + "<Value>0</Value><Max>7</Max></Integer>",
          {"I is marked and goes from -9223372036854775808 to 7, beyond 32 bits"});
    const std::string fine = "<Integer Name=\"I\">" + ElementMark('1');
    FindsNothing("mark-range",
                 fine + "<Value>0</Value><Min>-2147483648</Min><Max>2147483647</Max></Integer>");
    FindsNothing("mark-range", fine +
                                   "<pValue>R</pValue></Integer>\n<IntReg "
                                   "Name=\"R\"><Address>0</Address><Length>2</Length></IntReg>");
    FindsNothing("mark-range", "<Integer Name=\"I\"><Value>0</Value></Integer>");
}

TEST_F(LintMarks, ElementsWithoutALock) {
    Finds("mark-lock", "note", "@<Integer Name=\"I\">" + ElementMark('1') + "<Value>1</Value></Integer>",
          {"I is marked and has no pIsLocked"});
    FindsNothing("mark-lock", Page());
    FindsNothing("mark-lock", "<Integer Name=\"I\"><Value>1</Value></Integer><String Name=\"S\">" +
                                  ElementMark('1') + "</String>");
}

TEST_F(LintMarks, ElementsThatAreGrey) {
    const auto feature = [](const std::string& link) {
        return "<Integer Name=\"I\">" + ElementMark('1') + "@" + link + "<Value>1</Value></Integer>\n" +
               "<Integer Name=\"Locked\"><Value>0</Value></Integer>\n<IntSwissKnife Name=\"Free\"><pVariable "
               "Name=\"X\">Locked</pVariable><Formula>X=0</Formula></IntSwissKnife>";
    };
    const auto unmarked = [&](const std::string& link) {
        std::string text = feature(link);
        text.erase(text.find('@'), 1);
        return text;
    };
    Finds("mark-grey", "note", feature("<pIsLocked>Locked</pIsLocked>"),
          {"a control is grey over these registers: its pIsLocked Locked reads 0"});
    FindsNothing("mark-grey", unmarked("<pIsLocked>Free</pIsLocked>"));
    FindsNothing("mark-grey", unmarked(""));  // which is another finding
    FindsNothing("mark-grey", Page());
}

// An item with that many check boxes below its name; the last one bears an @ when it is beyond the edge.
std::string ColumnOfBoxes(int rows, const std::string& name_of_last) {
    std::string features;
    std::string elements;
    for (int row = 1; row <= rows; ++row) {
        const bool last = row == rows;
        const std::string name = last ? "Last" : "F" + std::to_string(row);
        features += "<pFeature>" + name + "</pFeature>";
        elements += "<Boolean Name=\"" + name + "\"><Extension>" + (last ? "@" : "") +
                    "<ZELElementGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D2" + std::to_string(100 + row) +
                    "}</ZELElementGUID></Extension>" +
                    (last ? "<DisplayName>" + name_of_last + "</DisplayName>" : "") +
                    "<pIsLocked>One</pIsLocked><Value>true</Value></Boolean>\n";
    }
    return "<Category Name=\"Root\"><DisplayName>Special</DisplayName><pFeature>Item</pFeature></Category>\n"
           "<Category "
           "Name=\"Item\"><Extension><ZELItemGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1000}</ZELItemGUID>"
           "</Extension>" +
           features + "</Category>\n" + elements + "<Integer Name=\"One\"><Value>1</Value></Integer>";
}

std::string WithoutPositions(std::string elements) {
    elements.erase(std::remove(elements.begin(), elements.end(), '@'), elements.end());
    return elements;
}

TEST_F(LintMarks, RowsBelowThePage) {
    const std::vector<std::string> message = {
        "Last lies beyond the edge of the page Selvane Feature Controls"};
    Finds("mark-edge", "warning", ColumnOfBoxes(14, "Last"), message);
    FindsNothing("mark-edge", WithoutPositions(ColumnOfBoxes(13, "Last")));
    EXPECT_EQ(Lint("mark-edge", WithoutPositions(ColumnOfBoxes(16, "Last"))).size(), 3U);
}

TEST_F(LintMarks, TextsThatAreTooWideForThePage) {
    Finds("mark-edge", "warning", ColumnOfBoxes(1, std::string(90, 'W')),
          {"Last lies beyond the edge of the page Selvane Feature Controls"});
    FindsNothing("mark-edge", WithoutPositions(ColumnOfBoxes(1, std::string(20, 'W'))));
    std::string wide_item = WithoutPositions(ColumnOfBoxes(1, "Last"));
    wide_item.insert(wide_item.find("<ZELItemGUID>"), "@");
    wide_item.insert(wide_item.find("</Extension>") + 12,
                     "<DisplayName>" + std::string(90, 'W') + "</DisplayName>");
    Finds("mark-edge", "warning", wide_item,
          {"Item lies beyond the edge of the page Selvane Feature Controls"});
}

// What nobody would survive opening is another finding.
TEST_F(LintMarks, PagesThatCannotBeOpenedHaveNoEdge) {
    std::string page = WithoutPositions(ColumnOfBoxes(16, "Last"));
    const std::string value = "<Value>true</Value></Boolean>";
    page.replace(page.rfind(value), value.size(), "<pValue>Last</pValue></Boolean>");
    FindsNothing("mark-edge", page);
    EXPECT_EQ(Lint("circle", page).size(), 1U);
}

TEST_F(LintMarks, EntriesThatAreNotCountedFromZero) {
    const auto enumeration = [](const std::string& mark, int first, int second) {
        return "<Enumeration Name=\"E\">" + mark + "<Value>1</Value><EnumEntry Name=\"A\"><Value>" +
               std::to_string(first) + "</Value></EnumEntry><EnumEntry Name=\"B\"><Value>" +
               std::to_string(second) + "</Value></EnumEntry></Enumeration>";
    };
    Finds("mark-entries", "warning", "@" + enumeration(ElementMark('1'), 1, 2),
          {"E is marked, and its entries are not numbered from 0 without gaps"});
    Finds("mark-entries", "warning", "@" + enumeration(ElementMark('1'), 0, 2),
          {"E is marked, and its entries are not numbered from 0 without gaps"});
    FindsNothing("mark-entries", enumeration(ElementMark('1'), 0, 1));
    FindsNothing("mark-entries", enumeration("", 3, 7));
}

TEST_F(LintMarks, WhatHasNoControlNeedsNeitherLockNorList) {
    const auto text = [](const std::string& name, const std::string& rest) {
        return "<String Name=\"" + name + "\">" + ElementMark('1') + "<Value>a</Value>" + rest +
               "</String>\n";
    };
    const std::string locked = "<pIsLocked>Zero</pIsLocked>";
    const std::string lock = "<Integer Name=\"Zero\"><Value>0</Value></Integer>\n";
    FindsNothing("mark-lock", text("S", ""));
    FindsNothing("mark-lost", text("S", ""));
    FindsNothing("mark-grey", Page() + text("S", locked) + lock);
    const std::string listing =
        "<Category Name=\"Root\"><pFeature>Group</pFeature></Category>\n<Category "
        "Name=\"Group\"><DisplayName>"
        "Special</DisplayName><pFeature>Item</pFeature></Category>\n<Category Name=\"Item\">" +
        ItemMark('0') + "<pFeature>S</pFeature><pFeature>T</pFeature></Category>\n";
    FindsNothing("mark-twice", listing + text("S", locked) + text("T", locked) + lock);
    FindsNothing("mark-grey", listing + text("S", locked) + text("T", locked) + lock);
}

TEST_F(LintMarks, ALockThatCannotBeReadIsGrey) {
    const auto findings =
        Lint("mark-grey",
             "<Category Name=\"Root\"><pFeature>Group</pFeature></Category>\n<Category "
             "Name=\"Group\"><DisplayName>Special</DisplayName><pFeature>Item</pFeature></Category>\n" +
                 Item("Item", "Feature") + Feature("Feature") +
                 "<Integer Name=\"One\"><pValue>Nowhere</pValue></Integer>\n");
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0]["message"],
              "a control is grey over these registers: its pIsLocked One cannot be read");
}

}  // namespace
}  // namespace inspect_test
