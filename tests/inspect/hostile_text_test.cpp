// Texts of a description that a terminal would obey, that forge lines, or that make a picture no viewer
// opens; descriptions that unfold; files that are links.

#include "adapter/item_discovery.h"
#include "platform/utf8.h"
#include "tests/inspect/inspection.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <utility>

#include <gmock/gmock.h>
#include <pugixml.hpp>

namespace inspect_test {
namespace {

using testing::HasSubstr;

// What the character references of `hostile` stand for.
const std::string obeyed = "\x1B[2K\r\nforged: 0 errors\x7F\xC2\x9B\x33m\xE2\x80\xA8\xE2\x80\xAE\xE2\x81\xA6";
const std::string hostile = "&#x1B;[2K&#13;&#10;forged: 0 errors&#x7F;&#x9B;3m&#x2028;&#x202E;&#x2066;";
// As long, so that lines break at the same places.
const std::string harmless(obeyed.size(), 'n');

// The only such characters that a program may write are its own line ends.
std::size_t CountObeyed(std::string_view text) {
    std::size_t count = 0;
    while (!text.empty()) {
        const platform::utf8_character next = platform::first_character(text);
        const char32_t c = next.code;
        const bool is_control = (c < 0x20 && c != '\n') || (c >= 0x7F && c <= 0x9F);
        const bool is_mark = c == 0x2028 || c == 0x202E || c == 0x2066;
        if (is_control || is_mark || c == platform::no_character) ++count;
        text.remove_prefix(next.size);
    }
    return count;
}

class HostileText : public InspectTest {
protected:
    // Every text that an author can write, in a description that also gives `lint` a lot to say.
    static std::string Description(const std::string& text) {
        const auto fill = [&](std::string pattern) {
            for (std::size_t at = 0; (at = pattern.find('@', at)) != std::string::npos; at += text.size())
                pattern.replace(at, 1, text);
            return pattern;
        };
        return fill(
            R"(<RegisterDescription ModelName="M@" VendorName="V@" ToolTip="T@" SchemaMajorVersion="@">
<Category Name="Root"><DisplayName>Special</DisplayName><pFeature>Item@</pFeature><pFeature>Loop@</pFeature><pFeature>Stray</pFeature></Category>
<Category Name="Loop@"><pFeature>Loop@</pFeature></Category>
<Category Name="Stray"><DisplayName>Nowhere@</DisplayName><pFeature>Lost@</pFeature></Category>
<Category Name="Lost@"><Extension><ZELItemGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1002}</ZELItemGUID></Extension></Category>
<Category Name="Item@"><Extension><ZELItemGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1000}</ZELItemGUID></Extension>
  <DisplayName>Item@</DisplayName><pFeature>Int@</pFeature><pFeature>Float@</pFeature><pFeature>Enum@</pFeature><pFeature>Bool@</pFeature><pFeature>Cmd@</pFeature></Category>
<Integer Name="Int@"><Extension><ZELElementGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1001}</ZELElementGUID></Extension>
  <ToolTip>Tip@</ToolTip><Description>About@</Description><DisplayName>Integer@</DisplayName><pIsLocked>None@</pIsLocked><Value>1</Value><Unit>u@</Unit></Integer>
<Float Name="Float@"><Extension><ZELElementGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1003}</ZELElementGUID></Extension>
  <DisplayName>Float@</DisplayName><pValue>Swissknife@</pValue><Min>.5</Min><Unit>u</Unit></Float>
<SwissKnife Name="Swissknife@"><pVariable Name="X@">Int@</pVariable><Expression Name="E@">1 + (2</Expression><Formula>1 + 1</Formula></SwissKnife>
<Enumeration Name="Enum@"><Extension><ZELElementGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1004}</ZELElementGUID></Extension>
  <EnumEntry Name="Entry@"><DisplayName>Shown@</DisplayName><Value>0</Value></EnumEntry><EnumEntry Name="Entry@"><Value>1</Value></EnumEntry><Value>0</Value></Enumeration>
<Boolean Name="Bool@"><Extension><ZELElementGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1005}</ZELElementGUID></Extension><DisplayName>B@</DisplayName><Value>true</Value></Boolean>
<Command Name="Cmd@"><Extension><ZELElementGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1006}</ZELElementGUID></Extension><DisplayName>C@</DisplayName><pValue>Int@</pValue><CommandValue>1</CommandValue></Command>
<String Name="Text@"><Value>Value@</Value></String>
<String Name="Marked@"><Extension><ZELElementGUID>id@</ZELElementGUID></Extension><Value>Value@</Value></String>
<IntReg Name="Reg@"><Address>0</Address><Length>4</Length><pPort>Port@</pPort></IntReg>
<IntReg Name="Real"><Address>16</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>
<Port Name="Device"/>
</RegisterDescription>
)");
    }

    // The commands, each with whatever stands for the text in names.
    static std::vector<std::vector<std::string>> Calls(const std::string& file, const std::string& name) {
        return {{"info", file},
                {"list", file, "--all"},
                {"describe", file, "Int" + name, "Float" + name, "Enum" + name, "Reg" + name,
                 "Swissknife" + name},
                {"get", file, "Int" + name, "Enum" + name, "Text" + name, "Float" + name, "--trace"},
                {"set", file, "Int" + name + "=2", "Enum" + name + "=1", "Cmd" + name + "=1", "--trace"},
                {"set", file, "Enum" + name + "=" + name},
                {"get", file, "Nothing" + name},
                {"lint", file},
                {"pages", file},
                {"dump", file, "stats"},
                {"dump", file, "nodes"}};
    }
};

