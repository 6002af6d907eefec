// What pages meet: the user's text, the driver's answers. And the inspector.

#include "apps/inspect/run.h"
#include "fuzz/fuzz_targets.h"
#include "items/unknown.h"
#include "platform/ascii.h"
#include "platform/text.h"
#include "propui/number_text.h"
#include "tests/simcam/page_view.h"
#include "tests/support/fake_item.h"

#include <sys/mman.h>
#include <unistd.h>
#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace fuzz {
namespace {

using namespace ZELPropUI;
using simcam_test::camera_on_pages;

// A feature of each kind. Nothing in it divides or goes round, whatever the registers hold. What a fault lays
// over its beginning falls into the comment.
constexpr const char* marked_description = R"(<!--                                                         -->
<RegisterDescription ModelName="M" VendorName="V"><Category Name="Root"><pFeature>Page</pFeature></Category>
<Category Name="Page"><DisplayName>Special</DisplayName><pFeature>Item</pFeature></Category>
<Category Name="Item"><Extension><ZELItemGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1000}</ZELItemGUID></Extension>
<pFeature>Num</pFeature><pFeature>Real</pFeature><pFeature>Flag</pFeature><pFeature>Go</pFeature><pFeature>Mode</pFeature></Category>
<Integer Name="Num"><Extension><ZELElementGUID>{B57D3000-0AC6-4819-A609-272A33140ACA}</ZELElementGUID></Extension>
<pIsImplemented>Lock</pIsImplemented><pIsLocked>Lock</pIsLocked><pValue>Reg</pValue><pMin>Low</pMin><pMax>High</pMax></Integer>
<Float Name="Real"><Extension><ZELElementGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1001}</ZELElementGUID></Extension>
<pIsLocked>Lock</pIsLocked><pValue>Scaled</pValue><Min>0</Min><pMax>High</pMax><Unit>us</Unit></Float>
<Boolean Name="Flag"><Extension><ZELElementGUID>{B57D3001-0AC6-4819-A609-272A33140ACA}</ZELElementGUID></Extension>
<pIsLocked>Lock</pIsLocked><pValue>Low</pValue></Boolean>
<Command Name="Go"><Extension><ZELElementGUID>{B57D3002-0AC6-4819-A609-272A33140ACA}</ZELElementGUID></Extension>
<pIsLocked>Lock</pIsLocked><pValue>Low</pValue><CommandValue>1</CommandValue></Command>
<Enumeration Name="Mode"><Extension><ZELElementGUID>{3F6A2B10-5C1E-4D77-9A40-8E2C7B5D1002}</ZELElementGUID></Extension>
<pIsLocked>Lock</pIsLocked><EnumEntry Name="Off"><Value>0</Value></EnumEntry><EnumEntry Name="On"><pIsImplemented>Lock</pIsImplemented>
<Value>1</Value></EnumEntry><pValue>Low</pValue></Enumeration>
<Converter Name="Scaled"><FormulaTo>FROM*8</FormulaTo><FormulaFrom>TO*0.125</FormulaFrom><pValue>Reg</pValue></Converter>
<IntReg Name="Reg"><Address>8</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort><Cachable>WriteAround</Cachable></IntReg>
<IntReg Name="Low"><Address>12</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>
<IntReg Name="High"><Address>16</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>
<IntReg Name="Lock"><Address>20</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></IntReg>
<Port Name="Device"/></RegisterDescription>)";

constexpr std::size_t longest_overlay = 32;

struct page_kind {
    PageName page;
    bool built_in;
    bool named;
    bool registers;
};

constexpr page_kind page_kinds[] = {
    {PageName::Feature, false, true, false}, {PageName::Feature, false, false, true},
    {PageName::Feature, false, true, true},  {PageName::Exposure, true, true, true},
    {PageName::Feature, true, true, true},   {PageName::Lens, true, true, true},
    {PageName::Color, true, true, true},
};

simcam::camera_options options_for(const page_kind& kind) {
    simcam::camera_options options;
    options.descriptions.emplace_back(kind.built_in ? simcam::bundled_description("identity")
                                                    : marked_description);
    options.memory = "8: 00 00 00 05 00 00 00 00 00 00 00 64 00 00 00 01";
    options.named_access = kind.named;
    options.register_access = kind.registers;
    if (kind.built_in) options.vendor = simcam::full_vendor_model();
    options.keep_transcript = false;
    return options;
}

