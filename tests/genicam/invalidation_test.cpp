#include "genicam/core/log.h"
#include "genicam/ieval.h"
#include "tests/support/small_stack.h"
#include "tests/support/test_document.h"

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace GenICam;
using test_support::ChangeCounter;
using test_support::TestDocument;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

std::vector<std::string> dependents_of(INode& node) {
    std::vector<std::string> names;
    for (IEval* dependent : node.get_eval()->get_dependents()) {
        names.emplace_back(dependent->get_node()->get_name());
    }
    return names;
}

std::vector<std::string> dependents_of(TestDocument& doc, const char* name) {
    return dependents_of(doc.Node(name));
}

TEST(Invalidation, AChainMovesIntoTheListOfTheValueNode) {
    TestDocument doc(
        "<Integer Name='V'><Value>1</Value></Integer><Integer Name='P'><pValue>V</pValue></Integer>"
        "<SwissKnife Name='S'><pVariable Name='x'>P</pVariable><Formula>x</Formula></SwissKnife>");
    EXPECT_THAT(dependents_of(doc, "V"), UnorderedElementsAre("P", "S"));
    EXPECT_THAT(dependents_of(doc, "P"), ElementsAre());
    EXPECT_EQ(doc.Node("V").get_eval()->get_dependent_count(), 2);
    EXPECT_EQ(doc.Node("P").get_eval()->get_dependent_count(), 0);
    EXPECT_EQ(doc.Node("Device").get_eval()->get_dependent_count(), -1);
}

TEST(Invalidation, TwoNodesThatInvalidateEachOther) {
    TestDocument doc(
        "<Integer Name='A'><Value>1</Value><pInvalidator>B</pInvalidator></Integer>"
        "<Integer Name='B'><Value>1</Value><pInvalidator>A</pInvalidator></Integer>");
    EXPECT_THAT(dependents_of(doc, "A"), ElementsAre("B", "A"));
    EXPECT_THAT(dependents_of(doc, "B"), ElementsAre("A", "B"));
    ChangeCounter changes_of_a(doc.Node("A"));
    ChangeCounter changes_of_b(doc.Node("B"));
    EXPECT_FALSE(doc.Integer("A").set_val(2, 0));
    EXPECT_EQ(changes_of_a.Count(), 2) << "as its own dependent through the circle, and as the node written";
    EXPECT_EQ(changes_of_b.Count(), 1);
}

TEST(Invalidation, InvalidatorsThatRegisterNothing) {
    TestDocument doc(
        "<Integer Name='n'><Value>1</Value><pInvalidator>n</pInvalidator><pInvalidator>Device</pInvalidator>"
        "<pInvalidator>c</pInvalidator></Integer><Category Name='c'/>");
    EXPECT_THAT(doc.load_messages, ElementsAre());
    EXPECT_THAT(dependents_of(doc, "n"), ElementsAre());
}

TEST(Invalidation, UnknownInvalidatorsAreLogged) {
    TestDocument doc(
        "<Integer Name='n'><Value>1</Value><pInvalidator>entry</pInvalidator><pInvalidator/></Integer>"
        "<Enumeration Name='e'><Value>1</Value><EnumEntry "
        "Name='entry'><Value>1</Value></EnumEntry></Enumeration>");
    constexpr const char* message =
        "GenICam::node_base_data::resolve_references, Integer (\"n\"). Failed to resolve \"pInvalidator\" "
        "xml "
        "element.\n";
    EXPECT_THAT(doc.load_messages, ElementsAre(message, message));
}

TEST(Invalidation, EveryKindOfLinkRegistersOnce) {
    TestDocument doc(
        "<Integer Name='n'><pValue>v</pValue><pMin>v</pMin><pMax>v</pMax><pInc>v</pInc><Extension><pDefault>v"
        "</pDefault></Extension><pIsImplemented>v</pIsImplemented><pIsAvailable>v</pIsAvailable><pIsLocked>v"
        "</pIsLocked><pInvalidator>v</pInvalidator></Integer><Integer Name='v'><Value>1</Value></Integer>");
    EXPECT_THAT(dependents_of(doc, "v"), ElementsAre("n"));
}

