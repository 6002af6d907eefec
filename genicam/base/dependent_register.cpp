#include "genicam/base/dependent_register.h"

#include "genicam/base/node_base.h"

namespace GenICam {

void dependent_register::add(node_base_data& owner, IEval* dependent) {
    if (owner.registered_as_ == 0) {
        owners_.emplace_back();
        owner.registered_as_ = static_cast<std::uint32_t>(owners_.size());
    }
    ++owners_[owner.registered_as_ - 1].count;
    entries_.push_back({owner.registered_as_ - 1, dependent});
}

void dependent_register::close() {
    std::uint32_t begin = 0;
    for (stretch& of_owner : owners_) {
        of_owner.begin = begin;
        begin += of_owner.count;
        of_owner.count = 0;
    }
    dependents_.resize(begin);
    for (const entry& added : entries_) {
        stretch& of_owner = owners_[added.owner];
        IEval** const list = dependents_.data() + of_owner.begin;
        if (of_owner.count != 0 && list[of_owner.count - 1] == added.dependent) continue;
        list[of_owner.count++] = added.dependent;
    }
    entries_ = {};
}

gsl::span<IEval* const> dependent_register::operator[](const node_base_data& owner) const noexcept {
    if (owner.registered_as_ == 0 || owners_.empty()) return {};
    const stretch& of_owner = owners_[owner.registered_as_ - 1];
    return {dependents_.data() + of_owner.begin, of_owner.count};
}

}  // namespace GenICam
