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
    [[nodiscard]] std::error_code test_locked(bool& value, std::uint32_t flags);
    [[nodiscard]] bool is_locked_by_link() const;
    [[nodiscard]] std::string_view find_display_name() const;
    [[nodiscard]] AccessMode find_access_mode();
    void add_callback(INode::callback fn);
    void clear_callbacks();
    [[nodiscard]] std::optional<std::uint64_t> find_event_id() const;

    [[nodiscard]] expansion_budget& formula_expansion() const { return services_->formula_expansion(); }
    [[nodiscard]] formula_store& formulas() const { return services_->formulas(); }
    [[nodiscard]] pugi::xml_node xml() const noexcept { return xml_; }
    /// For messages about the node, or about one of its children.
    [[nodiscard]] message_origin origin() const noexcept { return xml_; }
    [[nodiscard]] message_origin origin(child which) const noexcept { return {xml_, which}; }
    [[nodiscard]] const child_set& children() const noexcept { return children_; }
    /// Whether the element names nodes that decide its access or invalidate it.
    [[nodiscard]] bool has_common_links() const noexcept {
        return children_.has_any(child::pIsImplemented, child::pIsAvailable, child::pIsLocked,
                                 child::pInvalidator);
    }

private:
    friend class node_base_impl_value;
    friend class dependent_lists;
    friend class dependent_register;

    template <class Mode>
    [[nodiscard]] std::error_code check_access_by(bool is_write, std::uint32_t flags, Mode mode) const {
        if ((flags & access_flags::skip_access_check) != 0) return {};
        if (is_implemented_node_ != nullptr || is_available_node_ != nullptr) {
            if (const std::error_code refused = check_links(flags)) return refused;
        }
        const AccessMode refusing = is_write ? AccessMode::RO : AccessMode::WO;
        if (mode() == refusing) return make_error_code(access_denied);
        return {};
    }
    [[nodiscard]] std::error_code check_links(std::uint32_t flags) const;
    [[nodiscard]] INode* resolve_common_link(IGenICamDoc* doc, const described_element& xml, child name);
    void resolve_invalidators(IGenICamDoc* doc, const described_element& xml);

    pugi::xml_node xml_;
    std::string_view name_;
    document_services* services_;
    INode* is_implemented_node_ = nullptr;
    INode* is_available_node_ = nullptr;
    INode* is_locked_node_ = nullptr;
    AccessMode imposed_access_mode_;
    bool has_callbacks_ = false;
    bool is_covered_ = false;  // valid with the closing mark: its dependents stand in that list already
    bool is_closed_ = false;   // its list of dependents, if it has one, is complete
    // Bears the mark of the list that this node was last seen in while lists are closed: membership is a
    // mark, not a search.
    std::uint32_t closing_mark_ = 0;
    std::uint32_t shared_list_ = 0;    // its list of dependents where others share it, else 0
    std::uint32_t registered_as_ = 0;  // its number in the document's register of dependents, or 0
    child_set children_;

protected:
    [[nodiscard]] document_services& services() const noexcept { return *services_; }
    ~node_base_data() = default;
};

}  // namespace GenICam