constexpr HRESULT failures[] = {E_FAIL,
                                E_NOTIMPL,
                                E_INVALIDARG,
                                E_ACCESSDENIED,
                                E_OUTOFMEMORY,
                                E_POINTER,
                                static_cast<HRESULT>(0x8007007A),
                                static_cast<HRESULT>(0x80070490),
                                S_FALSE,
                                simcam::camera_lost};

// One thing that the driver does wrong, at the call so many calls behind the one before.
simcam::fault take_fault(std::string_view& input, std::uint64_t& call) {
    simcam::fault made;
    call += take<std::uint8_t>(input);
    made.first = call + 1;
    made.count = 1;
    const auto kind = take<std::uint8_t>(input);
    const auto number = take<std::uint16_t>(input);
    switch (kind % 8) {
        case 0:
            made.count = simcam::fault::always;
            [[fallthrough]];
        case 1:
            made.result = failures[number % std::size(failures)];
            break;
        case 2:
            made.returned = number % 3 == 0 ? 0xFFFFFFFF - number : number;
            break;
        case 3:
            made.support = number;
            break;
        case 4:
            made.action = [] { throw std::runtime_error("driver"); };
            break;
        case 5:
            made.action = [] { throw std::bad_alloc(); };
            break;
        default: {
            const std::size_t size = std::min({std::size_t{number} % longest_overlay, input.size()});
            made.data = simcam::bytes(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(size));
            input.remove_prefix(size);
            if (kind % 8 == 7) made.result = failures[number / longest_overlay % std::size(failures)];
        }
    }
    return made;
}

// What follows when a page was worked.
enum class ending { shown_again, built_again };

void live(const page_kind& kind, ending end, const simcam::camera_ptr& camera, std::string_view faults) {
    std::uint64_t call = 0;
    for (int count = 0; count < 12 && !faults.empty(); ++count) camera->add_fault(take_fault(faults, call));
    try {
        camera_on_pages pages(camera);
        test_support::RecorderCanvas canvas;
        pages.build(kind.page, canvas);
        simcam_test::refresh(canvas);
        simcam_test::work(canvas);
        if (end == ending::shown_again) {
            simcam_test::refresh(canvas);
        } else {
            test_support::RecorderCanvas again;
            pages.build(kind.page, again);
        }
    } catch (const std::exception&) {
        // Two failures leave as exceptions, and so does whatever the driver throws while it is asked for its
        // descriptions.
    }
}

bool is_plain_unit(std::wstring_view unit) {
    return std::all_of(unit.begin(), unit.end(),
                       [](wchar_t c) { return c >= L'k' && c <= L'z' && c != L'n'; });
}

// What the edit shows is what it takes.
void require_text_returns(ISliderController& controller, const test_support::FakeScript& script,
                          const test_support::FakeInterface& shown, bool is_integer) {
    std::wstring text;
    if (!controller.GetText(text) || !is_plain_unit(shown.unit)) return;
    const std::size_t integers = script.values.size();
    const std::size_t reals = script.abs_values.size();
    require(is_integer || std::isfinite(shown.abs_value) ? controller.SetText(text) : true,
            "an edit does not take its own text");
    if (is_integer) {
        require(script.values.size() == integers + 1 && script.values.back() == shown.value,
                "an integer's text is another number");
    } else if (std::isfinite(shown.abs_value)) {
        require(
            script.abs_values.size() == reals + 1 && std::fabs(script.abs_values.back() - shown.abs_value) <=
                                                         0.000501 + std::fabs(shown.abs_value) * 1e-12,
            "a float's text is another number");
    }
}

// A file in memory, which the inspector finds by a path.
class memory_file {
public:
    explicit memory_file(std::string_view contents) : file_(memfd_create("input", 0)) {
        require(write(file_, contents.data(), contents.size()) == static_cast<ssize_t>(contents.size()),
                "no file in memory");
    }
    memory_file(const memory_file&) = delete;
    memory_file& operator=(const memory_file&) = delete;
    ~memory_file() { close(file_); }
    [[nodiscard]] std::string path() const { return "/proc/self/fd/" + std::to_string(file_); }

private:
    int file_;
};

struct inspector_command {
    const char* name;
    selvane_inspect::command_adder add;
};

constexpr inspector_command inspector_commands[] = {
    {"info", selvane_inspect::add_info},         {"list", selvane_inspect::add_list},
    {"describe", selvane_inspect::add_describe}, {"get", selvane_inspect::add_get},
    {"set", selvane_inspect::add_set},           {"eval", selvane_inspect::add_eval},
    {"lint", selvane_inspect::add_lint},         {"pages", selvane_inspect::add_pages},
    {"dump", selvane_inspect::add_dump},
};

