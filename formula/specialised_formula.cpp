#include "formula/specialised_formula.h"

#include <memory>
#include <new>

namespace GenICam {
namespace {

// Gives where the copies begin, and moves the room behind them.
template <class T>
const T* copy_into(unsigned char*& room, gsl::span<const T> from) noexcept {
    auto* copies = reinterpret_cast<T*>(room);
    std::uninitialized_copy(from.data(), from.data() + from.size(), copies);
    room += from.size_bytes();
    return copies;
}

}  // namespace

std::size_t specialised_formula::size_of(const parts& made) noexcept {
    return sizeof(specialised_formula) + made.steps.size_bytes() + made.variables.size_bytes() +
           made.questions.size_bytes();
}

// The parts stand in the order of their alignment.
specialised_formula* specialised_formula::make(void* room, const parts& made) noexcept {
    static_assert(alignof(specialised_formula) >= alignof(formula_step));
    static_assert(alignof(formula_step) >= alignof(variable) && alignof(variable) >= alignof(std::uint16_t));
    auto* form = ::new (room) specialised_formula();
    auto* behind = reinterpret_cast<unsigned char*>(form + 1);
    form->steps_ = copy_into(behind, made.steps);
    form->variables_ = copy_into(behind, made.variables);
    form->questions_ = copy_into(behind, made.questions);
    form->variable_count_ = static_cast<std::uint32_t>(made.variables.size());
    form->question_count_ = static_cast<std::uint32_t>(made.questions.size());
    form->frame_size_ = made.frame_size;
    return form;
}

}  // namespace GenICam
