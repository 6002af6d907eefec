#pragma once

#include "platform/com.h"

namespace test_support {

/// An object that lives where the test puts it: its last `Release` ends nothing.
template <class Interface>
class OnStack : public Interface {
public:
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }

    int references = 0;
};

}  // namespace test_support