TEST(Invalidation, EachLinkRegistersByItself) {
    const char* const links[] = {
        "<Integer Name='n'><pValue>v</pValue></Integer>",
        "<Integer Name='n'><Value>1</Value><pMin>v</pMin></Integer>",
        "<Integer Name='n'><Value>1</Value><pMax>v</pMax></Integer>",
        "<Integer Name='n'><Value>1</Value><pInc>v</pInc></Integer>",
        "<Integer Name='n'><Value>1</Value><Extension><pDefault>v</pDefault></Extension></Integer>",
        "<Integer Name='n'><pIndex>v</pIndex><ValueDefault>1</ValueDefault></Integer>",
        "<Integer Name='n'><pIndex>w</pIndex><ValueDefault>1</ValueDefault><pValueIndexed "
        "Index='1'>v</pValueIndexed>"
        "</Integer>",
        "<Float Name='n'><pValue>v</pValue></Float>",
        "<Boolean Name='n'><pValue>v</pValue></Boolean>",
        "<Boolean Name='n'><Value>1</Value><Extension><pDefault>v</pDefault></Extension></Boolean>",
        "<Command Name='n'><pValue>v</pValue><CommandValue>1</CommandValue></Command>",
        "<Command Name='n'><Value>1</Value><pCommandValue>v</pCommandValue></Command>",
        "<Enumeration Name='n'><pValue>v</pValue></Enumeration>",
        "<Port Name='n'><pChunkID>v</pChunkID></Port>",
    };
    for (const char* link : links) {
        TestDocument doc(
            std::string(link) +
            "<Integer Name='v'><Value>1</Value></Integer><Integer Name='w'><Value>1</Value></Integer>");
        EXPECT_THAT(dependents_of(doc, "v"), ElementsAre("n")) << link;
    }
}

TEST(Invalidation, LinksThatDoNotCount) {
    const char* const links[] = {
        "<Integer Name='n'><pIndex>w</pIndex><pValueDefault>v</pValueDefault></Integer>",
        "<Integer Name='n'><pValue>w</pValue><pValueCopy>v</pValueCopy></Integer>",
        "<Integer Name='n'><Value>1</Value><pSelected>v</pSelected></Integer>",
        "<Integer Name='n'><Value>1</Value><pAlias>v</pAlias></Integer>",
        "<Category Name='n'><pFeature>v</pFeature></Category>",
    };
    for (const char* link : links) {
        TestDocument doc(
            std::string(link) +
            "<Integer Name='v'><Value>1</Value></Integer><Integer Name='w'><Value>1</Value></Integer>");
        EXPECT_THAT(dependents_of(doc, "v"), ElementsAre()) << link;
    }
}

TEST(Invalidation, EntriesOfEnumerationsHearOfTheirLinks) {
    TestDocument doc(
        "<Enumeration Name='e'><Value>1</Value><EnumEntry Name='x'><Value>1</Value><pIsAvailable>v"
        "</pIsAvailable></EnumEntry></Enumeration><Integer Name='v'><Value>0</Value></Integer>");
    EXPECT_THAT(dependents_of(doc, "v"), ElementsAre("x"));
    EXPECT_FALSE(doc.Enumeration("e").get_entries().at(0)->is_available());
}

TEST(Invalidation, OrderIsDependentsFirstThenTheNode) {
    TestDocument doc(
        "<Integer Name='V'><Value>1</Value></Integer><Integer Name='P'><pValue>V</pValue></Integer>"
        "<Integer Name='Q'><pValue>P</pValue></Integer>");
    std::vector<std::string> heard;
    for (const char* name : {"V", "P", "Q"}) {
        doc.Node(name).register_callback([&heard](INode* node) { heard.emplace_back(node->get_name()); });
    }
    EXPECT_FALSE(doc.Integer("Q").set_val(5, 0));
    EXPECT_THAT(heard, ElementsAre("P", "Q", "V"));
}

TEST(Invalidation, AnUnchangedOrRefusedWriteIsSilent) {
    TestDocument doc("<Integer Name='V'><Value>1</Value><Max>5</Max></Integer>");
    ChangeCounter changes(doc.Node("V"));
    EXPECT_FALSE(doc.Integer("V").set_val(1, 0));
    EXPECT_TRUE(doc.Integer("V").set_val(6, 0));
    EXPECT_EQ(changes.Count(), 0);
    EXPECT_FALSE(doc.Integer("V").set_val(2, 0));
    EXPECT_EQ(changes.Count(), 1);
}

