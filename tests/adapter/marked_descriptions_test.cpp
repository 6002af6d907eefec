// Real descriptions that carry marks, over a camera in which every register and every value is zero. What the
// table must hold is taken from the list of marks and from the XML itself.

#include "data_paths.h"
#include "items/unknown.h"
#include "platform/ascii.h"
#include "platform/text.h"
#include "tests/adapter/item_walk.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

namespace adapter_test {
namespace {

using ZELAdapterHelper::ElementRecord;
using ZELAdapterHelper::InterfaceType;

struct MarkedFeature {
    std::string name;
    std::string element_id;  ///< empty where the list does not tell it
};

struct MarkedItem {
    std::string group;
    std::string name;
    std::string item_id;  ///< empty where the list does not tell it
    std::vector<MarkedFeature> features;
};

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string Trimmed(std::string_view text) { return std::string(platform::trimmed(text)); }

// GROUP | ITEM NAME | ITEM GUID or - | FEATURE[=ELEMENT GUID] ...
MarkedItem ParseMark(const std::string& line) {
    std::istringstream stream(line);
    std::string parts[4];
    for (std::string& part : parts) {
        std::getline(stream, part, '|');
        part = Trimmed(part);
    }
    MarkedItem item = {parts[0], parts[1], parts[2] == "-" ? "" : parts[2], {}};
    std::istringstream features(parts[3]);
    for (std::string feature; features >> feature;) {
        const std::size_t equals = feature.find('=');
        const bool has_id = equals != std::string::npos;
        item.features.push_back({feature.substr(0, equals), has_id ? feature.substr(equals + 1) : ""});
    }
    return item;
}

std::vector<MarkedItem> ReadMarks(const std::string& path) {
    std::vector<MarkedItem> items;
    std::istringstream lines(ReadFile(path));
    for (std::string line; std::getline(lines, line);) {
        if (!Trimmed(line).empty()) items.push_back(ParseMark(line));
    }
    return items;
}

InterfaceType TypeOfElement(std::string_view element) {
    if (element == "Boolean") return InterfaceType::Switch;
    if (element == "Command") return InterfaceType::Button;
    if (element == "Enumeration") return InterfaceType::MapStrings;
    if (element == "Float") return InterfaceType::AbsoluteValue;
    EXPECT_EQ(element, "Integer");
    return InterfaceType::Range;
}

struct ExpectedElement {
    std::wstring name;
    InterfaceType type;
    std::string feature;
    std::wstring id;
    bool is_optional;  ///< hangs on a pIsImplemented

    bool operator==(const ExpectedElement& other) const {
        return name == other.name && type == other.type && feature == other.feature && id == other.id;
    }
};

struct ExpectedItem {
    std::wstring group;
    std::wstring name;
    std::wstring id;
    std::vector<ExpectedElement> elements;

    bool operator==(const ExpectedItem& other) const {
        return group == other.group && name == other.name && id == other.id && elements == other.elements;
    }
};

void PrintTo(const ExpectedItem& item, std::ostream* out) {
    *out << platform::narrow(item.group + L" / " + item.name + L' ' + item.id);
    for (const ExpectedElement& element : item.elements) {
        *out << "\n  " << platform::narrow(element.name + L' ' + element.id) << ' ' << element.feature << ' '
             << static_cast<int>(element.type);
    }
    *out << '\n';
}

class DescriptionFile {
public:
    DescriptionFile(const std::string& text, std::vector<MarkedItem> marks) : marks_(std::move(marks)) {
        EXPECT_TRUE(xml_.load_buffer(text.data(), text.size()));
    }

    [[nodiscard]] std::vector<ExpectedItem> Items(bool with_optional) const {
        std::vector<ExpectedItem> items;
        for (const MarkedItem& mark : marks_) {
            ExpectedItem item = {platform::widen(mark.group), platform::widen(mark.name), ItemId(mark), {}};
            for (const MarkedFeature& feature : mark.features) {
                const ExpectedElement element = Element(feature);
                if (with_optional || !element.is_optional) item.elements.push_back(element);
            }
            if (!item.elements.empty()) items.push_back(item);
        }
        return items;
    }

private:
    // Entries of enumerations may have the name of a feature.
    [[nodiscard]] pugi::xml_node Find(const std::string& name) const {
        return xml_.find_node([&](pugi::xml_node node) {
            return name == node.attribute("Name").value() && node.name() != std::string_view("EnumEntry");
        });
    }

