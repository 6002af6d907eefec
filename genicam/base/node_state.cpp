#include "genicam/base/node_state.h"

namespace GenICam {

void node_base_impl_value::invalidate_dependents() {
    if (list_.length == 0) return;
    services().dependents().for_each(list_, [](node_base_data* dependent) { dependent->invalidate(); });
}

}  // namespace GenICam
