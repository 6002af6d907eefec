#pragma once

#include "genicam/inode.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace GenICam {

struct load_options {
    bool reserved_option = true;
    /// Keeps nodes whose `Extension` has a non-zero `ZELIsDebugProperty`.
    bool keep_debug_properties = false;
};

/// One device description and the node graph made from it. One thread at a time may use a document with its
/// nodes.
class IGenICamDoc {
public:
    virtual ~IGenICamDoc() = default;
    /// The port of that name, "Device" for an empty one; null for none.
    [[nodiscard]] virtual INode* find_port(std::string_view name) = 0;
    [[nodiscard]] virtual INode* find_node(std::string_view name) = 0;
    /// Every node, in name order.
    virtual void for_each_node(std::function<void(INode*)> fn) = 0;
    virtual void for_each_streamable_node(std::function<void(INode*)> fn) = 0;
    [[nodiscard]] virtual std::string_view get_model_name() = 0;
    [[nodiscard]] virtual std::string_view get_vendor_name() = 0;
    [[nodiscard]] virtual std::string_view get_tooltip() = 0;
    [[nodiscard]] virtual StandardNameSpace get_standard_name_space() = 0;
    [[nodiscard]] virtual std::uint64_t get_major_version() = 0;
    [[nodiscard]] virtual std::uint64_t get_minor_version() = 0;
    [[nodiscard]] virtual std::uint64_t get_subminor_version() = 0;
    [[nodiscard]] virtual std::vector<INode*> get_streamable_nodes() = 0;
    /// Mode 0: counts by element and class; mode 1: every node with its number of dependents; else empty.
    [[nodiscard]] virtual std::string dump(std::int32_t mode) = 0;
};

/// Loads a description from `size` bytes, which are copied. Null if the XML is malformed, or if its lists of
/// dependents pass their bound; else the caller owns the document. Whatever else a description gets wrong is
/// logged and left out.
[[nodiscard]] IGenICamDoc* load_genicam_doc(const char* data, std::uint64_t size, load_options options);

}  // namespace GenICam
