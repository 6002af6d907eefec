#include "genicam/base/dependent_register.h"

namespace GenICam {

void dependent_register::close(std::size_t nodes) {
    owners_.resize(nodes);
    for (const entry& added : entries_) ++owners_[added.owner].count;
    std::uint32_t begin = 0;
    for (stretch& of_owner : owners_) {
        of_owner.begin = begin;
        begin += of_owner.count;
        of_owner.count = 0;
    }
    dependents_.resize(begin);
    for (const stretch& turn : turns_) {
        for (std::uint32_t at = turn.begin; at < turn.begin + turn.count; ++at) put(entries_[at]);
    }
    turns_ = {};
    entries_ = {};
}

void dependent_register::put(const entry& added) {
    stretch& of_owner = owners_[added.owner];
    number* const list = dependents_.data() + of_owner.begin;
    if (of_owner.count != 0 && list[of_owner.count - 1] == added.dependent) return;
    list[of_owner.count++] = added.dependent;
}

gsl::span<const dependent_register::number> dependent_register::operator[](number owner) const noexcept {
    const stretch& of_owner = owners_[owner];
    return {dependents_.data() + of_owner.begin, of_owner.count};
}

}  // namespace GenICam
