#include "apps/host/options.h"

#include "apps/host/host_error.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace selvane_host;
using testing::HasSubstr;
using testing::IsEmpty;

std::string RefusalOf(const std::vector<std::string>& arguments) {
    try {
        static_cast<void>(parse_options(arguments));
    } catch (const host_error& refusal) {
        EXPECT_EQ(refusal.code(), 2);
        return refusal.what();
    }
    return "no refusal";
}

TEST(Options, NothingAsksForTheUsualCameraInAFrame) {
    const host_options options = parse_options({});
    EXPECT_THAT(options.descriptions, IsEmpty());
    EXPECT_EQ(options.camera, "");
    EXPECT_EQ(options.access, access_path::as_offered);
    EXPECT_EQ(options.device, "");
    EXPECT_TRUE(options.driver.empty());
    EXPECT_FALSE(options.check_driver || options.write || options.json);
    EXPECT_TRUE(options.memory.empty());
    EXPECT_TRUE(options.pictures.empty());
    EXPECT_FALSE(options.trace || options.layout || options.probe || options.list_cameras ||
                 options.list_devices);
    EXPECT_EQ(options.delay.count(), 0);
    EXPECT_EQ(options.message, "");
}

TEST(Options, TheDelayIsATimeInMilliseconds) {
    EXPECT_EQ(parse_options({"--delay", "5"}).delay, std::chrono::milliseconds(5));
    for (const char* wrong : {"-1", "10001", "x", ""})
        EXPECT_NE(RefusalOf({"--delay", wrong}), "no refusal") << wrong;
    EXPECT_NE(RefusalOf({"--delay", "5", "--device", "d"}), "no refusal");
}

TEST(Options, EveryOptionIsTaken) {
    const host_options options =
        parse_options({"--camera", "full", "--access", "registers", "--trace", "--layout", "--memory",
                       "a.memory", "--pictures", "out", "one.xml", "two.xml"});
    EXPECT_EQ(options.memory, "a.memory");
    EXPECT_EQ(options.camera, "full");
    EXPECT_EQ(options.access, access_path::registers);
    EXPECT_TRUE(options.trace);
    EXPECT_TRUE(options.layout);
    EXPECT_EQ(options.pictures, "out");
    EXPECT_THAT(options.descriptions, testing::ElementsAre("one.xml", "two.xml"));
    EXPECT_EQ(parse_options({"--access", "named"}).access, access_path::named);
    EXPECT_TRUE(parse_options({"--probe"}).probe);
    EXPECT_TRUE(parse_options({"--list-cameras"}).list_cameras);
    EXPECT_TRUE(parse_options({"--list"}).list_devices);
    EXPECT_EQ(parse_options({"--device", "My camera", "--trace"}).device, "My camera");
}

TEST(Options, FilesKeepTheirOrderAroundOptions) {
    const host_options options =
        parse_options({"one.xml", "--trace", "two.xml", "--access", "named", "three.xml"});
    EXPECT_THAT(options.descriptions, testing::ElementsAre("one.xml", "two.xml", "three.xml"));
}

TEST(Options, ADriverAndItsCheckAreTaken) {
    const host_options options = parse_options({"--driver", "my.dll", "--check-driver", "--write", "--json"});
    EXPECT_EQ(options.driver, "my.dll");
    EXPECT_TRUE(options.check_driver && options.write && options.json);
}

TEST(Options, NamesOfFilesAreUtf8) {
    const host_options options = parse_options({"k\xC3\xA4se.xml"});
    ASSERT_EQ(options.descriptions.size(), 1U);
    EXPECT_EQ(options.descriptions[0].wstring(), L"k\u00E4se.xml");
}

TEST(Options, VersionAndHelpArePrinted) {
    EXPECT_EQ(parse_options({"--version"}).message, "selvane_host " SELVANE_VERSION "\n");
    const std::string help = parse_options({"--help"}).message;
    for (const char* word : {"FILE", "--camera", "--access", "--memory", "--device", "--trace", "--layout",
                             "--probe", "--pictures", "--driver", "--check-driver", "--write", "--json",
                             "--list-cameras", "--list", "--version", "Exit codes: 0"}) {
        EXPECT_THAT(help, HasSubstr(word));
    }
}

struct Refused {
    std::vector<std::string> arguments;
    const char* text;
};

class RefusedOptions : public testing::TestWithParam<Refused> {};

TEST_P(RefusedOptions, SayWhyInOneLine) {
    const std::string refusal = RefusalOf(GetParam().arguments);
    EXPECT_THAT(refusal, HasSubstr(GetParam().text));
    EXPECT_EQ(refusal.find('\n'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(All, RefusedOptions,
                         testing::Values(Refused{{"--unknown"}, "--unknown"},
                                         Refused{{"--access", "both"}, "both not in {named,registers}"},
                                         Refused{{"--access"}, "--access"}, Refused{{"--camera"}, "--camera"},
                                         Refused{{"--camera", ""}, "--camera needs a value"},
                                         Refused{{"--device", ""}, "--device needs a value"},
                                         Refused{{"--pictures", ""}, "--pictures needs a value"},
                                         Refused{{"--memory", ""}, "--memory needs a value"},
                                         Refused{{"--driver", ""}, "--driver needs a value"},
                                         Refused{{"--driver", "A", "one.xml"}, "excludes"},
                                         Refused{{"--driver", "A", "--device", "B"}, "excludes"},
                                         Refused{{"--driver", "A", "--camera", "full"}, "excludes"},
                                         Refused{{"--write"}, "requires"}, Refused{{"--json"}, "requires"},
                                         Refused{{"--check-driver", "--probe"}, "excludes"},
                                         Refused{{"--check-driver", "--json", "--trace"}, "excludes"},
                                         Refused{{"--device", "A", "--memory", "m"}, "excludes"},
                                         Refused{{"--pictures", "out", "--probe"}, "excludes"},
                                         Refused{{"--device", "A", "one.xml"}, "excludes"},
                                         Refused{{"--device", "A", "--camera", "full"}, "excludes"},
                                         Refused{{"--device", "A", "--access", "named"}, "excludes"}));

}  // namespace