TEST(Callbacks, RunInTheOrderOfTheirRegistrationUntilCleared) {
    TestDocument doc("<Integer Name='V'><Value>1</Value></Integer>");
    std::string heard;
    EXPECT_FALSE(doc.Node("V").register_callback([&heard](INode*) { heard += 'a'; }));
    EXPECT_FALSE(doc.Node("V").register_callback([&heard](INode*) { heard += 'b'; }));
    EXPECT_FALSE(doc.Integer("V").set_val(2, 0));
    EXPECT_EQ(heard, "ab");
    doc.Node("V").clear_callbacks();
    doc.Node("V").clear_callbacks();
    EXPECT_FALSE(doc.Integer("V").set_val(3, 0));
    EXPECT_EQ(heard, "ab");
    EXPECT_FALSE(doc.Node("V").register_callback([&heard](INode*) { heard += 'c'; }));
    EXPECT_FALSE(doc.Integer("V").set_val(4, 0));
    EXPECT_EQ(heard, "abc");
}

TEST(Callbacks, OneThatThrowsEndsTheLoop) {
    TestDocument doc("<Integer Name='V'><Value>1</Value></Integer>");
    int heard = 0;
    doc.Node("V").register_callback([](INode*) { throw std::runtime_error("callback"); });
    doc.Node("V").register_callback([&heard](INode*) { ++heard; });
    EXPECT_THROW(static_cast<void>(doc.Integer("V").set_val(2, 0)), std::runtime_error);
    EXPECT_EQ(heard, 0);
    EXPECT_EQ(doc.Integer("V").get_val(0).value(), 2);
}

TEST(Callbacks, OneMayChangeTheCallbacksOfItsNode) {
    TestDocument doc("<Integer Name='V'><Value>1</Value></Integer>");
    int heard = 0;
    doc.Node("V").register_callback([&heard](INode* node) {
        ++heard;
        node->clear_callbacks();
        for (int more = 0; more < 100; ++more) node->register_callback([](INode*) {});
    });
    EXPECT_FALSE(doc.Integer("V").set_val(2, 0));
    EXPECT_EQ(heard, 1);
}

TEST(Callbacks, OneThatRegistersItselfRunsAgainAtTheNextChange) {
    TestDocument doc("<Integer Name='V'><Value>1</Value></Integer>");
    int heard = 0;
    std::function<void(INode*)> again = [&](INode* node) {
        if (++heard > 100) throw std::runtime_error("runs without end");
        node->register_callback(again);
    };
    doc.Node("V").register_callback(again);
    EXPECT_FALSE(doc.Integer("V").set_val(2, 0));
    EXPECT_EQ(heard, 1);
    EXPECT_FALSE(doc.Integer("V").set_val(3, 0));
    EXPECT_EQ(heard, 3);
}

// What was cleared may refer to what is gone, so it does not run any more.
TEST(Callbacks, ThoseThatWereClearedDoNotRunNorDoTheirSuccessors) {
    TestDocument doc("<Integer Name='V'><Value>1</Value></Integer>");
    std::string heard;
    doc.Node("V").register_callback([&](INode* node) {
        heard += 'a';
        node->clear_callbacks();
        for (int at = 0; at < 3; ++at) node->register_callback([&heard](INode*) { heard += 'c'; });
    });
    doc.Node("V").register_callback([&heard](INode*) { heard += 'b'; });
    EXPECT_FALSE(doc.Integer("V").set_val(2, 0));
    EXPECT_EQ(heard, "a");
    EXPECT_FALSE(doc.Integer("V").set_val(3, 0));
    EXPECT_EQ(heard, "accc");
}

// So many that the document has to make room for the nodes that have any.
TEST(Callbacks, OneMayRegisterWithManyOtherNodes) {
    constexpr int count = 1000;
    std::string text = "<Integer Name='V'><Value>1</Value></Integer>";
    for (int at = 0; at < count; ++at) {
        text += "<Integer Name='N" + std::to_string(at) + "'><Value>1</Value></Integer>";
    }
    TestDocument doc(text);
    int heard = 0;
    doc.Node("V").register_callback([&](INode*) {
        ++heard;
        doc->for_each_node([](INode* node) { node->register_callback([](INode*) {}); });
    });
    doc.Node("V").register_callback([&heard](INode*) { ++heard; });
    EXPECT_FALSE(doc.Integer("V").set_val(2, 0));
    EXPECT_EQ(heard, 2);
}

// A mistake of the caller: an assertion where they are compiled in, refused everywhere.
TEST(Dependents, AreNotAddedAfterTheLoad) {
    TestDocument doc(
        "<Integer Name='V'><Value>1</Value></Integer><Integer Name='A'><Value>1</Value></Integer>"
        "<Integer Name='P'><pValue>V</pValue></Integer>");
    EXPECT_DEBUG_DEATH(doc.Node("V").get_eval()->add_dependent(&doc.Node("A")), "never later");
    EXPECT_DEBUG_DEATH(doc.Node("P").get_eval()->add_dependent(&doc.Node("A")), "never later");
    EXPECT_THAT(dependents_of(doc, "V"), ElementsAre("P"));
    EXPECT_THAT(dependents_of(doc, "P"), ElementsAre());
}

