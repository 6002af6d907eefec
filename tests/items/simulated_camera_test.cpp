#include "simcam/simulated_camera.h"

#include "tests/items/item_test.h"

#include <functional>
#include <set>

namespace item_tests {
namespace {

using simcam::camera_ptr;
using ZELAdapterHelper::CUnknown;
using ZELAdapterHelper::CZELItemDataBase;
using ZELAdapterHelper::ElementRecord;
using ZELAdapterHelper::ElementsOf;
using ZELAdapterHelper::InterfacesOf;
using ZELAdapterHelper::ItemRecord;
using ZELAdapterHelper::StaticItemTable;

using Names = std::multiset<std::wstring>;

const ItemRecord& RecordOf(std::size_t row) { return StaticItemTable().first[row]; }
constexpr std::size_t exposure_row = 0;
constexpr std::size_t gain_row = 2;
constexpr std::size_t partial_scan_row = 3;
constexpr std::size_t gpio_row = 5;
constexpr std::size_t strobe_row = 6;
constexpr std::size_t trigger_row = 7;
constexpr std::size_t white_balance_row = 9;
constexpr std::size_t focus_row = 10;

Item MakeItem(simcam::simulated_camera& camera, const ItemRecord& record) {
    CZELItemDataBase* made = nullptr;
    record.factory(&made, &camera, record);
    return Item::attach(made);
}

bool IsSupported(CZELItemDataBase& item, const ElementRecord& element) {
    bool supported = false;
    for (const auto& entry : InterfacesOf(element)) {
        supported = supported || item.SupportsInterface(entry.key);
    }
    return supported;
}

// The items that a camera offers, as "Item/Element" for each element that it supports.
Names SupportedElements(simcam::simulated_camera& camera) {
    Names names;
    for (const ItemRecord& record : StaticItemTable()) {
        const Item item = MakeItem(camera, record);
        if (!item) continue;
        for (const ElementRecord& element : ElementsOf(record)) {
            if (IsSupported(*item, element)) names.insert(std::wstring(record.name) + L"/" + element.name);
        }
    }
    return names;
}

Names EveryElement() {
    Names names;
    for (const ItemRecord& record : StaticItemTable()) {
        for (const ElementRecord& element : ElementsOf(record)) {
            names.insert(std::wstring(record.name) + L"/" + element.name);
        }
    }
    return names;
}

class SimulatedCameraTest : public ::testing::Test {
protected:
    void Open(std::string_view name) {
        camera_ = simcam::make_camera(name);
        ASSERT_TRUE(camera_);
    }
    Item Make(std::size_t row) {
        Item item = MakeItem(*camera_, RecordOf(row));
        EXPECT_TRUE(item);
        return item;
    }
    static bool Available(const Item& item, InterfaceKey key) {
        bool available = false;
        EXPECT_EQ(item->IsAvailable(key, available), S_OK);
        return available;
    }
    static bool Switch(const Item& item, InterfaceKey key) {
        bool on = false;
        EXPECT_EQ(item->GetSwitch(key, on), S_OK);
        return on;
    }
    static std::int32_t Value(const Item& item, InterfaceKey key) {
        std::int32_t value = -1;
        EXPECT_EQ(item->GetValue(key, value), S_OK);
        return value;
    }
    static double AbsValue(const Item& item, InterfaceKey key) {
        double value = -1;
        EXPECT_EQ(item->GetAbsValue(key, value), S_OK);
        return value;
    }
    simcam::simulated_camera& Camera() { return *camera_; }

private:
    camera_ptr camera_;
};

TEST_F(SimulatedCameraTest, TheFullCameraOffersEveryElement) {
    Open("full");
    EXPECT_EQ(SupportedElements(Camera()), EveryElement());
}

TEST_F(SimulatedCameraTest, TheColourlessCameraLacksTheColourItemsAlone) {
    Open("colourless");
    Names expected = EveryElement();
    for (const wchar_t* name : {L"Color Enhancement/Enable", L"WhiteBalance/Auto", L"WhiteBalance/OnePush",
                                L"WhiteBalance/White Balance Red", L"WhiteBalance/White Balance Green",
                                L"WhiteBalance/White Balance Blue"}) {
        EXPECT_EQ(expected.erase(name), 1U);
    }
    EXPECT_EQ(SupportedElements(Camera()), expected);
}

TEST_F(SimulatedCameraTest, TheOldestCameraOffersWhatItsDriverHas) {
    Open("oldest");
    const Names expected = {L"Exposure/Value",
                            L"Exposure/Auto",
                            L"Exposure/Auto Reference",
                            L"Exposure/Auto Max Value",
                            L"Gain/Value",
                            L"Gain/Auto",
                            L"Partial scan/X Offset",
                            L"Partial scan/Y Offset",
                            L"GPIO/GP IN",
                            L"GPIO/Read",
                            L"GPIO/GP Out",
                            L"GPIO/Write",
                            L"Strobe/Enable",
                            L"Strobe/Mode",
                            L"Strobe/Polarity",
                            L"Trigger/Enable",
                            L"WhiteBalance/Auto",
                            L"WhiteBalance/OnePush",
                            L"WhiteBalance/White Balance Red",
                            L"WhiteBalance/White Balance Blue",
                            L"Focus/One Push",
                            L"Focus/Value",
                            L"Focus/One Push Running"};
    EXPECT_EQ(SupportedElements(Camera()), expected);
}

TEST_F(SimulatedCameraTest, CamerasWithoutDriverPropertiesOfferNothing) {
    for (const char* name : {"empty", "described", "simple"}) {
        Open(name);
        EXPECT_TRUE(SupportedElements(Camera()).empty()) << name;
    }
}

// The elements of the rows of a name: of both rows for Exposure.
Names ElementsOfItem(const std::wstring& name) {
    Names names;
    for (const ItemRecord& record : StaticItemTable()) {
        if (record.name != name) continue;
        for (const ElementRecord& element : ElementsOf(record)) names.insert(name + L"/" + element.name);
    }
    return names;
}

// What the full camera loses by a change of its options.
Names LostBy(const std::function<void(simcam::camera_options&)>& change) {
    simcam::camera_options options = *simcam::ready_made("builtin");
    change(options);
    Names lost = EveryElement();
    for (const std::wstring& name : SupportedElements(*simcam::make_camera(options))) {
        const auto found = lost.find(name);
        EXPECT_NE(found, lost.end());
        if (found != lost.end()) lost.erase(found);
    }
    return lost;
}

Names LostByProperty(DWORD id) {
    return LostBy([id](simcam::camera_options& options) { options.vendor.remove(id); });
}

TEST(SwitchingOff, AVendorPropertyTakesItsOwnElementsAlone) {
    const std::pair<DWORD, const wchar_t*> single[] = {
        {101, L"WhiteBalance/White Balance Blue"},
        {102, L"WhiteBalance/White Balance Red"},
        {107, L"WhiteBalance/OnePush"},
        {118, L"Partial scan/X Offset"},
        {119, L"Partial scan/Y Offset"},
        {206, L"WhiteBalance/White Balance Green"},
        {211, L"Partial scan/Auto-center"},
        {212, L"Binning factor/Value"},
        {213, L"Trigger/Software Trigger"},
        {238, L"Trigger/Delay"},
        {240, L"Exposure/Auto Max Value"},
        {244, L"Focus/Auto Min Value"},
        {245, L"Focus/Auto Max Value"},
        {246, L"Exposure/Auto Max Value"},
        {247, L"Focus/Top"},
        {248, L"Focus/Left"},
        {249, L"Focus/Bottom"},
        {250, L"Focus/Right"},
        {251, L"Focus/Enable Region of Interest"},
    };
    for (const auto& [id, name] : single) EXPECT_EQ(LostByProperty(id), Names{name}) << id;
}

TEST(SwitchingOff, AVendorPropertyThatSeveralElementsShareTakesThemAll) {
    const Names one_exposure = {L"Exposure/Value", L"Exposure/Auto", L"Exposure/Auto Reference",
                                L"Exposure/Auto Max Value", L"Exposure/Auto"};
    EXPECT_EQ(LostByProperty(106), (Names{L"Exposure/Auto Reference", L"Exposure/Auto Reference"}));
    EXPECT_EQ(LostByProperty(109), one_exposure);
    EXPECT_EQ(LostByProperty(115), (Names{L"Trigger/Enable", L"Trigger/Polarity", L"Trigger/Operation"}));
    EXPECT_EQ(LostByProperty(122), ElementsOfItem(L"GPIO"));
    EXPECT_EQ(LostByProperty(124), ElementsOfItem(L"Focus"));
    EXPECT_EQ(LostByProperty(125), ElementsOfItem(L"Strobe"));
    EXPECT_EQ(LostByProperty(200), one_exposure);
    EXPECT_EQ(LostByProperty(202), (Names{L"Exposure/Auto", L"Exposure/Auto"}));
    EXPECT_EQ(LostByProperty(241), ElementsOfItem(L"Gain"));
}

TEST(SwitchingOff, OneOfTheTwoFamiliesOfTimesLeavesTheOther) {
    EXPECT_EQ(LostByProperty(201), Names{}) << "microseconds are there";
    EXPECT_EQ(LostByProperty(239), Names{}) << "ticks are there";
}

TEST(SwitchingOff, APropertySetTakesItsItems) {
    const Names color = {L"Color Enhancement/Enable"};
    Names vendor = EveryElement();
    for (const wchar_t* other : {L"Color Enhancement/Enable", L"WhiteBalance/Auto"}) vendor.erase(other);
    EXPECT_EQ(LostBy([](auto& options) { options.color_enhancement_set = false; }), color);
    EXPECT_EQ(LostBy([](auto& options) { options.vendor.color_enhancement.clear(); }), color);
    EXPECT_EQ(LostBy([](auto& options) { options.vendor_set = false; }), vendor);
    EXPECT_EQ(LostBy([](auto& options) { options.property_set = false; }), EveryElement());
}

TEST(SwitchingOff, AStandardInterfaceTakesWhatNeedsIt) {
    Names control = ElementsOfItem(L"Focus");
    control.insert(L"Exposure/Auto");
    EXPECT_EQ(LostBy([](auto& options) { options.camera_control = false; }), control);
    Names amp = ElementsOfItem(L"WhiteBalance");
    amp.insert(L"Gain/Auto");
    EXPECT_EQ(LostBy([](auto& options) { options.video_proc_amp = false; }), amp);
}

TEST(SwitchingOff, APropertyOfAStandardInterfaceTakesItsElementAlone) {
    const auto without_control = [](LONG property) {
        return LostBy([=](auto& options) { options.vendor.camera_control.erase(property); });
    };
    const auto without_amp = [](LONG property) {
        return LostBy([=](auto& options) { options.vendor.video_proc_amp.erase(property); });
    };
    EXPECT_EQ(without_control(4), Names{L"Exposure/Auto"});
    EXPECT_EQ(without_control(6), Names{L"Focus/Value"});
    EXPECT_EQ(without_amp(7), Names{L"WhiteBalance/Auto"});
    EXPECT_EQ(without_amp(9), Names{L"Gain/Auto"});
}

TEST_F(SimulatedCameraTest, AutomaticExposureTakesItsValuesAway) {
    Open("builtin");
    const Item exposure = Make(exposure_row);
    EXPECT_EQ(exposure->SetAbsValue(1, 0.5), S_OK);
    EXPECT_EQ(AbsValue(exposure, 1), 0.5);
    EXPECT_EQ(Value(exposure, 0), 500000);
    EXPECT_TRUE(Available(exposure, 1));
    EXPECT_EQ(exposure->SetSwitch(2, true), S_OK);
    EXPECT_TRUE(Switch(exposure, 2));
    EXPECT_FALSE(Available(exposure, 0));
    EXPECT_FALSE(Available(exposure, 1));
    EXPECT_TRUE(Available(exposure, 3)) << "the reference is for the automatic mode";
    EXPECT_TRUE(Available(exposure, 5));
    EXPECT_EQ(exposure->SetSwitch(6, true), S_OK);
    EXPECT_FALSE(Available(exposure, 5));
    EXPECT_EQ(exposure->SetSwitch(2, false), S_OK);
    EXPECT_TRUE(Available(exposure, 1));
}

TEST_F(SimulatedCameraTest, GainInDecibelsAndRaw) {
    Open("builtin");
    const Item gain = Make(gain_row);
    EXPECT_EQ(gain->SetAbsValue(1, 12.34), S_OK);
    EXPECT_EQ(AbsValue(gain, 1), 12.34);
    EXPECT_EQ(gain->SetValue(0, 240), S_OK);
    EXPECT_EQ(AbsValue(gain, 1), 24.0);
    EXPECT_EQ(gain->SetSwitch(2, true), S_OK);
    EXPECT_FALSE(Available(gain, 1));
}

TEST_F(SimulatedCameraTest, CenteringTakesTheOffsetsAway) {
    Open("builtin");
    const Item scan = Make(partial_scan_row);
    EXPECT_EQ(scan->SetValue(118, 100), S_OK);
    EXPECT_EQ(scan->SetSwitch(211, true), S_OK);
    EXPECT_FALSE(Available(scan, 118));
    EXPECT_EQ(Value(scan, 118), 512);
}

TEST_F(SimulatedCameraTest, PinsAreReadAndWrittenByTheirButtons) {
    Open("builtin");
    const Item gpio = Make(gpio_row);
    Camera().vendor()->gpio[SELVANE_GPIO].input = 2;
    EXPECT_EQ(gpio->SetValue(2, 3), S_OK);
    EXPECT_EQ(Camera().vendor()->gpio[SELVANE_GPIO].output, 0);
    EXPECT_EQ(gpio->Push(3), S_OK);
    EXPECT_EQ(Camera().vendor()->gpio[SELVANE_GPIO].output, 3);
    EXPECT_EQ(Value(gpio, 0), 0);
    EXPECT_EQ(gpio->Push(1), S_OK);
    EXPECT_EQ(Value(gpio, 0), 2);
    EXPECT_EQ(Value(gpio, 2), 3);
}

TEST_F(SimulatedCameraTest, StrobeModesReachTheCamera) {
    Open("builtin");
    const Item strobe = Make(strobe_row);
    const simcam::held_model model = Camera().vendor();
    const simcam::strobe_property& device = model->strobe[SELVANE_STROBE];
    EXPECT_EQ(Value(strobe, 1), 1);
    EXPECT_EQ(strobe->SetSwitch(0, true), S_OK);
    EXPECT_EQ(device.enable, 1);
    EXPECT_EQ(strobe->SetValue(1, 2), S_OK);
    EXPECT_EQ(device.follow_exposure, 1);
    EXPECT_EQ(device.duration, 1000);
    EXPECT_EQ(strobe->SetValue(1, 0), S_OK);
    EXPECT_EQ(device.follow_exposure, 0);
    EXPECT_EQ(device.duration, 0);
    EXPECT_EQ(strobe->Refresh(0), S_OK);
    EXPECT_EQ(Value(strobe, 1), 0);
    EXPECT_EQ(strobe->SetValue(1, 1), S_OK);
    EXPECT_EQ(device.duration, 10);
    EXPECT_EQ(strobe->Refresh(0), S_OK);
    EXPECT_EQ(Value(strobe, 1), 1);
}

TEST_F(SimulatedCameraTest, SoftwareTriggersComeWhileTheTriggerIsOn) {
    Open("builtin");
    const Item trigger = Make(trigger_row);
    EXPECT_FALSE(Switch(trigger, 0));
    EXPECT_FALSE(Available(trigger, 3));
    EXPECT_TRUE(FAILED(trigger->Push(3)));
    EXPECT_EQ(trigger->SetSwitch(0, true), S_OK);
    EXPECT_TRUE(Available(trigger, 3));
    EXPECT_EQ(trigger->Push(3), S_OK);
    EXPECT_EQ(Camera().vendor()->software_triggers, 1U);
    EXPECT_EQ(trigger->SetSwitch(1, true), S_OK);
    EXPECT_EQ(trigger->SetValue(5, 1), S_OK);
    EXPECT_TRUE(Switch(trigger, 0));
    EXPECT_TRUE(Switch(trigger, 1));
    EXPECT_EQ(Value(trigger, 5), 1);
}

TEST_F(SimulatedCameraTest, AutomaticWhiteBalanceTakesTheGainsAway) {
    Open("builtin");
    const Item balance = Make(white_balance_row);
    EXPECT_EQ(balance->SetValue(0, 200), S_OK);
    EXPECT_EQ(balance->Push(3), S_OK);
    EXPECT_EQ(Value(balance, 0), 95);
    EXPECT_EQ(balance->SetSwitch(2, true), S_OK);
    for (const InterfaceKey key : {0U, 1U, 3U, 4U}) EXPECT_FALSE(Available(balance, key)) << key;
    EXPECT_EQ(balance->SetSwitch(2, false), S_OK);
    EXPECT_FALSE(Switch(balance, 2));
}

TEST_F(SimulatedCameraTest, OnePushFocusRunsAndTheRegionOpens) {
    Open("builtin");
    const Item focus = Make(focus_row);
    EXPECT_EQ(focus->SetValue(1, 700), S_OK);
    EXPECT_EQ(Value(focus, 1), 700);
    EXPECT_FALSE(Switch(focus, 2));
    EXPECT_EQ(focus->Push(0), S_OK);
    EXPECT_TRUE(Switch(focus, 2));
    EXPECT_EQ(Value(focus, 1), 500);
    EXPECT_FALSE(Available(focus, 6));
    EXPECT_EQ(focus->SetSwitch(5, true), S_OK);
    EXPECT_TRUE(Available(focus, 6));
    EXPECT_EQ(focus->SetValue(6, 100), S_OK);
    EXPECT_EQ(Value(focus, 6), 100);
}

// What a page asks of an element when it is built and refreshed.
void UseElement(CZELItemDataBase& item, const ElementRecord& element) {
    for (const auto& entry : InterfacesOf(element)) {
        bool flag = false;
        RangeInfo range;
        AbsRangeInfo abs_range;
        std::int32_t value = 0;
        double abs_value = 0;
        SharedString unit;
        std::vector<SharedString> strings;
        if (!item.SupportsInterface(entry.key)) continue;
        (void)item.IsAvailable(entry.key, flag);
        (void)item.IsReadOnly(entry.key, flag);
        (void)item.GetSwitch(entry.key, flag);
        (void)item.GetRange(entry.key, range);
        (void)item.GetValue(entry.key, value);
        (void)item.GetMapStrings(entry.key, strings);
        if (SUCCEEDED(item.GetAbsRange(entry.key, abs_range))) {
            EXPECT_EQ(item.GetAbsUnit(entry.key, unit, value), S_OK) << "a page needs the unit of a range";
        }
        (void)item.GetAbsValue(entry.key, abs_value);
        item.SetSwitch(entry.key, true);
        item.SetValue(entry.key, value);
        item.SetAbsValue(entry.key, abs_value);
        item.Push(entry.key);
    }
}

std::uint64_t UseCamera(simcam::simulated_camera& camera) {
    const std::uint64_t before = camera.call_count();
    for (const ItemRecord& record : StaticItemTable()) {
        const Item item = MakeItem(camera, record);
        if (!item) continue;
        for (const ElementRecord& element : ElementsOf(record)) UseElement(*item, element);
    }
    return camera.call_count() - before;
}

TEST_F(SimulatedCameraTest, AnyDriverCallOfAnyCameraMayFail) {
    const std::int32_t live_objects = CUnknown::LiveObjects();
    for (const auto& [name, about] : simcam::camera_names()) {
        simcam::camera_options options = *simcam::ready_made(name);
        options.descriptions.clear();
        options.keep_transcript = false;
        const camera_ptr camera = simcam::make_camera(std::move(options));
        const simcam::vendor_model fresh = *camera->vendor();
        const std::uint64_t calls = UseCamera(*camera);
        for (std::uint64_t n = 1; n <= calls; ++n) {
            *camera->vendor() = fresh;
            camera->clear_faults();
            camera->add_fault(simcam::fail_nth(n, driver_failure));
            UseCamera(*camera);
            ASSERT_EQ(camera->references(), 1) << name << ' ' << n;
            ASSERT_EQ(CUnknown::LiveObjects(), live_objects) << name << ' ' << n;
        }
    }
}

}  // namespace
}  // namespace item_tests