TEST_F(HostileText, EveryCommandWritesItsOwnLinesAlone) {
    const std::string forged = Write("forged.xml", Description(hostile));
    const std::string plain = Write("plain.xml", Description(harmless));
    const auto calls = Calls(forged, obeyed);
    const auto twins = Calls(plain, harmless);
    for (std::size_t at = 0; at < calls.size(); ++at) {
        const Outcome outcome = Call(calls[at]);
        const Outcome twin = Call(twins[at]);
        const std::string what = calls[at].front() + " " + std::to_string(at);
        EXPECT_EQ(outcome.code, twin.code) << what << outcome.err;
        EXPECT_EQ(CountObeyed(outcome.out), 0U) << what << ":\n" << outcome.out;
        EXPECT_EQ(CountObeyed(outcome.err), 0U) << what << ":\n" << outcome.err;
        EXPECT_EQ(Lines(outcome.out).size(), Lines(twin.out).size()) << what << ":\n"
                                                                     << outcome.out << "\n"
                                                                     << twin.out;
        EXPECT_EQ(Lines(outcome.err).size(), Lines(twin.err).size()) << what << ":\n" << outcome.err;
    }
}

TEST_F(HostileText, JsonKeepsTheTextsAndObeysItsOwnForm) {
    const std::string file = Write("forged.xml", Description(hostile));
    for (std::vector<std::string> call : Calls(file, obeyed)) {
        call.emplace_back("--json");
        const Outcome outcome = Call(call);
        EXPECT_EQ(CountObeyed(outcome.out), 0U) << call.front() << ":\n" << outcome.out;
    }
    const nlohmann::json described = Call({"describe", "--json", file, "Int" + obeyed}).Json();
    EXPECT_EQ(described["features"][0]["display_name"], "Integer" + obeyed);
}

TEST_F(HostileText, NamesAreTold) {
    const std::string file = Write("forged.xml", Description(hostile));
    EXPECT_THAT(Call({"list", file}).out, HasSubstr("Int\\x1B[2K\\x0D\\x0Aforged: 0 errors\\x7F\\u009B3m"));
}

// As the standard of XML and the one of the characters have it.
void ExpectXmlText(std::string_view text) {
    while (!text.empty()) {
        const platform::utf8_character next = platform::first_character(text);
        const char32_t c = next.code;
        ASSERT_NE(c, platform::no_character) << "at " << text.substr(0, 20);
        ASSERT_TRUE(c >= 0x20 || c == '\n' || c == '\t' || c == '\r') << c;
        ASSERT_TRUE((c & 0xFFFE) != 0xFFFE && (c < 0xFDD0 || c > 0xFDEF)) << c;
        text.remove_prefix(next.size);
    }
}

