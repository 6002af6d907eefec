// The n-th allocation fails, for every n, in the load of a description, in everything that a document can be
// asked, and in the life of a page. A sweep over all takes every n; else those of long runs are sampled, the
// closer the earlier they come.

#include "adapter/hr_exception.h"
#include "genicam/ieval.h"
#include "items/unknown.h"
#include "tests/adapter/allocation_watch.h"
#include "tests/genicam_registers/feature_reader.h"
#include "tests/simcam/page_view.h"
#include "tests/support/sweep.h"

#include <map>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <pugixml.hpp>

namespace faults_test {
namespace {

using namespace GenICam;
using adapter_test::FailingAllocation;
using register_test::read_feature;
using test_support::RecorderCanvas;
using ZELPropUI::PageName;

std::uint64_t step_behind(std::uint64_t n) {
    using test_support::sweep;
    if (test_support::sweep_of_run() == sweep::all) return n + 1;
#ifdef SELVANE_SANITIZED
    const std::uint64_t density = test_support::sweep_of_run() == sweep::more ? 12 : 5;
#else
    constexpr std::uint64_t density = 32;
#endif
    return n + 1 + n / density;
}

// Runs the operation once for each n, with nothing else between the failing allocation and the operation.
// Gives how many allocations an undisturbed run makes, at least.
template <class Operation, class Check>
std::uint64_t sweep(Operation operation, Check check) {
    for (std::uint64_t n = 1;; n = step_behind(n)) {
        SCOPED_TRACE(n);
        bool threw = false;
        bool came = false;
        {
            const FailingAllocation failing(n);
            try {
                operation();
            } catch (const std::bad_alloc&) {
                threw = true;
            }
            came = failing.Came();
        }
        EXPECT_TRUE(came || !threw);
        check(threw);
        if (!came || testing::Test::HasFailure()) return n - 1;
    }
}

// The XML parser takes its memory from where everything else does.
void* allocate_for_xml(std::size_t size) {
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void free_for_xml(void* memory) { ::operator delete(memory); }

class xml_memory {
public:
    xml_memory() { pugi::set_memory_management_functions(allocate_for_xml, free_for_xml); }
    ~xml_memory() { pugi::set_memory_management_functions(allocate_before_, free_before_); }
    xml_memory(const xml_memory&) = delete;
    xml_memory& operator=(const xml_memory&) = delete;

private:
    pugi::allocation_function allocate_before_ = pugi::get_memory_allocation_function();
    pugi::deallocation_function free_before_ = pugi::get_memory_deallocation_function();
};

// One of each family, for what our descriptions leave out.
constexpr const char* every_family = R"(<D ModelName="M" VendorName="V"><Port Name="Device"/>
<Category Name="Root"><pFeature>Text</pFeature><pFeature>List</pFeature><pFeature>Chosen</pFeature></Category>
<IntReg Name="Fixed"><Address>8</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
<pInvalidator>Index</pInvalidator></IntReg>
<IntReg Name="Placed"><Address>8</Address><pAddress>Index</pAddress><pIndex Offset="4">Index</pIndex>
<IntSwissKnife Name="Inner"><Formula>4*2</Formula></IntSwissKnife><Length>4</Length><pPort>Device</pPort></IntReg>
<StructReg><Address>16</Address><Length>4</Length><pPort>Device</pPort><StructEntry Name="Entry"><LSB>3</LSB>
<MSB>9</MSB></StructEntry></StructReg>
<MaskedIntReg Name="Masked"><Address>16</Address><Length>4</Length><Bit>3</Bit><pPort>Device</pPort></MaskedIntReg>
<FloatReg Name="RealReg"><Address>24</Address><Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></FloatReg>
<StringReg Name="Text"><Address>32</Address><Length>200</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
<Cachable>WriteThrough</Cachable></StringReg>
<Register Name="Block"><Address>64</Address><Length>32</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></Register>
<String Name="Own"><Value>a text that is longer than what a string keeps in place</Value></String>
<Integer Name="Index"><Value>1</Value></Integer>
<Integer Name="Chosen"><pIndex>Index</pIndex><pValueIndexed Index="1">Fixed</pValueIndexed><ValueIndexed Index="2">7</ValueIndexed>
<ValueDefault>9</ValueDefault></Integer>
<Integer Name="Copied"><pValue>Fixed</pValue><pValueCopy>Index</pValueCopy></Integer>
<Enumeration Name="List"><pSelected>Index</pSelected><EnumEntry Name="A"><Value>0</Value></EnumEntry>
<EnumEntry Name="B"><Value>1</Value></EnumEntry><pValue>Index</pValue></Enumeration>
<Converter Name="Scaled"><pVariable Name="V">Fixed</pVariable><FormulaTo>FROM*V</FormulaTo>
<FormulaFrom>TO*0.5+V</FormulaFrom><pValue>RealReg</pValue></Converter>
<IntSwissKnife Name="Deep"><pVariable Name="A">Fixed</pVariable><Constant Name="C">3</Constant><Expression Name="E">A+C</Expression>
<Formula>E+(1+(A+(2+(A+(3+(A+(4+(A+(5+(A+(6+(A+(7+(A+(8+(A+(9+(A+(10+(A+(11+A)))))))))))))))))))))</Formula></IntSwissKnife>
<Command Name="Go"><pValue>Fixed</pValue><CommandValue>1</CommandValue></Command>
<Boolean Name="Flag"><pValue>Index</pValue></Boolean></D>)";

const std::map<std::string, std::string>& descriptions() {
    static const auto known = [] {
        std::map<std::string, std::string> all = {{"every_family", every_family}};
        for (const char* name : {"first_page", "identity", "value_nodes", "simulated_camera"})
            all[name] = simcam::bundled_description(name);
        return all;
    }();
    return known;
}

class AllocationSweep : public testing::TestWithParam<std::string> {
protected:
    [[nodiscard]] static std::unique_ptr<IGenICamDoc> load() {
        const std::string& text = descriptions().at(GetParam());
        return std::unique_ptr<IGenICamDoc>(load_genicam_doc(text.data(), text.size(), {}));
    }