// Words between blanks; FILE stands for the file. No word reaches another folder.
std::vector<std::string> words_of(std::string_view line, const std::string& file) {
    std::vector<std::string> words;
    std::istringstream stream{std::string(line)};
    for (std::string word; stream >> word && words.size() < 20;) {
        std::replace(word.begin(), word.end(), '/', '_');
        if (const std::size_t at = word.find("FILE"); at != std::string::npos) word.replace(at, 4, file);
        // Whatever writes goes nowhere.
        if (!words.empty() && (words.back() == "--svg" || words.back() == "--save")) word = "/dev/null/no";
        if (word.rfind("--svg=", 0) != 0 && word.rfind("--save=", 0) != 0) words.push_back(word);
    }
    return words;
}

}  // namespace

void edit(std::string_view input) {
    test_support::FakeScript script;
    test_support::FakeInterface& shown = script.interfaces[1];
    const auto kind = take<std::uint8_t>(input);
    shown.scale = kind >> 4 & 1;
    shown.value = take<std::int32_t>(input);
    shown.abs_value = take<double>(input);
    shown.range = {take<std::int32_t>(input), take<std::int32_t>(input), 0, take<std::int32_t>(input) >> 16};
    shown.abs_range = {take<double>(input), take<double>(input), 0};
    const std::string_view unit = input.substr(0, input.find('\n'));
    shown.unit = platform::widen(unit);
    const std::wstring text = platform::widen(input.substr(std::min(unit.size() + 1, input.size())));
    const platform::com_ptr<test_support::FakeItem> item =
        platform::com_ptr<test_support::FakeItem>::attach(new test_support::FakeItem(script));
    using controller_ptr = platform::com_ptr<ISliderController>;
    const bool is_integer = kind % 3 == 0;
    const controller_ptr controller =
        is_integer        ? controller_ptr::attach(new CRangeSliderController(item.get(), 1))
        : (kind % 3 == 1) ? controller_ptr::attach(new CAbsValSliderController(item.get(), 1))
                          : controller_ptr::attach(new CAbsValExposureSliderController(item.get(), 1));
    std::int32_t low = 0;
    std::int32_t high = 100;
    static_cast<void>(controller->GetPositionRange(low, high));
    static_cast<void>(controller->GetPosition(low));
    const std::size_t written = script.values.size() + script.abs_values.size();
    const bool was_taken = controller->SetText(text);
    require(script.values.size() + script.abs_values.size() == written + (was_taken ? 1 : 0),
            "a text that is no value was written, or one that is was not");
    std::int32_t integer = 0;
    if (ParseInteger(text, integer))
        require(FormatInteger(integer) == platform::trimmed(text), "an integer is not what stands there");
    if (kind % 3 != 2 || shown.abs_value > 0.25) require_text_returns(*controller, script, shown, is_integer);
    for (const std::int32_t position : {0, 50, 100, high, shown.value}) controller->SetPosition(position);
}

void driver(std::string_view input) {
    const auto choice = take<std::uint8_t>(input);
    const page_kind& kind = page_kinds[choice % std::size(page_kinds)];
    const simcam::camera_ptr camera = simcam::make_camera(options_for(kind));
    live(kind, choice < 128 ? ending::built_again : ending::shown_again, camera, input);
    require(camera->references() == 1, "references to the driver were left behind");
    require(ZELAdapterHelper::CUnknown::LiveObjects() == 0, "items were left behind");
}

void inspector(std::string_view input) {
    const std::string_view line = input.substr(0, input.find('\n'));
    const memory_file file(input.substr(std::min(line.size() + 1, input.size())));
    std::vector<std::string> words = words_of(line, file.path());
    const auto* const known =
        std::find_if(std::begin(inspector_commands), std::end(inspector_commands),
                     [&](const inspector_command& one) { return !words.empty() && words[0] == one.name; });
    const inspector_command& command = known != std::end(inspector_commands) ? *known : inspector_commands[0];
    std::ostringstream out;
    std::ostringstream err;
    const int code = selvane_inspect::run(gsl::span<const selvane_inspect::command_adder>(&command.add, 1),
                                          words, out, err);
    require(code >= 0 && code <= 2, "an exit code that is not told");
    require(code != 2 || !err.str().empty(), "a refusal without a word");
}

gsl::span<const target> all_targets() {
    static constexpr target targets[] = {
        {"description", description},
        {"evaluation", evaluation},
        {"formula", formula},
        {"numbers", numbers},
        {"edit", edit},
        {"driver", driver},
        {"inspector", inspector},
    };
    return targets;
}

}  // namespace fuzz
