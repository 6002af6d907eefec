#pragma once

#include "tests/adapter/scripted_camera.h"

#include <cstddef>
#include <string>
#include <vector>

namespace adapter_test {

/// One operation of an item and the calls of the driver that it made.
struct WalkStep {
    std::string element;
    const char* operation;
    HRESULT result;
    std::size_t first_call;  ///< index of the first call made in it
    std::size_t end_call;
};

/// Does everything that can be done to an element, whatever it is: asks, writes back and writes elsewhere.
void WalkElement(CZELItemDataBase& item, InterfaceKey key, const ScriptedFilter& filter,
                 std::vector<WalkStep>& steps);

/// The same for all elements of all items of an adapter, each item made and let go.
[[nodiscard]] std::vector<WalkStep> WalkTable(GenICamAdapterDevice& adapter, ScriptedFilter& filter);

}  // namespace adapter_test
