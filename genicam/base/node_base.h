#pragma once

#include "genicam/base/document_services.h"
#include "genicam/core/children.h"
#include "genicam/core/message.h"
#include "genicam/ieval.h"
#include "genicam/inode.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <pugixml.hpp>

namespace GenICam {

/// The nodes that decide whether a node can be used; null for those that its element does not name.
struct access_links {
    INode* is_implemented = nullptr;
    INode* is_available = nullptr;
    INode* is_locked = nullptr;
};

/// Whether the node of an element has such links. Most have none.
[[nodiscard]] inline bool has_access_links(const described_element& xml) noexcept {
    return xml.present().has_any(child::pIsImplemented, child::pIsAvailable, child::pIsLocked);
}

/// What all nodes share. Common elements that are rarely asked for are read from the XML at each request;
/// only what decides every access is kept.
class node_base_data : public IEval {
public:
    node_base_data(document_services* services, const described_element& xml);
    node_base_data(const node_base_data&) = delete;
    node_base_data& operator=(const node_base_data&) = delete;

    void resolve_references(IGenICamDoc* doc) final;
    /// The same where the children of the element are known already.
    void resolve_described(IGenICamDoc* doc, const described_element& xml);
    void invalidate() override;
    [[nodiscard]] std::string describe() override { return {}; }
    void _resolve_references(IGenICamDoc*, const described_element&) override {}
    [[nodiscard]] INode* get_access_source() override { return nullptr; }

    /// The first thing that a value operation does. Order: implemented, available, access mode.
    [[nodiscard]] std::error_code check_access(bool is_write, std::uint32_t flags) {
        return check_access_by(is_write, flags, [this] { return find_access_mode(); });
    }
    /// The same for classes without an access source, which need not be asked for it.
    [[nodiscard]] std::error_code check_own_access(bool is_write, std::uint32_t flags) const {
        return check_access_by(is_write, flags, [this] { return imposed_access_mode_; });
    }
    /// Narrows an access mode that is RW so far; an imposed restriction is never turned around.
    void set_actual_access_mode(AccessMode mode);
    /// The node named by the text of a child, or null; logs a name that is unknown.
    [[nodiscard]] INode* resolve_node(const char* element_name) const;
    /// The nodes named by all children of that name, in document order; logs and skips unknown names.
    [[nodiscard]] std::vector<INode*> resolve_node_list(const char* element_name) const;
    /// Calls the node's callbacks, if it has any.
    void notify_changed() {
        if (has_callbacks_) services_->fire_callbacks(get_node());
    }

    // The operations of `INode` that all classes share.
    [[nodiscard]] std::string_view find_name() const noexcept { return name_; }
    [[nodiscard]] std::vector<INode::extension> find_extensions() const;
    [[nodiscard]] std::string_view find_extension(std::string_view key) const;
    [[nodiscard]] std::error_code test_implemented(bool& value, std::uint32_t flags) const;
    [[nodiscard]] std::error_code test_available(bool& value, std::uint32_t flags) const;
    /// What such a test tells; true also where it fails.
    [[nodiscard]] bool seems(std::error_code (node_base_data::*test)(bool&, std::uint32_t) const) const;
    [[nodiscard]] std::error_code test_locked(bool& value, std::uint32_t flags);
    [[nodiscard]] bool is_locked_by_link() const;
    [[nodiscard]] std::string_view find_display_name() const;
    [[nodiscard]] AccessMode find_access_mode();
    void add_callback(INode::callback&& fn);
    void clear_callbacks();
    [[nodiscard]] std::optional<std::uint64_t> find_event_id() const;

    [[nodiscard]] expansion_budget& formula_expansion() const { return services_->formula_expansion(); }
    [[nodiscard]] formula_store& formulas() const { return services_->formulas(); }
    /// Room in the document's arena that was reserved for this node beside the node itself.
    [[nodiscard]] void* take_room(std::uint64_t size) const { return services_->take_room(size); }
    /// The node's index among those that depend on one another; `no_number` for none.
    static constexpr std::uint32_t no_number = 0xFFFFFFFF;
    [[nodiscard]] std::uint32_t number() const noexcept { return number_; }
    void set_number(std::uint32_t number) noexcept { number_ = number; }
    [[nodiscard]] pugi::xml_node xml() const noexcept { return xml_; }
    /// For messages about the node, or about one of its children.
    [[nodiscard]] message_origin origin() const noexcept { return xml_; }
    [[nodiscard]] message_origin origin(child which) const noexcept { return {xml_, which}; }
    /// Whether the element has a `Streamable` child.
    [[nodiscard]] bool states_streamable() const noexcept { return has_streamable_; }

private:
    template <class Mode>
    [[nodiscard]] std::error_code check_access_by(bool is_write, std::uint32_t flags, Mode mode) const {
        if ((flags & access_flags::skip_access_check) != 0) return {};
        if (links_ != nullptr) {
            if (const std::error_code refused = check_links(flags)) return refused;
        }
        const AccessMode refusing = is_write ? AccessMode::RO : AccessMode::WO;
        if (mode() == refusing) return make_error_code(access_denied);
        return {};
    }
    [[nodiscard]] std::error_code check_links(std::uint32_t flags) const;
    void resolve_access_links(IGenICamDoc* doc, const described_element& xml);
    [[nodiscard]] INode* resolve_access_link(IGenICamDoc* doc, const described_element& xml, child name);
    void resolve_invalidators(IGenICamDoc* doc, const described_element& xml);
    [[nodiscard]] INode* find_link(INode* access_links::*which) const noexcept {
        return links_ != nullptr ? links_->*which : nullptr;
    }

    pugi::xml_node xml_;
    std::string_view name_;
    document_services* services_;
    access_links* links_ = nullptr;  // null where the element names none
    std::uint32_t number_ = no_number;
    AccessMode imposed_access_mode_;
    bool has_callbacks_ : 1;
    // Of the children that are asked for again, those that the element has.
    bool has_extension_ : 1;
    bool has_imposed_mode_ : 1;
    bool has_streamable_ : 1;

protected:
    [[nodiscard]] document_services& services() const noexcept { return *services_; }
    ~node_base_data() = default;
};

}  // namespace GenICam