    [[nodiscard]] std::wstring ItemId(const MarkedItem& mark) const {
        if (!mark.item_id.empty()) return platform::widen(mark.item_id);
        const pugi::xml_node category = xml_.find_node([&](pugi::xml_node node) {
            return node.child("Extension").child("ZELItemGUID") &&
                   mark.name == node.child_value("DisplayName");
        });
        return platform::widen(category.child("Extension").child_value("ZELItemGUID"));
    }

    [[nodiscard]] ExpectedElement Element(const MarkedFeature& feature) const {
        const pugi::xml_node node = Find(feature.name);
        const std::string id = node.child("Extension").child_value("ZELElementGUID");
        EXPECT_TRUE(feature.element_id.empty() || feature.element_id == id) << feature.name;
        const std::string display_name = node.child_value("DisplayName");
        return {platform::widen(display_name.empty() ? feature.name : display_name),
                TypeOfElement(node.name()), feature.name, platform::widen(id),
                static_cast<bool>(node.child("pIsImplemented"))};
    }

    std::vector<MarkedItem> marks_;
    pugi::xml_document xml_;
};

std::vector<ExpectedItem> ItemsOf(const std::vector<ItemRecord>& table) {
    std::vector<ExpectedItem> items;
    for (const ItemRecord& record : table) {
        EXPECT_EQ(record.priority, 10U);
        ExpectedItem item = {record.group, record.name, platform::format_guid(record.id), {}};
        for (const ElementRecord& element : ZELAdapterHelper::ElementsOf(record)) {
            EXPECT_EQ(element.level, 0);
            EXPECT_EQ(element.interface_count, 1U);
            const GenICam::INode* const node = genicam_adapter::node_of(element.inline_interface.key);
            item.elements.push_back({element.name, element.inline_interface.type,
                                     std::string(node->get_name()), platform::format_guid(element.id),
                                     false});
        }
        items.push_back(item);
    }
    return items;
}

class MarkedDescription : public testing::TestWithParam<const char*> {
protected:
    std::string folder_ = std::string(SELVANE_SHARED_DESCRIPTIONS) + "/marked/" + GetParam();
    std::string text_ = ReadFile(folder_ + "-marked.xml");
    std::string marks_ = ReadFile(folder_ + ".marks");

    void SetUp() override {
        if (text_.empty() || marks_.empty()) GTEST_SKIP() << "no description " << folder_ << "-marked.xml";
    }
    [[nodiscard]] DescriptionFile File() const { return {text_, ReadMarks(folder_ + ".marks")}; }

    // Every operation of every element reaches the driver over one property alone.
    static void ExpectWalkOver(GenICamAdapterDevice& adapter, ScriptedCamera& camera,
                               std::uint32_t property) {
        (void)camera.filter.TakeRequests();
        const auto steps = WalkTable(adapter, camera.filter);
        EXPECT_FALSE(steps.empty());
        std::set<std::uint32_t> used;
        for (const DriverRequest& request : camera.filter.TakeRequests()) used.insert(request.id);
        EXPECT_EQ(used, std::set<std::uint32_t>{property});
    }
};

TEST_P(MarkedDescription, GivesItsItemsByName) {
    ScriptedCamera camera(AccessPath::Named, {text_});
    camera.other_paths = [](std::string_view path, Bytes& answer) {
        const bool asks_for_existence = path.find("/IsImplemented") != std::string_view::npos;
        answer = BytesOf(std::uint64_t{asks_for_existence ? 1U : 0U});
        return true;
    };
    GenICamAdapterDevice adapter(&camera.filter);
    EXPECT_EQ(ItemsOf(adapter.get_item_table()), File().Items(true));
    ExpectWalkOver(adapter, camera, 4);
}

TEST_P(MarkedDescription, GivesNothingByNameWhenNothingIsImplemented) {
    ScriptedCamera camera(AccessPath::Named, {text_});
    camera.other_paths = [](std::string_view, Bytes& answer) {
        answer = Bytes(8);
        return true;
    };
    GenICamAdapterDevice adapter(&camera.filter);
    EXPECT_TRUE(adapter.get_item_table().empty());
}

TEST_P(MarkedDescription, GivesItsItemsOverRegisters) {
    ScriptedCamera camera(AccessPath::Registers, {text_});
    GenICamAdapterDevice adapter(&camera.filter);
    EXPECT_EQ(ItemsOf(adapter.get_item_table()), File().Items(false));
    ExpectWalkOver(adapter, camera, 3);
}

INSTANTIATE_TEST_SUITE_P(Cameras, MarkedDescription, testing::Values("basler-a2a2600", "flir-bfs_u3"),
                         [](const auto& file) { return file.index == 0 ? "Basler" : "Flir"; });

}  // namespace
}  // namespace adapter_test
