#pragma once

#include "formula/expansion_budget.h"
#include "formula/formula_store.h"
#include "genicam/base/dependent_lists.h"
#include "genicam/base/dependent_register.h"
#include "genicam/base/document_services.h"
#include "genicam/document/document_allocator.h"
#include "genicam/document/name_index.h"
#include "genicam/genicam_doc.h"

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

    void add_callback(INode* node, std::function<void(INode*)> callback) override;
    void clear_callbacks(INode* node) override;
    void fire_callbacks(INode* node) override;
    void add_dependent(IEval* owner, IEval* dependent) override;
    gsl::span<IEval* const> get_dependents(IEval* owner) override;
    dependent_lists& shared_lists() override { return shared_lists_; }
    expansion_budget& formula_expansion() override { return formula_expansion_; }
    bool takes_dependents() const override;
    formula_store& formulas() override { return formulas_; }

private:
    // The name stands beside the node, so that searching touches no node.
    struct named_node {
        std::string_view name;
        INode* node;
    };
    /// An element's place in the description, and what its name begins with.
    struct name_order {
        std::uint64_t prefix;
        std::size_t place;
    };
    struct node_callbacks {
        std::vector<std::function<void(INode*)>> functions;
        std::uint64_t clearings = 0;  // tells a change under way that what it began with is gone
    };

    [[nodiscard]] pugi::xml_node root() const { return xml_.first_child(); }
    [[nodiscard]] std::uint64_t get_version(const char* attribute) const;
    [[nodiscard]] bool fill(name_index& index) const;
    [[nodiscard]] std::vector<named_node>::const_iterator find_first(std::string_view name) const;
    [[nodiscard]] bool build_nodes();
    [[nodiscard]] static std::vector<name_order> sort_names(const std::vector<taken_element>& taken);
    [[nodiscard]] bool resolve_nodes(const std::vector<taken_element>& taken,
                                     const std::vector<name_order>& order);
    [[nodiscard]] bool close_dependents();
    [[nodiscard]] std::string list_nodes() const;

    static constexpr std::size_t first_buckets = 8;

    std::vector<named_node> nodes_;
    std::vector<INode*> streamable_nodes_;
    std::vector<char> xml_buffer_;
    load_options options_;
    pugi::xml_document xml_;
    document_allocator allocator_;
    std::unordered_map<INode*, node_callbacks> callbacks_{first_buckets};
    dependent_register dependents_;  // only while loading
    dependent_lists shared_lists_;
    expansion_budget formula_expansion_;
    formula_store formulas_;
    const name_index* index_ = nullptr;  // only while loading
    bool is_loading_ = true;
    INode* default_port_ = nullptr;  // what nearly every register asks for
};

}  // namespace GenICam
