#pragma once

#include "genicam/inode.h"
#include "items/item_contract.h"

#include <cstdint>

namespace genicam_adapter {

// The interface key of a described element is the address of its node.

[[nodiscard]] inline ZELAdapterHelper::InterfaceKey key_of(GenICam::INode* node) noexcept {
    return reinterpret_cast<std::uintptr_t>(node);
}

[[nodiscard]] inline GenICam::INode* node_of(ZELAdapterHelper::InterfaceKey key) noexcept {
    return reinterpret_cast<GenICam::INode*>(static_cast<std::uintptr_t>(key));
}

/// The type that nodes with this interface report.
template <class Interface>
constexpr GenICam::node_type type_of_interface;
template <>
inline constexpr auto type_of_interface<GenICam::IInteger> = GenICam::node_type::integer;
template <>
inline constexpr auto type_of_interface<GenICam::IFloat> = GenICam::node_type::floating;
template <>
inline constexpr auto type_of_interface<GenICam::IEnumeration> = GenICam::node_type::enumeration;
template <>
inline constexpr auto type_of_interface<GenICam::IBoolean> = GenICam::node_type::boolean;
template <>
inline constexpr auto type_of_interface<GenICam::ICommand> = GenICam::node_type::command;
template <>
inline constexpr auto type_of_interface<GenICam::ICategory> = GenICam::node_type::category;
template <>
inline constexpr auto type_of_interface<GenICam::IPort> = GenICam::node_type::port;

/// A node, null allowed, by the interface that goes with its type; null for a node of another type.
template <class Interface>
[[nodiscard]] Interface* node_as(GenICam::INode* node) {
    if (node == nullptr || node->get_node_type() != type_of_interface<Interface>) return nullptr;
    return static_cast<Interface*>(node);
}

template <class Interface>
[[nodiscard]] Interface* node_as(ZELAdapterHelper::InterfaceKey key) {
    return node_as<Interface>(node_of(key));
}

}  // namespace genicam_adapter