    // A document over registers without order, and what it answers undisturbed.
    struct camera {
        std::unique_ptr<IGenICamDoc> doc = load();
        register_test::patterned_device device{5};
        std::vector<unsigned char> block = std::vector<unsigned char>(64);
        std::vector<INode*> nodes;
        std::map<INode*, std::string> answers;

        camera() {
            register_test::bind_ports(*doc, device, block);
            doc->for_each_node([this](INode* node) { nodes.push_back(node); });
            for (INode* node : nodes) answers[node] = read_feature(*node, access_flags::bypass_cache);
            device.accesses.reserve(1000000);
        }
    };
};

TEST_P(AllocationSweep, ALoadGivesAllOrNothing) {
    const xml_memory watched;
    const std::string expected = load()->dump(1);
    std::unique_ptr<IGenICamDoc> doc;
    const std::uint64_t count = sweep([&] { doc = load(); },
                                      [&](bool threw) {
                                          EXPECT_TRUE(!threw || doc == nullptr);
                                          // Null without an exception: the XML parser had no room.
                                          EXPECT_TRUE(doc == nullptr || doc->dump(1) == expected);
                                          doc.reset();
                                      });
    EXPECT_GT(count, 5U);
}

TEST_P(AllocationSweep, ADocumentStaysAsItWas) {
    const camera of;
    std::uint64_t count = 0;
    for (INode* node : of.nodes) {
        SCOPED_TRACE(node->get_name());
        // A node that has lost what it had cached reads it again.
        count += sweep([&] { (void)read_feature(*node, access_flags::bypass_cache); }, [&](bool) {});
        EXPECT_EQ(read_feature(*node, access_flags::bypass_cache), of.answers.at(node));
    }
    EXPECT_GT(count, of.nodes.size());
    const std::string expected = of.doc->dump(0) + of.doc->dump(1);
    sweep([&] { (void)(of.doc->dump(0) + of.doc->dump(1)); }, [](bool) {});
    sweep([&] { (void)of.doc->get_streamable_nodes(); }, [](bool) {});
    for (INode* node : of.nodes) sweep([&] { (void)node->get_eval()->describe(); }, [](bool) {});
    EXPECT_EQ(of.doc->dump(0) + of.doc->dump(1), expected);
}

TEST_P(AllocationSweep, AWriteIsDoneOrNot) {
    const camera of;
    for (INode* node : of.nodes) {
        SCOPED_TRACE(node->get_name());
        if (node->get_node_type() == node_type::string) {
            auto& text = static_cast<IString&>(*node);
            const auto before = text.get_val(0);
            const std::string longer(100, 'x');
            bool wrote = false;
            sweep([&] { wrote = !text.set_val(longer, 0); },
                  [&](bool threw) {
                      const auto now = text.get_val(0);
                      if (!before || !now) return;
                      EXPECT_TRUE(now.value() == before.value() || now.value().substr(0, 100) == longer);
                      EXPECT_TRUE(threw || !wrote || now.value().substr(0, 100) == longer);
                  });
        } else if (node->get_node_type() == node_type::integer) {
            auto& number = static_cast<IInteger&>(*node);
            sweep([&] { (void)number.set_val(1, 0); }, [](bool) {});
        } else if (node->get_node_type() == node_type::floating) {
            auto& number = static_cast<IFloat&>(*node);
            sweep([&] { (void)number.set_val(1.5, 0); }, [](bool) {});
        }
        int told = 0;
        sweep([&] { node->register_callback([&told, of = std::string(50, 'x')](INode*) { ++told; }); },
              [](bool) {});
        node->get_eval()->invalidate();
        EXPECT_EQ(told, 1);
        node->clear_callbacks();
    }
}

INSTANTIATE_TEST_SUITE_P(Descriptions, AllocationSweep,
                         testing::Values("every_family", "first_page", "identity", "value_nodes",
                                         "simulated_camera"),
                         [](const auto& name) { return name.param; });

struct page_life {
    const char* description;
    bool named;
    bool built_in;
    PageName page;
};

class PageAllocationSweep : public testing::TestWithParam<page_life> {
protected:
    [[nodiscard]] static simcam::camera_options options() {
        simcam::camera_options made;
        made.descriptions = {descriptions().at(GetParam().description)};
        made.named_access = GetParam().named;
        made.register_access = !GetParam().named;
        made.keep_transcript = false;
        if (GetParam().built_in) made.vendor = simcam::full_vendor_model();
        return made;
    }

