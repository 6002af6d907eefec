#include "tests/support/not_empty.h"
#include "tests/windows/built_in_page_fixture.h"

namespace page_test {
namespace {

constexpr char exposure_id[] = "{90D5702E-E43B-4366-AAEB-7A7A10B448B4}";
constexpr char gain_id[] = "{284C0E0F-010B-45BF-8291-09D90A459B28}";
constexpr char white_balance_id[] = "{284C0E0D-010B-45BF-8291-09D90A459B28}";
constexpr char value_id[] = "{B57D3000-0AC6-4819-A609-272A33140ACA}";
constexpr char automatic_id[] = "{B57D3001-0AC6-4819-A609-272A33140ACA}";
constexpr char one_push_id[] = "{B57D3002-0AC6-4819-A609-272A33140ACA}";
constexpr char blue_id[] = "{6519038A-1AD8-4E91-9021-66D64090CC85}";

struct Marked {
    const char* kind;  // name of the element
    const char* id;
    const char* name;
};

std::string Mark(const char* key, const char* id) {
    return std::string("<Extension><") + key + ">" + id + "</" + key + "></Extension>";
}

std::string FeatureText(const Marked& one) {
    const std::string kind = one.kind;
    const std::string more = kind == "Command"   ? "<CommandValue>1</CommandValue>"
                             : kind == "Integer" ? "<Min>0</Min><Max>9</Max>"
                                                 : "";
    return "<" + kind + " Name=\"" + one.name + "\">" + Mark("ZELElementGUID", one.id) +
           "<pIsLocked>Changeable</pIsLocked><Value>1</Value>" + more + "</" + kind + ">";
}

// One item in a group, with the features in it.
std::string Description(const char* group, const char* item_id, const char* item,
                        const std::vector<Marked>& features) {
    std::string text = R"(<RegisterDescription>
        <Integer Name="Changeable"><Value>1</Value></Integer>
        <Category Name="Root"><pFeature>Group</pFeature></Category>
        <Category Name="Group"><pFeature>Item</pFeature><DisplayName>)";
    text += std::string(group) + "</DisplayName></Category>";
    for (const Marked& one : features) text += FeatureText(one);
    text +=
        "<Category Name=\"Item\">" + Mark("ZELItemGUID", item_id) + "<DisplayName>" + item + "</DisplayName>";
    for (const Marked& one : features) text += std::string("<pFeature>") + one.name + "</pFeature>";
    return text + "</Category></RegisterDescription>";
}

/// Every fixed driver property, and a description of one item.
class ItemPriorityTest : public BuiltInPageTest {
protected:
    static simcam::camera_options Described(std::string description) {
        simcam::camera_options options = *simcam::ready_made("builtin");
        options.descriptions = {std::move(description)};
        return options;
    }
    static std::string Gain(const char* group) {
        return Description(group, gain_id, "Described Gain", {{"Integer", value_id, "Level"}});
    }
};

const Lines built_in_exposure = {L"Exposure (1/30 sec) [ ] Auto", L"  Auto Reference (128)",
                                 L"  Auto Max Value (1.000 sec)", L"  [ ] Auto"};

TEST_F(ItemPriorityTest, ADescribedItemReplacesTheBuiltInOneInItsPosition) {
    UseCamera(Described(Gain("Exposure")));
    Lines expected = {L"Described Gain (1)"};
    expected.insert(expected.end(), built_in_exposure.begin(), built_in_exposure.end());
    EXPECT_EQ(OpenPage(exposure_page), expected);
}

TEST_F(ItemPriorityTest, OverEitherAccessPath) {
    for (const bool named : {true, false}) {
        simcam::camera_options options = Described(Gain("Image"));
        options.named_access = named;
        options.register_access = !named;
        Close();
        UseCamera(std::move(options));
        EXPECT_EQ(OpenPage(exposure_page).at(0), L"Described Gain (1)");
        EXPECT_EQ(Shown(L"Exposure"), built_in_exposure);
    }
}

TEST_F(ItemPriorityTest, ADescribedItemOfAnotherPageLeavesTheBuiltInOne) {
    UseCamera(Described(Gain("Color")));
    EXPECT_EQ(OpenPage(exposure_page).at(0), L"Gain (0.000 dB) [ ] Auto");
    const Lines color = OpenPage(color_page);
    EXPECT_EQ(color.at(0), L"WhiteBalance [ ] Auto <OnePush>");
    EXPECT_EQ(color.at(4), L"Described Gain (1)") << "between the two by its id";
    EXPECT_EQ(color.at(5), L"Color Enhancement [ ] Enable");
}

TEST_F(ItemPriorityTest, AGroupOfNoPageShowsNowhere) {
    for (const char* group : {"partial scan", "exposure", "Lenses", ""}) {
        Close();
        UseCamera(Described(Gain(group)));
        for (const CLSID& clsid : all_pages) {
            for (const std::wstring& line : test_support::NotEmpty(OpenPage(clsid)))
                EXPECT_NE(line, L"Described Gain (1)") << group;
        }
    }
}

TEST_F(ItemPriorityTest, ADescribedItemNeedsNoDriverProperty) {
    simcam::camera_options options =
        Described(Description("Exposure", exposure_id, "Exposure", {{"Integer", value_id, "Time"}}));
    options.vendor.remove(SELVANE_EXPOSURE_TICKS);
    options.vendor.remove(SELVANE_GAIN);
    UseCamera(std::move(options));
    EXPECT_EQ(OpenPage(exposure_page), Lines{L"Exposure (1)"});
}

TEST_F(ItemPriorityTest, ADescribedItemThatTheDriverRefusesKeepsItsPosition) {
    UseCamera(Described(Gain("Exposure")));
    OpenPage(exposure_page);
    camera_->add_fault(simcam::fail_when(simcam::suffix_calls("/Value"), E_FAIL));
    camera_->add_fault(simcam::fail_when(simcam::suffix_calls("/IsLocked"), E_FAIL));
    Click(L"Exposure", L"Auto");
    EXPECT_EQ(Shown().at(0), L"Described Gain ~()");
    EXPECT_EQ(OpenPage(exposure_page).at(0), L"Described Gain ~()") << "and the built-in one does not come";
    EXPECT_EQ(Shown(L"Exposure").at(0), L"Exposure ~(1/30 sec) [x] Auto");
}

TEST_F(ItemPriorityTest, AWhiteBalanceWithGainsHasNoCommonValue) {
    const std::vector<Marked> elements = {{"Integer", value_id, "Temperature"},
                                          {"Boolean", automatic_id, "Auto"},
                                          {"Command", one_push_id, "Push"},
                                          {"Integer", blue_id, "Blue"}};
    UseCamera(Described(Description("Color", white_balance_id, "WhiteBalance", elements)));
    EXPECT_EQ(OpenPage(color_page), (Lines{
                                        L"WhiteBalance [x] Auto <Push>",
                                        L"  Blue (1)",
                                        L"Color Enhancement [ ] Enable",
                                    }));
}

TEST_F(ItemPriorityTest, AWhiteBalanceWithoutGainsHasACommonValue) {
    const std::vector<Marked> elements = {{"Command", one_push_id, "Push"},
                                          {"Boolean", automatic_id, "Auto"},
                                          {"Integer", value_id, "Temperature"}};
    UseCamera(Described(Description("Color", white_balance_id, "WhiteBalance", elements)));
    EXPECT_EQ(OpenPage(color_page), (Lines{
                                        L"WhiteBalance (1) [x] Auto <Push>",
                                        L"Color Enhancement [ ] Enable",
                                    }))
        << "value, mode and push, whatever their order";
}

}  // namespace
}  // namespace page_test
