#include "tests/support/worst_shapes.h"

#include <functional>
#include <string_view>

#include <fmt/format.h>

namespace test_support {
namespace {

template <class Line>
std::string repeat(std::size_t n, Line line) {
    std::string text;
    for (std::size_t at = 0; at < n; ++at) text += line(at);
    return text;
}

std::string root(const std::string& listed, const std::string& elements) {
    return "<D><Category Name='Root'><pFeature>P</pFeature></Category><Category Name='P'><DisplayName>Special"
           "</DisplayName>" +
           listed + "</Category>" + elements + "<Port Name='Device'/></D>";
}

constexpr const char* item_mark =
    "<Extension><ZELItemGUID>{{3F6A2B10-5C1E-4D77-9A40-{:012X}}}</ZELItemGUID></Extension>";
constexpr const char* mark =
    "<Extension><ZELElementGUID>{{3F6A2B10-5C1E-4D77-9A40-{:012X}}}</ZELElementGUID></Extension>";

// So many entries in one structure, and what stands before them there.
std::string structure(const std::string& children, std::size_t n) {
    return "<StructReg><Address>0</Address><Length>4</Length><pPort>Device</pPort>" + children +
           repeat(n,
                  [](std::size_t at) {
                      return fmt::format("<StructEntry Name='e{}'><Bit>{}</Bit></StructEntry>", at, at % 32);
                  }) +
           "</StructReg>";
}

// The last entry is chosen.
std::string enumeration(std::size_t n) {
    return "<Enumeration Name='e'>" +
           repeat(n,
                  [](std::size_t at) {
                      return fmt::format("<EnumEntry Name='e{0}'><Value>{0}</Value></EnumEntry>", at);
                  }) +
           fmt::format("<Value>{}</Value></Enumeration>", n - 1);
}

std::string listing(std::size_t n) {
    return repeat(n, [](std::size_t at) { return fmt::format("<pFeature>f{}</pFeature>", at); });
}
std::string integers(std::size_t n, const std::function<std::string(std::size_t)>& content) {
    return repeat(
        n, [&](std::size_t at) { return fmt::format("<Integer Name='f{}'>{}</Integer>", at, content(at)); });
}

const worst_shape shapes[] = {
    {"features side by side",
     [](std::size_t n) {
         return root(listing(n), integers(n, [](std::size_t) { return "<Value>1</Value>"; }));
     }},
    {"marked features of one item",
     [](std::size_t n) {
         return root(
             "<pFeature>I</pFeature>",
             "<Category Name='I'>" + fmt::format(item_mark, 1) + listing(n) + "</Category>" +
                 integers(n, [](std::size_t at) { return fmt::format(mark, at) + "<Value>1</Value>"; }));
     }},
    {"items of one group",
     [](std::size_t n) {
         return root(listing(n),
                     repeat(n,
                            [](std::size_t at) {
                                return fmt::format("<Category Name='f{0}'>", at) +
                                       fmt::format(item_mark, at + 1) + "<pFeature>v</pFeature></Category>";
                            }) +
                         "<Integer Name='v'>" + fmt::format(mark, 1) + "<Value>1</Value></Integer>");
     }},
    {"groups inside groups",
     [](std::size_t n) {
         return root("", repeat(n, [](std::size_t) { return "<Group>"; }) +
                             repeat(n, [](std::size_t) { return "</Group>"; }));
     }},
    {"categories inside categories",
     [](std::size_t n) {
         return root("<pFeature>f0</pFeature>", repeat(n, [](std::size_t at) {
                         return fmt::format("<Category Name='f{}'><pFeature>f{}</pFeature></Category>", at,
                                            at + 1);
                     }));
     }},
    {"a chain of links",
     [](std::size_t n) {
         return root("<pFeature>f0</pFeature>",
                     integers(n, [](std::size_t at) { return fmt::format("<pValue>f{}</pValue>", at + 1); }));
     },
     // Up to 1,000 links are followed from each node, and each node on the way asks all behind it for their
     // access mode.
     2000},
    {"a circle of links",
     [](std::size_t n) {
         return root("<pFeature>f0</pFeature>", integers(n, [n](std::size_t at) {
                         return fmt::format("<pValue>f{}</pValue>", (at + 1) % n);
                     }));
     }},
    {"all hang on one",
     [](std::size_t n) {
         return root(
             listing(n),
             integers(n, [](std::size_t) {
                 return "<pIsAvailable>hub</pIsAvailable><pIsLocked>hub</pIsLocked><pValue>hub</pValue>";
             }) + "<Integer Name='hub'><Value>1</Value></Integer>");
     }},
    {"registers that one invalidates",
     [](std::size_t n) {
         return root(listing(n),
                     repeat(n, [](std::size_t at) {
                         return fmt::format(
                             "<IntReg Name='f{}'><Address>{}</Address><Length>4</Length><pPort>Device"
                             "</pPort><pInvalidator>hub</pInvalidator></IntReg>",
                             at, at * 4);
                     }) + "<Integer Name='hub'><Value>1</Value></Integer>");
     }},
    {"one name for all",
     [](std::size_t n) {
         return root("<pFeature>f</pFeature>",
                     repeat(n, [](std::size_t) { return "<Integer Name='f'><Value>1</Value></Integer>"; }));
     }},
    {"links that lead nowhere",
     [](std::size_t n) {
         return root(listing(n), integers(n, [](std::size_t at) {
                         return fmt::format("<pValue>feature_{}x</pValue>", at);
                     }));
     }},
    {"elements that nobody knows",
     [](std::size_t n) {
         return root(listing(n), integers(n, [](std::size_t at) {
                         return fmt::format("<pIsLokced{}>x</pIsLokced{}><Value>1</Value>", at, at);
                     }));
     }},
    {"entries of an enumeration",
     [](std::size_t n) { return root("<pFeature>e</pFeature>", enumeration(n)); }},
    {"entries of a structure", [](std::size_t n) { return root("", structure("", n)); }},
    {"entries and invalidators",
     [](std::size_t n) {
         const auto invalidator = [](std::size_t at) {
             return fmt::format("<pInvalidator>f{}</pInvalidator>", at);
         };
         return root("", structure(repeat(n, invalidator), n) +
                             integers(n, [](std::size_t) { return "<Value>1</Value>"; }));
     }},
    {"entries and addresses",
     [](std::size_t n) {
         return root("", structure(repeat(n, [](std::size_t) { return "<Address>4</Address>"; }), n));
     }},
    {"entries and broken addresses",
     [](std::size_t n) {
         return root("", structure(repeat(n, [](std::size_t) { return "<Address>x</Address>"; }), n));
     }},
    {"entries and indexes",
     [](std::size_t n) {
         return root("", structure(repeat(n, [](std::size_t) { return "<pIndex>i</pIndex>"; }), n) +
                             "<Integer Name='i'><Value>1</Value></Integer>");
     },
     500, true},
    {"entries and lengths",
     [](std::size_t n) {
         return root("", structure(repeat(n, [](std::size_t) { return "<pLength>x</pLength>"; }), n));
     }},
    {"entries before a broken length",
     [](std::size_t n) {
         std::string text = structure("", n);
         text.erase(text.find("<Length>4</Length>"), std::string_view("<Length>4</Length>").size());
         return root("",
                     text.insert(text.rfind("</StructReg>"), "<Length>x</Length><Endianess>x</Endianess>"));
     }},
    {"links to one name",
     [](std::size_t n) {
         return root("", repeat(n, [](std::size_t) {
                             return "<Integer Name='v'><Value>1</Value></Integer>";
                         }) + integers(n, [](std::size_t) { return "<pValue>v</pValue>"; }));
     }},
    {"ports among nodes of their name",
     [](std::size_t n) {
         return root("", repeat(n, [](std::size_t at) {
                         return fmt::format(
                             "<Integer Name='v'><Value>1</Value></Integer>"
                             "<IntReg Name='f{}'><Address>0</Address><Length>4</Length>"
                             "<pPort>v</pPort></IntReg>",
                             at);
                     }));
     }},
    {"readers of an enumeration",
     [](std::size_t n) {
         return root("", enumeration(n) + integers(n, [](std::size_t) { return "<pValue>e</pValue>"; }));
     }},
    {"readers of a value table",
     [](std::size_t n) {
         const auto row = [](std::size_t at) {
             return fmt::format("<ValueIndexed Index='{0}'>{0}</ValueIndexed>", at);
         };
         return root("", "<Integer Name='t'><pIndex>i</pIndex>" + repeat(n, row) +
                             fmt::format("<ValueDefault>0</ValueDefault></Integer><Integer Name='i'><Value>{}"
                                         "</Value></Integer>",
                                         n - 1) +
                             integers(n, [](std::size_t) { return "<pValue>t</pValue>"; }));
     }},
    {"entries as variables",
     [](std::size_t n) {
         const auto variable = [](std::size_t at) {
             return fmt::format("<pVariable Name='V.Entry.e{}'>e</pVariable>", at);
         };
         return root("", enumeration(n) + "<IntSwissKnife Name='k'>" + repeat(n, variable) +
                             "<Formula>1</Formula></IntSwissKnife>");
     }},
    {"a long formula",
     [](std::size_t n) {
         return root("<pFeature>k</pFeature>",
                     "<IntSwissKnife Name='k'><Formula>1" + repeat(n, [](std::size_t at) {
                         return fmt::format("+{}", at);
                     }) + "</Formula></IntSwissKnife>");
     }},
    {"variables of a formula",
     [](std::size_t n) {
         return root("<pFeature>k</pFeature>",
                     "<IntSwissKnife Name='k'>" +
                         repeat(n,
                                [](std::size_t at) {
                                    return fmt::format("<pVariable Name='V{}'>v</pVariable>", at);
                                }) +
                         "<Formula>0" + repeat(n, [](std::size_t at) { return fmt::format("+V{}", at); }) +
                         "</Formula></IntSwissKnife><Integer Name='v'><Value>1</Value></Integer>");
     }},
};

}  // namespace

gsl::span<const worst_shape> worst_shapes() { return shapes; }

}  // namespace test_support