    // Build, refresh, every control's action, refresh, build.
    static std::vector<std::string> live(const simcam::camera_ptr& camera) {
        simcam_test::camera_on_pages pages(camera);
        RecorderCanvas canvas;
        pages.build(GetParam().page, canvas);
        simcam_test::refresh(canvas);
        simcam_test::work(canvas);
        simcam_test::refresh(canvas);
        RecorderCanvas again;
        pages.build(GetParam().page, again);
        std::vector<std::string> rows;
        for (const auto& one : canvas.placed) rows.push_back(one.kind + " " + platform::narrow(one.text));
        return rows;
    }
};

// One camera for all: what a life without memory leaves half done, the next one must be able to go on from.
TEST_P(PageAllocationSweep, APageEndsOrGoesOn) {
    const xml_memory watched;
    const simcam::camera_ptr camera = simcam::make_camera(options());
    const std::vector<std::string> expected = live(camera);
    ASSERT_FALSE(expected.empty());
    const std::uint64_t count = sweep(
        [&] {
            try {
                (void)live(camera);
            } catch (const genicam_adapter::hr_exception&) {
                // The XML parser had no room, which is a description that cannot be parsed.
            }
        },
        [&](bool) {
            EXPECT_EQ(camera->references(), 1);
            EXPECT_EQ(ZELAdapterHelper::CUnknown::LiveObjects(), 0);
        });
    EXPECT_GT(count, 100U);
    EXPECT_EQ(live(camera), expected);
}

INSTANTIATE_TEST_SUITE_P(Pages, PageAllocationSweep,
                         testing::Values(page_life{"simulated_camera", true, false, PageName::Exposure},
                                         page_life{"simulated_camera", false, false, PageName::Feature},
                                         page_life{"value_nodes", false, false, PageName::Feature},
                                         page_life{"value_nodes", true, false, PageName::Exposure},
                                         page_life{"first_page", false, false, PageName::Feature},
                                         page_life{"identity", true, true, PageName::Exposure},
                                         page_life{"identity", true, true, PageName::Feature},
                                         page_life{"identity", true, true, PageName::Lens},
                                         page_life{"identity", true, true, PageName::Color}),
                         [](const auto& one) {
                             return std::string(one.param.description) +
                                    (one.param.named ? "_named_" : "_registers_") +
                                    std::to_string(static_cast<int>(one.param.page));
                         });

}  // namespace
}  // namespace faults_test
