#include "genicam/inode.h"
#include "tests/simcam/driver_client.h"

#include <gtest/gtest.h>

#include <string>

namespace simcam_test {
namespace {

using namespace simcam;

constexpr std::string_view features = R"(<D>
  <Integer Name="I"><Extension><Default>7</Default></Extension>
    <Value>5</Value><Min>-10</Min><Max>20</Max><Inc>5</Inc></Integer>
  <Float Name="F"><Extension><Default>1.25</Default></Extension>
    <Value>0.5</Value><Min>-1.5</Min><Max>2.5</Max></Float>
  <Boolean Name="B"><Extension><Default>1</Default></Extension><Value>true</Value></Boolean>
  <Enumeration Name="E">
    <EnumEntry Name="Off"><Value>3</Value></EnumEntry>
    <EnumEntry Name="On"><Value>7</Value></EnumEntry>
    <EnumEntry Name="Secret"><pIsImplemented>Zero</pIsImplemented><Value>9</Value></EnumEntry>
    <Value>7</Value></Enumeration>
  <Command Name="C"><pValue>Count</pValue><CommandValue>4</CommandValue></Command>
  <String Name="S"><Value>text</Value></String>
  <Integer Name="Count"><Value>0</Value></Integer>
  <Integer Name="Zero"><Value>0</Value><ImposedAccessMode>RO</ImposedAccessMode></Integer>
  <Integer Name="Missing"><pIsImplemented>Zero</pIsImplemented><Value>1</Value></Integer>
  <Integer Name="Away"><pIsAvailable>Zero</pIsAvailable><Value>1</Value></Integer>
  <Integer Name="Fixed"><Value>1</Value><ImposedAccessMode>RO</ImposedAccessMode></Integer>
  <Integer Name="Key"><Value>1</Value></Integer>
  <Integer Name="Keyed"><pIsLocked>Key</pIsLocked><Value>1</Value></Integer>
  <Boolean Name="Switch"><Value>false</Value></Boolean>
  <Integer Name="Switched"><pIsLocked>Switch</pIsLocked><Value>1</Value></Integer>
  <Integer Name="BadlyKeyed"><pIsLocked>Nowhere</pIsLocked><Value>1</Value></Integer>
  <Category Name="Cat"/>
</D>)";

class NamedAccess : public testing::Test {
protected:
    static camera_options Options() {
        camera_options options;
        options.descriptions = {std::string(features)};
        return options;
    }
    std::int64_t Integer(std::string_view path) {
        const answer got = get_path(*camera_, path);
        EXPECT_EQ(got.result, S_OK) << path;
        EXPECT_EQ(got.returned, 8U) << path;
        return value_of<std::int64_t>(got.data);
    }
    double Real(std::string_view path) {
        const answer got = get_path(*camera_, path);
        EXPECT_EQ(got.result, S_OK) << path;
        return value_of<double>(got.data);
    }
    camera_ptr camera_ = make_camera(Options());
};

TEST_F(NamedAccess, AnswersIntegers) {
    EXPECT_EQ(Integer("I/Value"), 5);
    EXPECT_EQ(Integer("I/Min"), -10);
    EXPECT_EQ(Integer("I/Max"), 20);
    EXPECT_EQ(Integer("I/Inc"), 5);
    EXPECT_EQ(Integer("I/Default"), 7);
    EXPECT_EQ(set_path(*camera_, "I/Value", bytes_of(std::int64_t{-3})), S_OK);
    EXPECT_EQ(Integer("I/Value"), -3);
    EXPECT_EQ(set_path(*camera_, "I/Value", bytes_of(std::int64_t{21})), E_INVALIDARG);
    EXPECT_EQ(Integer("I/Value"), -3);
}

TEST_F(NamedAccess, AnswersFloats) {
    EXPECT_EQ(Real("F/Value"), 0.5);
    EXPECT_EQ(Real("F/Min"), -1.5);
    EXPECT_EQ(Real("F/Max"), 2.5);
    EXPECT_EQ(Real("F/Default"), 1.25);
    EXPECT_EQ(get_path(*camera_, "F/Inc").result, E_NOTIMPL);
    EXPECT_EQ(set_path(*camera_, "F/Value", bytes_of(-0.25)), S_OK);
    EXPECT_EQ(Real("F/Value"), -0.25);
    EXPECT_EQ(set_path(*camera_, "F/Value", bytes_of(3.0)), E_INVALIDARG);
}

TEST_F(NamedAccess, FailsADefaultThatNobodyStates) {
    EXPECT_EQ(get_path(*camera_, "Count/Default").result, E_NOTIMPL);
    EXPECT_EQ(get_path(*camera_, "Switch/Default").result, E_NOTIMPL);
}

TEST_F(NamedAccess, AnswersBooleans) {
    EXPECT_EQ(Integer("B/Value"), 1);
    EXPECT_EQ(Integer("B/Default"), 1);
    EXPECT_EQ(set_path(*camera_, "B/Value", bytes_of(std::int64_t{0})), S_OK);
    EXPECT_EQ(Integer("B/Value"), 0);
    EXPECT_EQ(set_path(*camera_, "B/Value", bytes_of(std::uint64_t{1} << 40)), S_OK);
    EXPECT_EQ(Integer("B/Value"), 1);
    EXPECT_EQ(get_path(*camera_, "B/Min").result, property_unknown);
}

TEST_F(NamedAccess, AnswersTheSelectedEntry) {
    const answer got = get_path(*camera_, "E/SelectedEntry", 256);
    EXPECT_EQ(got.result, S_OK);
    EXPECT_EQ(got.returned, 3U);
    EXPECT_STREQ(reinterpret_cast<const char*>(got.data.data()), "On");
    EXPECT_EQ(set_path(*camera_, "E/SelectedEntry", text_bytes("Off")), S_OK);
    EXPECT_EQ(Integer("E/Value"), 3);
    EXPECT_TRUE(FAILED(set_path(*camera_, "E/SelectedEntry", text_bytes("of"))));
    EXPECT_TRUE(FAILED(set_path(*camera_, "E/SelectedEntry", bytes())));
    EXPECT_EQ(set_path(*camera_, "E/Value", bytes_of(std::int64_t{7})), S_OK);
    EXPECT_EQ(Integer("E/Value"), 7);
    EXPECT_TRUE(FAILED(set_path(*camera_, "E/Value", bytes_of(std::int64_t{4}))));
}

TEST_F(NamedAccess, CutsATextToTheBuffer) {
    const answer got = get_path(*camera_, "E/SelectedEntry", 2);
    EXPECT_EQ(got.result, S_OK);
    EXPECT_EQ(got.returned, 2U);
    EXPECT_EQ(got.data, (bytes{'O', 0}));
    EXPECT_EQ(get_path(*camera_, "E/SelectedEntry", 0).result, buffer_too_small);
}

TEST_F(NamedAccess, ExecutesCommands) {
    EXPECT_EQ(set_path(*camera_, "C/Execute", bytes_of(std::int64_t{1})), S_OK);
    EXPECT_EQ(Integer("Count/Value"), 4);
    EXPECT_EQ(set_path(*camera_, "C/Execute", bytes_of(std::int64_t{0})), E_INVALIDARG);
    EXPECT_EQ(set_path(*camera_, "I/Execute", bytes_of(std::int64_t{1})), property_unknown);
    EXPECT_EQ(get_path(*camera_, "C/Value").result, property_unknown);
}

TEST_F(NamedAccess, AnswersStrings) {
    const answer got = get_path(*camera_, "S/Value", 16);
    EXPECT_EQ(got.result, S_OK);
    EXPECT_STREQ(reinterpret_cast<const char*>(got.data.data()), "text");
    EXPECT_EQ(set_path(*camera_, "S/Value", text_bytes("new")), S_OK);
    std::string text;
    EXPECT_EQ(camera_->get_named("S/Value", text), S_OK);
    EXPECT_EQ(text, "new");
}

TEST_F(NamedAccess, TellsWhatIsImplemented) {
    EXPECT_EQ(Integer("I/IsImplemented"), 1);
    EXPECT_EQ(Integer("F/IsImplemented"), 1);
    EXPECT_EQ(Integer("C/IsImplemented"), 1);
    EXPECT_EQ(Integer("S/IsImplemented"), 1);
    EXPECT_EQ(Integer("Missing/IsImplemented"), 0);
    EXPECT_EQ(Integer("E/On/IsImplemented"), 1);
    EXPECT_EQ(Integer("E/Secret/IsImplemented"), 0);
    EXPECT_EQ(get_path(*camera_, "E/None/IsImplemented").result, property_unknown);
    EXPECT_EQ(get_path(*camera_, "I/On/IsImplemented").result, property_unknown);
    EXPECT_EQ(get_path(*camera_, "E/On/Value").result, property_unknown);
}

TEST_F(NamedAccess, RefusesWhatTheFeatureRefuses) {
    EXPECT_EQ(get_path(*camera_, "Missing/Value").result, E_NOTIMPL);
    EXPECT_TRUE(FAILED(get_path(*camera_, "Away/Value").result));
    EXPECT_EQ(set_path(*camera_, "Fixed/Value", bytes_of(std::int64_t{2})), E_ACCESSDENIED);
}

// What pages take it for: the control of a feature with a non-zero "/IsLocked" is the enabled one.
TEST_F(NamedAccess, AnswersIsLockedWithWhetherTheFeatureMayBeChanged) {
    EXPECT_EQ(Integer("I/IsLocked"), 1);
    EXPECT_EQ(Integer("F/IsLocked"), 1);
    EXPECT_EQ(Integer("C/IsLocked"), 1);
    EXPECT_EQ(Integer("Fixed/IsLocked"), 0);
    EXPECT_EQ(Integer("Away/IsLocked"), 0);
}

TEST_F(NamedAccess, AnswersIsLockedWithTheLinkWhereThereIsOne) {
    EXPECT_EQ(Integer("Keyed/IsLocked"), 1);
    EXPECT_EQ(camera_->set_named("Key/Value", 0), S_OK);
    EXPECT_EQ(Integer("Keyed/IsLocked"), 0);
    EXPECT_EQ(Integer("Switched/IsLocked"), 0);
    EXPECT_EQ(camera_->set_named("Switch/Value", true), S_OK);
    EXPECT_EQ(Integer("Switched/IsLocked"), 1);
    EXPECT_EQ(Integer("BadlyKeyed/IsLocked"), 0);
}

TEST_F(NamedAccess, KnowsNoOtherPath) {
    for (const char* path : {"", "/", "I", "I/", "/Value", "None/Value", "I/value", "I/Value/", "I/Unit",
                             "Cat/Value", "I//Value", "Cat/Min", "None/On/IsImplemented"}) {
        EXPECT_EQ(get_path(*camera_, path).result, property_unknown) << path;
        EXPECT_EQ(set_path(*camera_, path, bytes(8)), property_unknown) << path;
    }
}

TEST_F(NamedAccess, WantsEightBytesForANumber) {
    EXPECT_EQ(get_path(*camera_, "I/Value", 7).result, buffer_too_small);
    EXPECT_EQ(set_path(*camera_, "I/Value", bytes(7)), E_INVALIDARG);
    EXPECT_EQ(set_path(*camera_, "I/Value", bytes(9)), E_INVALIDARG);
    const answer got = get_path(*camera_, "I/Value", 12);
    EXPECT_EQ(got.result, S_OK);
    EXPECT_EQ(got.returned, 8U);
}

TEST_F(NamedAccess, RefusesARequestOutOfShape) {
    const GUID set = wire::device_set;
    bytes reserved = path_request("I/Value");
    reserved[7] = 1;
    EXPECT_EQ(get_property(*camera_, set, 4, reserved, 8).result, E_INVALIDARG);
    EXPECT_EQ(get_property(*camera_, set, 4, bytes(71), 8).result, E_INVALIDARG);
    bytes unterminated(72, 'A');
    std::fill(unterminated.begin(), unterminated.begin() + 8, std::uint8_t{0});
    EXPECT_EQ(get_property(*camera_, set, 4, unterminated, 8).result, E_INVALIDARG);
    EXPECT_EQ(set_property(*camera_, set, 4, unterminated, bytes(8)), E_INVALIDARG);
}

TEST_F(NamedAccess, TakesTheFirstDescriptionThatHasTheFeature) {
    camera_options options = Options();
    options.descriptions.insert(options.descriptions.begin(), "broken <");
    options.descriptions.emplace_back(R"(<D><Integer Name="I"><Value>99</Value></Integer>
                                         <Integer Name="Second"><Value>42</Value></Integer></D>)");
    camera_ = make_camera(options);
    EXPECT_EQ(Integer("I/Value"), 5);
    EXPECT_EQ(Integer("Second/Value"), 42);
}

TEST_F(NamedAccess, AgreesWithTheNodes) {
    auto& integer = *static_cast<GenICam::IInteger*>(camera_->find_node("I"));
    EXPECT_FALSE(integer.set_val(11, 0));
    EXPECT_EQ(Integer("I/Value"), 11);
    auto& real = *static_cast<GenICam::IFloat*>(camera_->find_node("F"));
    EXPECT_FALSE(real.set_val(2.25, 0));
    EXPECT_EQ(Real("F/Value"), 2.25);
    EXPECT_EQ(camera_->find_node("None"), nullptr);
}

TEST_F(NamedAccess, IsReachedFromInsideWithoutACall) {
    std::int64_t integer = 0;
    double real = 0;
    std::string text;
    EXPECT_EQ(camera_->set_named("I/Value", 12), S_OK);
    EXPECT_EQ(camera_->get_named("I/Value", integer), S_OK);
    EXPECT_EQ(integer, 12);
    EXPECT_EQ(camera_->set_named("F/Value", 1.5), S_OK);
    EXPECT_EQ(camera_->get_named("F/Value", real), S_OK);
    EXPECT_EQ(real, 1.5);
    EXPECT_EQ(camera_->set_named("E/SelectedEntry", "Off"), S_OK);
    EXPECT_EQ(camera_->get_named("E/SelectedEntry", text), S_OK);
    EXPECT_EQ(text, "Off");
    EXPECT_EQ(camera_->get_named("None/Value", integer), property_unknown);
    EXPECT_EQ(camera_->call_count(), 0U);
}

TEST_F(NamedAccess, CanStartFromTheDefaults) {
    camera_options options = Options();
    options.start_from_defaults = true;
    camera_ = make_camera(options);
    EXPECT_EQ(Integer("I/Value"), 7);
    EXPECT_EQ(Real("F/Value"), 1.25);
    EXPECT_EQ(Integer("B/Value"), 1);
    EXPECT_EQ(Integer("Count/Value"), 0);
}

TEST_F(NamedAccess, KnowsNoSuffixOfAnotherKind) {
    for (const char* path : {"E/Min", "E/Default", "S/Min", "C/Value", "Cat/Value", "None/SelectedEntry",
                             "I/SelectedEntry", "E/Off/SelectedEntry", "C/SelectedEntry"}) {
        EXPECT_EQ(get_path(*camera_, path, 256).result, property_unknown) << path;
    }
    for (const char* path :
         {"I/SelectedEntry", "None/SelectedEntry", "E/Off/SelectedEntry", "S/SelectedEntry"})
        EXPECT_EQ(set_path(*camera_, path, text_bytes("Off")), property_unknown) << path;
    for (const char* path : {"E/Off/Value", "I/Min", "Cat/Value"})
        EXPECT_EQ(set_path(*camera_, path, bytes_of(std::int64_t{1})), property_unknown) << path;
}

// What stands behind the registers of a camera that does not answer.
TEST_F(NamedAccess, FailsWithTheNodes) {
    camera_options options;
    options.descriptions = {R"(<D>
      <StringReg Name="Text"><Address>0x100</Address><Length>-1</Length><pPort>Device</pPort></StringReg>
      <Enumeration Name="Choice"><EnumEntry Name="A"><Value>1</Value></EnumEntry>
        <pValue>Nowhere</pValue></Enumeration>
      <Integer Name="Broken"><pValue>Nowhere</pValue></Integer>
      <Boolean Name="BrokenSwitch"><pValue>Nowhere</pValue></Boolean>
      <Float Name="Real"><Value>1</Value></Float>
      <Integer Name="Doubted"><pIsImplemented>Broken</pIsImplemented><Value>1</Value></Integer>
      <Integer Name="Absent"><pIsAvailable>Broken</pIsAvailable><Value>1</Value></Integer>
      <Integer Name="KeyBroken"><pIsLocked>Broken</pIsLocked><Value>1</Value></Integer>
      <Integer Name="SwitchBroken"><pIsLocked>BrokenSwitch</pIsLocked><Value>1</Value></Integer>
      <Integer Name="KeyedByReal"><pIsLocked>Real</pIsLocked><Value>1</Value></Integer>
      <Integer Name="Constant"><ImposedAccessMode>RO</ImposedAccessMode><Extension><Default>9</Default></Extension>
        <Value>1</Value></Integer>
      <Port Name="Device"/></D>)"};
    options.start_from_defaults = true;
    camera_ = make_camera(options);
    EXPECT_TRUE(FAILED(get_path(*camera_, "Text/Value", 16).result));
    EXPECT_TRUE(FAILED(get_path(*camera_, "Choice/Value").result));
    EXPECT_TRUE(FAILED(get_path(*camera_, "Choice/SelectedEntry", 16).result));
    EXPECT_EQ(get_path(*camera_, "Doubted/IsImplemented").result, E_NOTIMPL);
    for (const char* name : {"Absent", "KeyBroken", "SwitchBroken", "KeyedByReal"})
        EXPECT_EQ(Integer(std::string(name) + "/IsLocked"), 0) << name << " may not be changed";
    EXPECT_EQ(Integer("Constant/Value"), 1) << "no default goes into what is read-only";
}

}  // namespace
}  // namespace simcam_test