TEST(Dependents, FiftyThousandOfOneNode) {
    constexpr int count = 50000;
    std::string text = "<Integer Name='V'><Value>1</Value></Integer>";
    for (int at = 0; at < count; ++at) {
        text += "<Integer Name='N" + std::to_string(at) +
                "'><Value>1</Value><pInvalidator>V</pInvalidator></Integer>";
    }
    TestDocument doc(text);
    EXPECT_EQ(doc.Node("V").get_eval()->get_dependent_count(), count);
}

// Each list is complete, whatever the order in which the nodes are closed.
TEST(Dependents, ALongRingCloses) {
    constexpr int count = 2000;
    std::string text;
    for (int at = 0; at < count; ++at) {
        text += "<Integer Name='N" + std::to_string(at) + "'><Value>1</Value><pInvalidator>N" +
                std::to_string((at + 1) % count) + "</pInvalidator></Integer>";
    }
    bool complete = true;
    test_support::RunOnSmallStack([&] {
        TestDocument doc(text);
        doc->for_each_node([&](INode* node) {
            if (node->get_node_type() == node_type::integer) {
                complete = complete && node->get_eval()->get_dependent_count() == count;
            }
        });
    });
    EXPECT_TRUE(complete);
}

TEST(Dependents, ListsOfARandomGraphHoldWhatCanBeReached) {
    constexpr int count = 60;
    unsigned state = 12345;
    const auto next = [&state](int below) {
        state = state * 1664525U + 1013904223U;
        return static_cast<int>(state >> 8) % below;
    };
    for (int round = 0; round < 20; ++round) {
        std::vector<std::vector<bool>> reaches(count, std::vector<bool>(count));
        std::string text;
        for (int at = 0; at < count; ++at) {
            // Even nodes hold a value, odd ones forward to another and so keep no list of their own.
            const int source = next(count);
            text += "<Integer Name='N" + std::to_string(at) + "'>";
            text += at % 2 == 0 ? "<Value>1</Value>" : "<pValue>N" + std::to_string(source) + "</pValue>";
            if (at % 2 != 0 && source != at)
                reaches[static_cast<std::size_t>(source)][static_cast<std::size_t>(at)] = true;
            for (int link = next(3); link > 0; --link) {
                const int other = next(count);
                text += "<pInvalidator>N" + std::to_string(other) + "</pInvalidator>";
                if (other != at)
                    reaches[static_cast<std::size_t>(other)][static_cast<std::size_t>(at)] = true;
            }
            text += "</Integer>";
        }
        for (std::size_t via = 0; via < count; ++via) {
            for (std::size_t from = 0; from < count; ++from) {
                for (std::size_t to = 0; to < count; ++to) {
                    if (reaches[from][via] && reaches[via][to]) reaches[from][to] = true;
                }
            }
        }
        TestDocument doc(text);
        for (std::size_t at = 0; at < count; at += 2) {
            std::vector<std::string> expected;
            for (std::size_t to = 0; to < count; ++to) {
                if (reaches[at][to]) expected.push_back("N" + std::to_string(to));
            }
            EXPECT_THAT(dependents_of(doc, ("N" + std::to_string(at)).c_str()),
                        testing::UnorderedElementsAreArray(expected));
        }
    }
}

// The lists by the plainest way there is: searched at each step, closed one after the other by name.
class plain_lists {
public:
    void add(const std::string& owner, const std::string& dependent) {
        if (owner != dependent) lists_[owner].append_unseen(dependent);
    }
    void close(const std::string& owner) {
        list& closed = lists_[owner];
        for (std::size_t at = 0; at < closed.names.size(); ++at) {
            if (closed.names[at] == owner) continue;
            for (const std::string& name : lists_[closed.names[at]].names) closed.append_unseen(name);
        }
    }
    const std::vector<std::string>& of(const std::string& owner) { return lists_[owner].names; }

private:
    struct list {
        std::vector<std::string> names;
        std::set<std::string> known;
        void append_unseen(const std::string& name) {
            if (known.insert(name).second) names.push_back(name);
        }
    };

    std::map<std::string, list> lists_;
};

