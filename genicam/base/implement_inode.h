#pragma once

#include "genicam/base/node_base.h"
#include "genicam/base/xml_words.h"
#include "genicam/inode.h"

#include <utility>

namespace GenICam {

/// Whether a class of nodes has its row in genicam/nodes/node_rows.inc, without which it does not compile.
template <class T>
inline constexpr bool has_row = false;

/// The operations of `INode` that ask for state: forwarded to the common data of the object `T` that this is
/// a part of.
template <class T, class I>
class implement_inode_base : public I {
    static_assert(has_row<T>);

public:
    [[nodiscard]] std::error_code is_implemented(bool& value, std::uint32_t flags) final {
        return self().test_implemented(value, flags);
    }
    [[nodiscard]] bool is_implemented() final { return self().seems(&node_base_data::test_implemented); }
    [[nodiscard]] std::error_code is_available(bool& value, std::uint32_t flags) final {
        return self().test_available(value, flags);
    }
    [[nodiscard]] bool is_available() final { return self().seems(&node_base_data::test_available); }
    [[nodiscard]] std::error_code is_locked(bool& value, std::uint32_t flags) final {
        return self().test_locked(value, flags);
    }
    [[nodiscard]] bool is_locked() final { return self().is_locked_by_link(); }
    [[nodiscard]] AccessMode get_access_mode() final { return self().find_access_mode(); }
    std::error_code register_callback(INode::callback fn) final {
        self().add_callback(std::move(fn));
        return {};
    }
    void clear_callbacks() final { self().clear_callbacks(); }
    [[nodiscard]] IEval* get_eval() final { return &self(); }

protected:
    ~implement_inode_base() = default;
    [[nodiscard]] node_base_data& self() noexcept { return static_cast<T&>(*this); }
    [[nodiscard]] const node_base_data& self() const noexcept { return static_cast<const T&>(*this); }
};

/// The operations of `INode` that tell what the description says.
template <class T, class I>
class implement_inode : public implement_inode_base<T, I> {
public:
    [[nodiscard]] std::string_view get_name() const final { return self().find_name(); }
    [[nodiscard]] std::vector<INode::extension> get_extensions() const final {
        return self().find_extensions();
    }
    [[nodiscard]] std::string_view get_extension(std::string_view key) const final {
        return self().find_extension(key);
    }
    [[nodiscard]] Visibility get_visibility() const final { return parse_visibility(xml()); }
    [[nodiscard]] std::string_view get_display_name() const final { return self().find_display_name(); }
    [[nodiscard]] std::string_view get_tooltip() const final { return child_text(xml(), "ToolTip"); }
    [[nodiscard]] std::string_view get_description() const final { return child_text(xml(), "Description"); }
    [[nodiscard]] std::string_view get_docu_url() const final { return child_text(xml(), "DocuURL"); }
    [[nodiscard]] bool is_deprecated() const final { return says_yes(xml(), "IsDeprecated"); }
    [[nodiscard]] bool get_streamable() const final {
        return self().states_streamable() && parse_streamable(xml());
    }
    [[nodiscard]] std::optional<std::uint64_t> get_event_id() const final { return self().find_event_id(); }
    [[nodiscard]] INode* get_alias() const final { return self().resolve_node("pAlias"); }
    [[nodiscard]] INode* get_cast_alias() const final { return self().resolve_node("pCastAlias"); }
    [[nodiscard]] INode* get_block_polling() const final { return self().resolve_node("pBlockPolling"); }
    [[nodiscard]] NameSpace get_name_space() const final { return parse_name_space(xml()); }
    [[nodiscard]] MergePriority get_merge_priority() const final { return parse_merge_priority(xml()); }
    [[nodiscard]] std::optional<bool> get_expose_static() const final { return parse_expose_static(xml()); }

protected:
    ~implement_inode() = default;
    using implement_inode_base<T, I>::self;
    [[nodiscard]] pugi::xml_node xml() const noexcept { return self().xml(); }
};

// The layers of the families: the kind, and what all classes of a family read from their own element.

template <class T>
class implement_inode_IInteger : public implement_inode<T, IInteger> {
public:
    [[nodiscard]] node_type get_node_type() const final { return node_type::integer; }
    [[nodiscard]] Representation get_representation() override { return parse_representation(this->xml()); }
    [[nodiscard]] std::string_view get_unit() override { return child_text(this->xml(), "Unit"); }
    [[nodiscard]] std::vector<INode*> get_selected() const final {
        return this->self().resolve_node_list("pSelected");
    }

protected:
    ~implement_inode_IInteger() = default;
};

template <class T>
class implement_inode_IFloat : public implement_inode<T, IFloat> {
public:
    [[nodiscard]] node_type get_node_type() const final { return node_type::floating; }
    [[nodiscard]] FloatRepresentation get_representation() override {
        return parse_float_representation(this->xml());
    }
    [[nodiscard]] std::string_view get_unit() override { return child_text(this->xml(), "Unit"); }
    [[nodiscard]] DisplayNotation get_display_notation() override {
        return parse_display_notation(this->xml());
    }
    [[nodiscard]] std::int64_t get_display_precision() override {
        return parse_display_precision(this->xml());
    }

protected:
    ~implement_inode_IFloat() = default;
};

template <class T>
class implement_inode_IEnumeration : public implement_inode<T, IEnumeration> {
public:
    [[nodiscard]] node_type get_node_type() const final { return node_type::enumeration; }
    [[nodiscard]] std::optional<std::int64_t> get_polling_time() const final {
        return parse_polling_time(this->xml());
    }
    [[nodiscard]] std::vector<INode*> get_selected() const final {
        return this->self().resolve_node_list("pSelected");
    }

protected:
    ~implement_inode_IEnumeration() = default;
};

template <class T>
class implement_inode_boolean : public implement_inode<T, IBoolean> {
public:
    [[nodiscard]] node_type get_node_type() const final { return node_type::boolean; }
    [[nodiscard]] std::vector<INode*> get_selected() const final {
        return this->self().resolve_node_list("pSelected");
    }

protected:
    ~implement_inode_boolean() = default;
};

template <class T>
class implement_inode_command : public implement_inode<T, ICommand> {
public:
    [[nodiscard]] node_type get_node_type() const final { return node_type::command; }
    [[nodiscard]] std::optional<std::int64_t> get_polling_time() const final {
        return parse_polling_time(this->xml());
    }

protected:
    ~implement_inode_command() = default;
};

template <class T>
class implement_inode_IString : public implement_inode<T, IString> {
public:
    [[nodiscard]] node_type get_node_type() const final { return node_type::string; }

protected:
    ~implement_inode_IString() = default;
};

template <class T>
class implement_inode_IRegister : public implement_inode<T, IRegister> {
public:
    [[nodiscard]] node_type get_node_type() const final { return node_type::register_block; }
    [[nodiscard]] std::optional<std::int64_t> get_polling_time() const final {
        return parse_polling_time(this->xml());
    }

protected:
    ~implement_inode_IRegister() = default;
};

template <class T>
class implement_inode_IPort : public implement_inode<T, IPort> {
public:
    [[nodiscard]] node_type get_node_type() const final { return node_type::port; }

protected:
    ~implement_inode_IPort() = default;
};

}  // namespace GenICam
