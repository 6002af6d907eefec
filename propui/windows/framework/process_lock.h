#pragma once

namespace ZELPropUI::Framework {

/// Holds the one lock of the process that the windows need. Not for use before the module is initialised.
class ProcessLock {
public:
    ProcessLock() noexcept;
    ProcessLock(const ProcessLock&) = delete;
    ProcessLock& operator=(const ProcessLock&) = delete;
    ~ProcessLock();
};

}  // namespace ZELPropUI::Framework