/// A description of nodes that hold a value or forward to another, and the lists that it must come to.
class described_graph {
public:
    void add_node(const std::string& name, bool has_list, const std::vector<std::string>& links) {
        std::vector<std::string>& sources = sources_[name];
        text_ += "<Integer Name='" + name + "'>";
        for (std::size_t at = has_list ? 0 : 1; at < links.size(); ++at) {
            sources.push_back(links[at]);
            text_ += "<pInvalidator>" + links[at] + "</pInvalidator>";
        }
        if (has_list) {
            text_ += "<Value>1</Value></Integer>";
            with_list_.push_back(name);
        } else {
            sources.push_back(links.front());
            text_ += "<pValue>" + links.front() + "</pValue></Integer>";
        }
    }
    void expect_lists() {
        plain_lists lists;
        for (const auto& [name, links] : sources_) {
            for (const std::string& source : links) lists.add(source, name);
        }
        std::sort(with_list_.begin(), with_list_.end());
        for (const std::string& name : with_list_) lists.close(name);
        TestDocument doc(text_);
        for (const std::string& name : with_list_) {
            ASSERT_EQ(dependents_of(doc, name.c_str()), lists.of(name)) << name << " of " << text_;
        }
        expect_the_same_unheard(doc);
    }

private:
    // Where nobody listens, the nodes are resolved in another order.
    void expect_the_same_unheard(TestDocument& heard) const {
        const silence quiet;
        const std::string whole = "<R>" + text_ + "</R>";
        const std::unique_ptr<IGenICamDoc> unheard(load_genicam_doc(whole.data(), whole.size(), {}));
        for (const std::string& name : with_list_) {
            ASSERT_EQ(dependents_of(*unheard->find_node(name)), dependents_of(heard.Node(name)))
                << name << " of " << text_;
        }
    }

    std::map<std::string, std::vector<std::string>> sources_;  // of each node, as it registers with them
    std::vector<std::string> with_list_;
    std::string text_;
};

// The order of a list is that of the calls to those who listen.
TEST(Dependents, ListsOfARandomGraphStandInTheOrderOfTheirWalk) {
    constexpr unsigned count = 40;
    std::mt19937 random(4711);
    const auto below = [&random](unsigned limit) { return static_cast<unsigned>(random() % limit); };
    for (int round = 0; round < 200; ++round) {
        const unsigned most_links = 1 + below(6);
        described_graph graph;
        for (unsigned at = 0; at < count; ++at) {
            const bool has_list = below(3) != 0;
            std::vector<std::string> links;
            for (unsigned link = below(most_links) + (has_list ? 0 : 1); link > 0; --link)
                links.push_back("N" + std::to_string(below(count)));
            graph.add_node("N" + std::to_string(at), has_list, links);
        }
        graph.expect_lists();
    }
}

// Long lists, most of which stand in others: chains, circles, chains into circles, two chains that meet,
// steps over one or two nodes, in the order of their names, against it and in any. A few links more spoil
// some of that.
TEST(Dependents, LongListsStandInTheOrderOfTheirWalk) {
    constexpr unsigned count = 100;
    std::mt19937 random(815);
    const auto below = [&random](unsigned limit) { return static_cast<unsigned>(random() % limit); };
    for (unsigned round = 0; round < 60; ++round) {
        std::vector<unsigned> numbers(count);
        for (unsigned at = 0; at < count; ++at) numbers[at] = 100 + at;
        if (round % 3 == 1) std::reverse(numbers.begin(), numbers.end());
        if (round % 3 == 2) std::shuffle(numbers.begin(), numbers.end(), random);
        const auto name = [&numbers](unsigned at) { return "N" + std::to_string(numbers[at % count]); };
        const unsigned begin_of_circle = round % 4 == 0 ? 0 : below(count);
        const bool has_circle = round % 2 == 0;
        const unsigned steps = 1 + round / 12 % 2;
        const unsigned odd_links = round % 5 == 0 ? below(4) : 0;
        const unsigned forwarders = round % 7 == 0 ? 3 : 100;
        described_graph graph;
        for (unsigned at = 0; at < count; ++at) {
            std::vector<std::string> links;
            for (unsigned step = 1; step <= steps && step <= at; ++step) links.push_back(name(at - step));
            if (at == begin_of_circle && has_circle) links.push_back(name(count - 1));
            if (below(count) < odd_links) links.push_back(name(below(count)));
            if (round % 11 == 0 && at % 40 == 0 && at != 0) links.erase(links.begin());
            const bool has_list = links.empty() || below(forwarders) != 0;
            graph.add_node(name(at), has_list, links);
        }
        graph.expect_lists();
    }
}

