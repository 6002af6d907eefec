#pragma once

#include <windows.h>

namespace page_test {

/// A call that a module makes, led to another function for as long as this lives.
class RedirectedImport {
public:
    RedirectedImport(HMODULE module, const char* name, void* replacement);
    RedirectedImport(const RedirectedImport&) = delete;
    RedirectedImport& operator=(const RedirectedImport&) = delete;
    ~RedirectedImport();

    /// The function that the module called before; null where it imports none of that name.
    [[nodiscard]] void* Before() const { return before_; }

private:
    void* Put(void* function) const;

    void** slot_;
    void* before_;
};

}  // namespace page_test
