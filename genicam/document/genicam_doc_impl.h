#pragma once

#include "formula/expansion_budget.h"
#include "formula/formula_store.h"
#include "genicam/base/dependent_closing.h"
#include "genicam/base/dependent_lists.h"
#include "genicam/base/document_services.h"
#include "genicam/base/node_base.h"
#include "genicam/document/document_allocator.h"
#include "genicam/document/name_index.h"
#include "genicam/genicam_doc.h"

#include <memory>
#include <unordered_map>
#include <vector>

#include <pugixml.hpp>

namespace GenICam {

struct taken_element;

class genicam_doc final : public IGenICamDoc, public document_services {
public:
    explicit genicam_doc(load_options options) : options_(options) {}
    genicam_doc(const genicam_doc&) = delete;
    genicam_doc& operator=(const genicam_doc&) = delete;

    /// False, and a message, for malformed XML, and where too many nodes depend on too many others.
    [[nodiscard]] bool load(const char* data, std::uint64_t size);

    INode* find_port(std::string_view name) override;
    INode* find_node(std::string_view name) override;
    void for_each_node(std::function<void(INode*)> fn) override;
    void for_each_streamable_node(std::function<void(INode*)> fn) override;
    std::string_view get_model_name() override;
    std::string_view get_vendor_name() override;
    std::string_view get_tooltip() override;
    StandardNameSpace get_standard_name_space() override;
    std::uint64_t get_major_version() override;
    std::uint64_t get_minor_version() override;
    std::uint64_t get_subminor_version() override;
    std::vector<INode*> get_streamable_nodes() override { return streamable_nodes_; }
    std::string dump(std::int32_t mode) override;

    void add_callback(INode* node, std::function<void(INode*)>&& callback) override;
    void clear_callbacks(INode* node) override;
    void fire_callbacks(INode* node) override;
    void add_dependent(IEval* owner, IEval* dependent) override;
    gsl::span<IEval* const> get_dependents(IEval* owner) override;
    dependent_lists& dependents() override { return dependents_; }
    kept_list close_dependents(std::uint32_t node) override { return loading_->closing.close(node); }
    void* take_room(std::uint64_t size) override { return allocator_.allocate(size, alignof(void*)); }
    expansion_budget& formula_expansion() override { return formula_expansion_; }
    bool takes_dependents() const override;
    formula_store& formulas() override { return formulas_; }

    /// Where the nodes stand, with what was reserved for them and what they took of it.
    [[nodiscard]] const document_allocator& allocator() const noexcept { return allocator_; }

private:
    /// What is known while the description is loaded.
    struct loading {
        loading(dependent_lists& lists, std::size_t nodes) : index(nodes), closing(lists, nodes) {}

        std::vector<node_base_data*> described;  // the nodes in the order of the description
        name_index index;                        // of their positions
        bool is_indexed = true;
        dependent_closing closing;
    };
    struct node_callbacks {
        std::vector<std::function<void(INode*)>> functions;
        std::uint64_t clearings = 0;  // tells a change under way that what it began with is gone
    };

    [[nodiscard]] pugi::xml_node root() const { return xml_.first_child(); }
    [[nodiscard]] std::uint64_t get_version(const char* attribute) const;
    [[nodiscard]] std::vector<node_base_data*>::const_iterator find_first(std::string_view name) const;
    [[nodiscard]] bool build_nodes();
    void make_nodes(const std::vector<taken_element>& taken);
    void resolve_nodes(const std::vector<taken_element>& taken);
    [[nodiscard]] std::uint32_t number_of(IEval* node);
    [[nodiscard]] bool close_lists();
    [[nodiscard]] std::string list_nodes() const;

    static constexpr std::size_t first_buckets = 8;

    std::vector<node_base_data*> nodes_;  // by name
    std::vector<node_base_data*> ports_;  // of these
    std::vector<INode*> streamable_nodes_;
    std::vector<char> xml_buffer_;
    load_options options_;
    pugi::xml_document xml_;
    document_allocator allocator_;
    std::unordered_map<INode*, node_callbacks> callbacks_{first_buckets};
    dependent_lists dependents_;
    std::unique_ptr<loading> loading_;  // null from the end of the load on
    expansion_budget formula_expansion_;
    formula_store formulas_;
    INode* default_port_ = nullptr;  // what nearly every register asks for
};

}  // namespace GenICam