// Of many nodes with few dependents each, entries of enumerations among them.
TEST(Dependents, OfADescriptionThatNobodyHearsStandInTheOrderOfTheNames) {
    std::string text = "<Integer Name='V'><Value>1</Value></Integer>";
    for (const char* name : {"d", "a", "c"}) {
        text += "<Enumeration Name='" + std::string(name) + "'><pIsLocked>V</pIsLocked><pValue>P</pValue>" +
                "<EnumEntry Name='" + name + "1'><Value>1</Value><pIsAvailable>V</pIsAvailable></EnumEntry>" +
                "<EnumEntry Name='" + name + "2'><Value>2</Value><pIsAvailable>V</pIsAvailable></EnumEntry>" +
                "</Enumeration>";
    }
    text +=
        "<SwissKnife Name='b'><pVariable Name='x'>V</pVariable><Expression Name='E'>x</Expression>"
        "<Formula>E</Formula></SwissKnife><Integer Name='P'><Value>1</Value></Integer>";
    TestDocument heard(text);
    const std::vector<std::string> expected = {"a", "a1", "a2", "b", "c", "c1", "c2", "d", "d1", "d2"};
    EXPECT_EQ(dependents_of(heard, "V"), expected);
    const silence quiet;
    const std::string whole = "<R>" + text + "</R>";
    const std::unique_ptr<IGenICamDoc> unheard(load_genicam_doc(whole.data(), whole.size(), {}));
    EXPECT_EQ(dependents_of(*unheard->find_node("V")), expected);
}

// Each list of its own would take the square of the count.
TEST(Dependents, ChainsAndCirclesOfFortyThousandNodes) {
    constexpr int count = 40000;
    const auto name = [](int number) { return "N" + std::to_string(100000 + number); };
    for (const int step : {1, -1}) {
        for (const bool is_circle : {false, true}) {
            std::string text;
            for (int at = 0; at < count; ++at) {
                const int source = at + step;
                text += "<Integer Name='" + name(at) + "'><Value>1</Value>";
                if (is_circle || (source >= 0 && source < count))
                    text += "<pInvalidator>" + name((source + count) % count) + "</pInvalidator>";
                text += "</Integer>";
            }
            TestDocument doc(text);
            ASSERT_TRUE(doc.IsLoaded());
            for (const int at : {0, 1, 4711, count - 2, count - 1}) {
                const auto dependents = doc.Node(name(at)).get_eval()->get_dependents();
                const int all = is_circle ? count : step < 0 ? count - 1 - at : at;
                ASSERT_EQ(dependents.size(), static_cast<std::size_t>(all));
                int expected = at;
                for (IEval* dependent : dependents) {
                    expected = (expected - step + count) % count;
                    ASSERT_EQ(dependent->get_node()->get_name(), name(expected));
                }
            }
        }
    }
}

// Each node of the chain has one more that only it has, so that no list stands in another.
TEST(Dependents, TooManyEntriesAreRefused) {
    const auto chain = [](int count) {
        std::string text;
        for (int at = 0; at < count; ++at) {
            const std::string number = std::to_string(100000 + at);
            text += "<Integer Name='A" + number + "'><Value>1</Value><pInvalidator>A" +
                    std::to_string(100000 + at - 1) + "</pInvalidator></Integer><Integer Name='B" + number +
                    "'><Value>1</Value><pInvalidator>A" + number + "</pInvalidator></Integer>";
        }
        return "<R ModelName='Chain'>" + text + "</R>";
    };
    EXPECT_TRUE(TestDocument(TestDocument::WholeText{chain(1000)}).IsLoaded());
    const TestDocument refused(TestDocument::WholeText{chain(6000)});
    EXPECT_FALSE(refused.IsLoaded());
    ASSERT_FALSE(refused.load_messages.empty());
    EXPECT_EQ(refused.load_messages.back(),
              "GenICam::genicam_doc::close_dependents, R (\"Chain\"). The lists of dependents have more than "
              "16777216 entries.\n");
}

TEST(Callbacks, OfANodeWithoutAnyMayBeCleared) {
    TestDocument doc("<Integer Name='n'><Value>1</Value></Integer>");
    doc.Node("n").clear_callbacks();
    const ChangeCounter changes(doc.Node("n"));
    EXPECT_FALSE(doc.Integer("n").set_val(2, 0));
    EXPECT_EQ(changes.Count(), 1);
}

}  // namespace
