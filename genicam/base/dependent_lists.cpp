#include "genicam/base/dependent_lists.h"

namespace GenICam {

dependent_lists::number dependent_lists::add_node(node_base_data* node) {
    others_.push_back(node);
    return static_cast<number>(node_count() - 1);
}

kept_list dependent_lists::keep(gsl::span<const number> list) {
    const kept_list kept = {static_cast<std::uint32_t>(packed_.end()),
                            static_cast<std::uint32_t>(list.size())};
    packed_.append(list);
    return kept;
}

kept_list dependent_lists::keep_shared(shared_lists::index list) const noexcept {
    return {first_shared + list, static_cast<std::uint32_t>(shared_[list].size())};
}

void dependent_lists::close() {
    packed_.close();
    others_.shrink_to_fit();
}

gsl::span<IEval* const> dependent_lists::spread(kept_list list) {
    spread_.clear();
    for_each(list, [this](node_base_data* node) { spread_.push_back(node); });
    return {spread_.data(), spread_.size()};
}

}  // namespace GenICam
