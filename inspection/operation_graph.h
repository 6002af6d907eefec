#pragma once

#include "inspection/description_tree.h"
#include "inspection/element_links.h"

#include <cstddef>
#include <map>
#include <vector>

#include <pugixml.hpp>

namespace selvane_inspect {

/// One operation of one node, or of what many nodes may need: the address that the entries of a register
/// structure share, or whichever of the nodes of one name a link finds.
struct node_operation {
    element_index element;
    operation asked;

    [[nodiscard]] std::size_t number() const noexcept {
        return element * operation_count + static_cast<std::size_t>(asked);
    }
};

/// Which operations the engine carries out on which nodes for an operation of a node. Told from the elements
/// alone; where it depends on a value which of several nodes takes part, all of them count.
class operation_graph {
public:
    explicit operation_graph(const description_tree& tree) : tree_(tree) {}

    [[nodiscard]] std::vector<node_operation> needs_of(node_operation which) const;
    /// Whether it is an element of the tree. What is shared has the numbers behind those.
    [[nodiscard]] bool is_node(element_index element) const { return element < tree_.elements().size(); }
    /// Calls with each link of a node, those of its structure among them.
    template <class Function>
    void for_each_link(element_index element, Function fn) const {
        const node_element& of = tree_.at(element);
        reader_.read(of.xml).for_each(fn);
        if (of.structure) reader_.read(of.structure).for_each(fn);
    }

private:
    friend class need_list;
    using namesakes = std::vector<element_index>;
    struct shared {
        pugi::xml_node structure;
        const namesakes* nodes = nullptr;
    };

    [[nodiscard]] element_index number_of(pugi::xml_node structure) const;
    [[nodiscard]] element_index number_of(const namesakes& nodes) const;
    [[nodiscard]] std::vector<node_operation> needs_of_shared(node_operation which) const;

    const description_tree& tree_;
    mutable link_reader reader_;
    mutable std::vector<shared> shared_;
    mutable std::map<pugi::xml_node, element_index> structures_;
    mutable std::map<const namesakes*, element_index> names_;
};

}  // namespace selvane_inspect
