#pragma once

#include "formula/formula_program.h"
#include "formula/formula_specialiser.h"
#include "formula/math_parser.h"
#include "formula/source_kinds.h"
#include "formula/variable_table.h"
#include "genicam/core/block_memory.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>

namespace GenICam {

class formula_store;

/// A formula of a document. Of the formulas of a camera few are ever computed: each is read and made ready
/// when it is asked for the first time. The memory for that was taken while the description was loaded.
class kept_formula {
public:
    /// Empty for a formula that is refused.
    [[nodiscard]] const formula_view& program() {
        if (!is_read_) read_late();
        return program_;
    }
    /// Whether the text is no formula, or has names that nobody knows.
    [[nodiscard]] bool is_refused() {
        static_cast<void>(program());
        return is_refused_;
    }
    /// The same of a formula that was read already; false of others.
    [[nodiscard]] bool was_refused() const noexcept { return is_refused_; }

private:
    friend class formula_store;

    void read_late();

    std::string_view text_;
    name_scope names_;
    source_kinds kinds_;
    bool is_read_ = false;
    bool is_refused_ = false;
    formula_view program_;
    formula_store* store_ = nullptr;
    void* room_ = nullptr;
    std::size_t room_size_ = 0;
};

/// The formulas of a document. Many formulas of real descriptions are copies of one another: those whose
/// names stand for the same are kept once.
class formula_store {
public:
    formula_store() = default;
    formula_store(const formula_store&) = delete;
    formula_store& operator=(const formula_store&) = delete;

    /// Keeps a formula, whose text outlives the store, with the names of its node. It is read now where the
    /// log wants to know what is wrong with it, and where it uses what lives no longer than the names do.
    [[nodiscard]] kept_formula& keep(std::string_view text, const variable_table& names,
                                     const source_kinds& kinds);
    /// No more formulas come. From here on reading one needs no memory from the heap.
    void close();

private:
    friend class kept_formula;

    [[nodiscard]] kept_formula* find(std::string_view text, const name_scope& names,
                                     const source_kinds& kinds) const;
    [[nodiscard]] kept_formula& add(std::string_view text, const source_kinds& kinds);
    [[nodiscard]] name_scope copy(const name_scope& names);
    void take_room(kept_formula& formula, std::size_t size);
    void read(kept_formula& formula, name_resolver names);
    void put(kept_formula& formula, const formula_tree& tree);
    [[nodiscard]] static gsl::span<const formula_instruction> put_instructions(const formula_tree& tree,
                                                                               void* room);

    /// What reading takes, one formula after the other.
    struct tools {
        math_parser parser;
        formula_specialiser specialiser;
    };

    block_memory memory_;
    std::unique_ptr<tools> tools_;
    formula_size largest_;
    std::unordered_multimap<std::string_view, kept_formula*> known_;  // while the description is loaded
};

}  // namespace GenICam
