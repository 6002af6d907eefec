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
/// when it is asked for the first time, and again when others took its room meanwhile.
class kept_formula {
public:
    /// Empty for a formula that is refused. Stays until another formula is asked for.
    [[nodiscard]] const formula_view& program() {
        if (!is_ready()) read_late();
        return program_;
    }
    /// Whether there is nothing to compute.
    [[nodiscard]] bool is_empty() {
        if (!is_read_) read_late();
        return is_empty_;
    }
    /// Whether the text is no formula, or has names that nobody knows.
    [[nodiscard]] bool is_refused() {
        if (!is_read_) read_late();
        return is_refused_;
    }
    /// The same of a formula that was read already; false of others.
    [[nodiscard]] bool was_refused() const noexcept { return is_refused_; }

private:
    friend class formula_store;

    [[nodiscard]] inline bool is_ready() const noexcept;
    void read_late();

    std::string_view text_;
    name_scope names_;
    formula_store* store_ = nullptr;
    formula_view program_;
    std::uint64_t round_ = 0;  // of the store's room, in which the program was put there
    source_kinds kinds_;
    bool is_lasting_ = false;  // the program has memory of its own, or needs none
    bool is_read_ = false;
    bool is_refused_ = false;
    bool is_empty_ = false;
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
    /// What is new each time that programs are forgotten.
    [[nodiscard]] std::uint64_t round() const noexcept { return room_.round; }

private:
    friend class kept_formula;

    static constexpr std::size_t largest_block = 4096;

    [[nodiscard]] kept_formula* find(std::string_view text, const name_scope& names,
                                     const source_kinds& kinds) const;
    [[nodiscard]] kept_formula& add(std::string_view text, const source_kinds& kinds);
    [[nodiscard]] name_scope copy(const name_scope& names);
    void read(kept_formula& formula, name_resolver names, bool is_lasting, bool is_told = true);
    void put(kept_formula& formula, const formula_tree& tree, bool is_lasting);
    [[nodiscard]] unsigned char* take_room(std::size_t size) noexcept;
    [[nodiscard]] static gsl::span<const formula_instruction> put_instructions(const formula_tree& tree,
                                                                               void* room);

    /// What reading takes, one formula after the other.
    struct tools {
        math_parser parser;
        formula_specialiser specialiser;
    };

    /// The room of all programs that are read late. When it is full a new round begins: the programs of the
    /// one before are forgotten.
    struct shared_room {
        std::unique_ptr<unsigned char[]> bytes;
        std::size_t size = 0;
        std::size_t used = 0;
        std::uint64_t round = 1;
    };

    block_memory memory_{largest_block};
    std::unique_ptr<tools> tools_;
    formula_size largest_;
    std::size_t wanted_room_ = 0;  // for all programs
    std::size_t least_room_ = 0;   // for the largest one
    shared_room room_;
    name_scope last_names_;
    std::unordered_multimap<std::string_view, kept_formula*> known_;  // while the description is loaded
};

inline bool kept_formula::is_ready() const noexcept { return is_lasting_ || round_ == store_->round(); }

}  // namespace GenICam
