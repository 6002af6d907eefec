#pragma once

#include "genicam/core/children.h"
#include "genicam/core/message.h"
#include "genicam/inode.h"
#include "genicam/nodes/range_record.h"

#include <cstdint>
#include <vector>

#include <boost/container/small_vector.hpp>
#include <pugixml.hpp>

namespace GenICam {

class IGenICamDoc;

/// Where a register lies and how many bytes it has. The length is what the description says, not yet checked.
struct register_span {
    std::uint64_t address;
    std::int64_t length;
};

/// What of an address cannot be read, for whoever has it to report.
struct address_problem {
    const message<>* what;
    message_origin where;
};

void report_all(const std::vector<address_problem>& problems);

/// The sum of the `Address` children, wrapping; a child that is no number is logged and left out.
[[nodiscard]] std::uint64_t calc_address_nodes_sum(const described_element& xml);

/// The port named by `pPort`, "Device" without a name; null if there is no such port.
[[nodiscard]] IPort* find_register_port(IGenICamDoc* doc, const described_element& xml);

/// Address and length of a register that the description fixes.
class register_const_address_eval {
public:
    explicit register_const_address_eval(const described_element& xml);

    [[nodiscard]] result<register_span> get_address_and_length(std::uint32_t) const { return span_; }
    [[nodiscard]] std::int64_t get_length() const noexcept { return span_.length; }

private:
    register_span span_;
};

/// One dynamic part of an address: a node that is added, or an index times a stride.
struct address_term {
    INode* index_node = nullptr;  ///< null for a node that is added
    INode* value_node = nullptr;  ///< what is added; of an index the `pOffset` node or null
    std::int64_t offset = 0;      ///< of an index
};

/// An address that depends on other nodes, computed anew at each access.
class address_eval {
public:
    /// `self` becomes a dependent of every node of the address except the indexes.
    void resolve_references(IGenICamDoc* doc, const described_element& xml, INode* self);
    /// The same for nobody yet, and without a message.
    [[nodiscard]] std::vector<address_problem> resolve_terms(IGenICamDoc* doc, const described_element& xml);

    /// The register's length is the stride of an index that states none. Wraps at 64 bits.
    [[nodiscard]] result<std::uint64_t> calc_address(std::int64_t length, std::uint32_t flags) const {
        if (is_fixed()) return base_;
        return add_terms(length, flags);
    }
    /// Whether no node takes part in the address, which is then `base`.
    [[nodiscard]] bool is_fixed() const noexcept { return terms_.empty(); }
    [[nodiscard]] std::uint64_t base() const noexcept { return base_; }
    /// Calls `fn` with each node of the address except the indexes.
    template <class Function>
    void for_each_source(Function fn) const {
        for (const address_term& term : terms_) {
            if (term.value_node != nullptr) fn(term.value_node);
        }
    }

private:
    class resolver;

    [[nodiscard]] result<std::uint64_t> add_terms(std::int64_t length, std::uint32_t flags) const;

    std::uint64_t base_ = 0;
    boost::container::small_vector<address_term, 1> terms_;
};

/// `Length` or `pLength`, of which `self` becomes a dependent. Without a usable one the register has 4 bytes.
[[nodiscard]] integer_pair resolve_length(IGenICamDoc* doc, const described_element& xml, INode* self);

[[nodiscard]] result<register_span> evaluate_terms(const integer_pair& length, const address_eval& address,
                                                   std::uint32_t flags);

/// The length, and the address that goes with it.
[[nodiscard]] inline result<register_span> evaluate_span(const integer_pair& length,
                                                         const address_eval& address, std::uint32_t flags) {
    if (length.kind == limit_kind::constant && address.is_fixed()) {
        return register_span{address.base(), length.number};
    }
    return evaluate_terms(length, address, flags);
}

/// Address and length of a register that depends on other nodes: an address with the length record.
class register_dyn_address_eval {
public:
    /// `self` becomes a dependent of `pLength` too.
    void resolve_references_len(IGenICamDoc* doc, const described_element& xml, INode* self);

    [[nodiscard]] result<register_span> get_address_and_length(std::uint32_t flags) const {
        return evaluate_span(length_, address_, flags);
    }
    /// 4 where the length cannot be evaluated.
    [[nodiscard]] std::int64_t get_length() const;

private:
    address_eval address_;
    integer_pair length_;
};

}  // namespace GenICam
