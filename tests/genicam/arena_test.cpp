// The arena of a document has exactly the room that its nodes take: descriptions made at random, with a page
// behind their arenas that nobody may touch.

#include "genicam/document/genicam_doc_impl.h"
#include "genicam/document/node_factory.h"
#include "tests/genicam/guarded_arena.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace arena_test {
namespace {

using namespace GenICam;

#ifdef SELVANE_SANITIZED
constexpr int description_count = 2'000;
#else
constexpr int description_count = 10'000;
#endif
constexpr std::uint64_t seed = 20'261'122;

// What the arena has beyond the room for nodes, to begin at a multiple of 8.
constexpr std::size_t spare = 16;

constexpr const char* node_elements[] = {
    "IntConverter", "IntSwissKnife", "Converter",   "SwissKnife", "Category", "Integer",  "Float",
    "Boolean",      "Command",       "Enumeration", "String",     "FloatReg", "IntReg",   "Register",
    "MaskedIntReg", "StringReg",     "StructEntry", "Port",       "Unknown",  "EnumEntry"};
constexpr const char* numbers[] = {"Value", "Address", "Length", "ChunkID", "CommandValue", "Min",     "Max",
                                   "Inc",   "LSB",     "MSB",    "Bit",     "OnValue",      "OffValue"};
constexpr const char* links[] = {"pValue",   "pValueCopy",     "pIndex",       "pAddress",  "pLength",
                                 "pChunkID", "pIsImplemented", "pIsAvailable", "pIsLocked", "pFeature",
                                 "pMin",     "pMax",           "pInvalidator", "pPort",     "pFeature",
                                 "pInc",     "pCommandValue"};
constexpr const char* formulas[] = {"A + B", "A", "1 +", "", "(A > B) ? A : 2 * E", "UNKNOWN(A)"};
constexpr const char* words[] = {"RO", "WO", "RW", "ro", ""};

class Generator {
public:
    explicit Generator(std::uint64_t first) : random_(first) {}

    std::string Description() {
        name_count_ = 1 + Below(30);
        std::string text = "<RegisterDescription>";
        for (unsigned left = Below(40); left > 0; --left) text += Element(0);
        return text + "</RegisterDescription>";
    }
    bool Chance(unsigned of) { return Below(of) == 0; }

private:
    unsigned Below(unsigned count) { return static_cast<unsigned>(random_() % count); }
    template <class List>
    const char* OneOf(const List& list) {
        return list[Below(static_cast<unsigned>(std::size(list)))];
    }
    // Some names are nobody's, some are those of several.
    std::string Name() { return Chance(12) ? "nobody" : "n" + std::to_string(Below(name_count_)); }
    static std::string Tagged(const std::string& tag, const std::string& inside,
                              const std::string& head = {}) {
        return "<" + tag + head + ">" + inside + "</" + tag + ">";
    }
    static std::string Named(const std::string& name) { return " Name='" + name + "'"; }

    std::string Element(int depth) {
        if (depth < 4 && Chance(8)) {
            std::string inside = Children();
            for (unsigned left = Below(6); left > 0; --left) inside += Element(depth + 1);
            return Tagged(Chance(2) ? "Group" : "StructReg", inside);
        }
        return Tagged(OneOf(node_elements), Children(), Named(Name()));
    }

    std::string Children() {
        std::string text;
        for (unsigned left = Below(9); left > 0; --left) text += Child();
        return text;
    }

    std::string Child() {
        switch (Below(10)) {
            case 0:
            case 1:
                return Tagged(OneOf(numbers), Chance(8) ? "x" : std::to_string(Below(64)));
            case 2:
            case 3:
            case 4:
                return Tagged(OneOf(links), Name());
            case 5:
                return Tagged("pVariable", Name(), Named(Variable()));
            case 6:
                return Formula();
            case 7:
                return Tagged("EnumEntry", EntryChildren(), Named(Name()));
            case 8:
                return Tagged("IntSwissKnife", Tagged("Formula", OneOf(formulas)) + EntryChildren(),
                              Named(Name()));
            default:
                return Word();
        }
    }

    std::string Variable() {
        constexpr const char* names[] = {"A", "B", "A.Min", "B.Value", "A.Inc", "C"};
        return OneOf(names);
    }
    std::string Formula() {
        constexpr const char* tags[] = {"Formula", "FormulaTo", "FormulaFrom", "Expression", "Constant"};
        const std::string tag = OneOf(tags);
        if (tag == "Constant") return Tagged(tag, "7", Named("B"));
        return Tagged(tag, OneOf(formulas), Named("E"));
    }
    std::string EntryChildren() {
        std::string text = Tagged("Value", std::to_string(Below(9)));
        for (unsigned left = Below(3); left > 0; --left) text += Tagged(OneOf(links), Name());
        if (Chance(6)) text += Tagged("pVariable", Name(), Named(Variable()));
        return text + (Chance(6) ? Word() : "");
    }
    std::string Word() {
        if (Chance(3))
            return Tagged("Extension", Tagged("ZELIsDebugProperty", Chance(2) ? "1" : OneOf(words)));
        constexpr const char* tags[] = {"ImposedAccessMode", "AccessMode", "Cachable", "Streamable"};
        return Tagged(OneOf(tags), OneOf(words));
    }

    std::mt19937_64 random_;
    unsigned name_count_ = 1;
};

// The load takes blocks of such sizes for other things.
bool is_size_of_blocks(std::uint64_t size) { return (size & (size - 1)) == 0; }

// What the walk over a description counts.
std::uint64_t CountBytes(const std::string& text, const load_options& options) {
    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(text.c_str()));
    document_allocator counted;
    for (element_walk walk(document.first_child(), options); walk.next();)
        walk.taken().chosen->reserve(counted, walk.taken().element);
    return counted.reserved_bytes();
}

TEST(Arena, HasTheRoomThatItsNodesTake) {
    std::uint64_t most = 0;
    std::uint64_t nodes = 0;
    for (int at = 0; at < description_count; ++at) {
        Generator generator(seed + static_cast<std::uint64_t>(at));
        std::string text = generator.Description();
        const load_options options{true, generator.Chance(2)};
        std::uint64_t counted = CountBytes(text, options);
        if (is_size_of_blocks(counted + spare)) {
            text.insert(text.rfind("</"), "<Port/>");
            counted = CountBytes(text, options);
        }
        genicam_doc document(options);
        const GuardedBlock guarded(counted + spare, spare);
        ASSERT_TRUE(document.load(text.data(), text.size())) << text;
        ASSERT_NE(GuardedBlock::Get(), nullptr) << "the arena is of another size: " << text;
        ASSERT_EQ(document.allocator().reserved_bytes(), counted) << text;
        ASSERT_EQ(document.allocator().used_bytes(), counted) << text;
        document.for_each_node([&nodes](INode*) { ++nodes; });
        most = std::max(most, counted);
    }
    EXPECT_GT(nodes, static_cast<std::uint64_t>(description_count) * 10);
    EXPECT_GT(most, 8'192U) << "some arenas have several pages";
}

TEST(ArenaDeathTest, AByteBehindTheGuardedRoomEndsTheProcess) {
    const auto write_behind = [] {
        constexpr std::size_t size = 40 + spare;
        const GuardedBlock guarded(size, spare);
        const std::unique_ptr<unsigned char[]> block(new unsigned char[size]);
        block[39] = 1;
        static_cast<volatile unsigned char*>(block.get())[40] = 1;
    };
    EXPECT_DEATH(write_behind(), "");
}

}  // namespace
}  // namespace arena_test