TEST_F(HostileText, PicturesAreTextsThatViewersOpen) {
    const std::string odd =
        "a\xFF\xC2 \xED\xA0\x80 "
        "\xC0\x80&#x1;&#xFFFE;&#xFFFF;&#xFDD0;&#x1FFFF;&#x10FFFE;&#x1B;&lt;&amp;\xC2\xB5";
    const std::string file = Write("odd.xml", Description(odd));
    const std::string folder = PathOf("pictures");
    ASSERT_EQ(Call({"pages", file, "--svg", folder}).code, 0);
    std::ifstream stream(std::filesystem::u8path(folder + "/feature.svg"), std::ios::binary);
    const std::string svg{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    ExpectXmlText(svg);
    EXPECT_THAT(svg, HasSubstr("a\xEF\xBF\xBD\xEF\xBF\xBD \xEF\xBF\xBD"));
    EXPECT_THAT(svg, HasSubstr("&lt;&amp;\xC2\xB5"));
    pugi::xml_document document;
    EXPECT_TRUE(document.load_buffer(svg.data(), svg.size()));
}

#ifndef _WIN32

TEST_F(HostileText, FilesTakeThePlaceOfLinksAndLeaveWhatTheyLedTo) {
    namespace fs = std::filesystem;
    const std::string file = Write("plain.xml", Description(harmless));
    const std::string precious = Write("precious", "precious");
    const std::string folder = PathOf("pictures");
    const std::string saved = PathOf("saved");
    fs::create_directories(folder);
    fs::create_symlink(precious, folder + "/feature.svg");
    fs::create_symlink(precious, saved);
    EXPECT_EQ(Call({"pages", file, "--svg", folder}).code, 0);
    EXPECT_EQ(Call({"set", file, "Real=5", "--save", saved}).code, 0);
    for (const std::string& written : {folder + "/feature.svg", saved}) {
        EXPECT_FALSE(fs::is_symlink(written)) << written;
        EXPECT_GT(fs::file_size(written), 0U);
    }
    std::ifstream kept(precious);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(kept), {}), "precious");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1) << "nothing beside";
}

#endif

std::string Listing(const std::string& name, int count) {
    std::string text;
    for (int at = 0; at < count; ++at) text += "<pFeature>" + name + "</pFeature>";
    return text;
}

// An item that is listed in 160,000 ways.
std::string Unfolding() {
    const std::string name(20'000, 'n');
    const std::string ids = "{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1000}";
    return "<Category Name=\"Root\">" + Listing("Group", 400) +
           "</Category>\n<Category Name=\"Group\"><DisplayName>" + name + "</DisplayName>" +
           Listing("Item", 400) + "</Category>\n<Category Name=\"Item\"><Extension><ZELItemGUID>" + ids +
           "</ZELItemGUID></Extension><DisplayName>" + name + "</DisplayName>" + Listing("A", 400) +
           "</Category>\n<Integer Name=\"A\"><Extension><ZELElementGUID>" + ids +
           "</ZELElementGUID></Extension><DisplayName>" + name +
           "</DisplayName><pIsLocked>One</pIsLocked><Value>1</Value><Min>0</Min><Max>9</Max></Integer>\n"
           "<Integer Name=\"One\"><Value>1</Value></Integer>";
}

TEST_F(HostileText, LintTellsOfAnItemThatIsListedAgainAndAgainOnce) {
    const nlohmann::json findings =
        Call({"lint", "--json", "--only", "mark-group,mark-twice,mark-empty,mark-lost",
              WriteElements(Unfolding())})
            .Json()["files"][0]["findings"];
    for (const nlohmann::json& finding : findings)
        EXPECT_LE(finding["count"], 400)
            << finding["rule"] << finding["message"].get<std::string>().substr(0, 200);
    EXPECT_EQ(findings.size(), 2U) << "the group, and the element that its item lists 400 times";
}

TEST_F(HostileText, PagesEndForAnItemThatIsListedAgainAndAgain) {
    const Outcome outcome = Call({"pages", WriteElements(Unfolding())});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("nothing to show"));
}

TEST_F(HostileText, PagesAndLintEndForCategoriesThatListOneAnotherAThousandTimes) {
    const std::string file = WriteElements("<Category Name=\"Root\">" + Listing("Other", 1'000) +
                                           "</Category><Category Name=\"Other\"><Extension><ZELItemGUID>" +
                                           std::string(60'000, 'x') + "</ZELItemGUID></Extension>" +
                                           Listing("Root", 2'000) + "</Category>");
    EXPECT_THAT(Call({"pages", file}).out, HasSubstr("nothing to show"));
    const nlohmann::json lint = Call({"lint", "--json", file}).Json();
    EXPECT_EQ(lint["files"][0]["errors"], 0);
}

}  // namespace
}  // namespace inspect_test
