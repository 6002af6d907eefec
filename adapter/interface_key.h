#pragma once

#include "genicam/inode.h"
#include "items/item_contract.h"

#include <cstdint>
#include <type_traits>

namespace genicam_adapter {

// The interface key of a described element is the address of its node.

[[nodiscard]] inline ZELAdapterHelper::InterfaceKey key_of(GenICam::INode* node) noexcept {
    return reinterpret_cast<std::uintptr_t>(node);
}

[[nodiscard]] inline GenICam::INode* node_of(ZELAdapterHelper::InterfaceKey key) noexcept {
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    return reinterpret_cast<GenICam::INode*>(static_cast<std::uintptr_t>(key));
}

template <GenICam::node_type type>
using reports = std::integral_constant<GenICam::node_type, type>;

/// The type that nodes with this interface report.
template <class Interface>
struct type_of_interface;
template <>
struct type_of_interface<GenICam::IInteger> : reports<GenICam::node_type::integer> {};
template <>
struct type_of_interface<GenICam::IFloat> : reports<GenICam::node_type::floating> {};
template <>
struct type_of_interface<GenICam::IEnumeration> : reports<GenICam::node_type::enumeration> {};
template <>
struct type_of_interface<GenICam::IBoolean> : reports<GenICam::node_type::boolean> {};
template <>
struct type_of_interface<GenICam::ICommand> : reports<GenICam::node_type::command> {};
template <>
struct type_of_interface<GenICam::ICategory> : reports<GenICam::node_type::category> {};
template <>
struct type_of_interface<GenICam::IPort> : reports<GenICam::node_type::port> {};

/// A node, null allowed, by the interface that goes with its type; null for a node of another type.
template <class Interface>
[[nodiscard]] Interface* node_as(GenICam::INode* node) {
    if (node == nullptr || node->get_node_type() != type_of_interface<Interface>::value) return nullptr;
    return static_cast<Interface*>(node);
}

template <class Interface>
[[nodiscard]] Interface* node_as(ZELAdapterHelper::InterfaceKey key) {
    return node_as<Interface>(node_of(key));
}

}  // namespace genicam_adapter
