#pragma once

#include "genicam/genicam_doc.h"
#include "genicam/idevice_port.h"
#include "genicam/ieval.h"
#include "genicam/inode.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace test_support {

using Bytes = std::vector<std::uint8_t>;

/// One call that reached the device.
struct PortAccess {
    enum class Kind { Read, Write };
    Kind kind = Kind::Read;
    std::uint64_t address = 0;
    std::int64_t length = 0;
    std::uint32_t flags = 0;
    Bytes data;  ///< what was written; empty for a read

    bool operator==(const PortAccess& other) const;
};
void PrintTo(const PortAccess& access, std::ostream* out);

[[nodiscard]] PortAccess ReadOf(std::uint64_t address, std::int64_t length, std::uint32_t flags = 0);
[[nodiscard]] PortAccess WriteOf(std::uint64_t address, Bytes data, std::uint32_t flags = 0);

/// A register memory that records what is asked of it and fails when told to. Bytes never written are 0
/// unless `background` says otherwise.
class RecordingDevice final : public GenICam::IDevicePort {
public:
    std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                         std::uint32_t flags) override;
    std::error_code write(std::uint64_t address, const void* buffer, std::int64_t length,
                          std::uint32_t flags) override;

    void Put(std::uint64_t address, const Bytes& bytes);
    [[nodiscard]] Bytes At(std::uint64_t address, std::size_t count) const;

    /// The n-th access from now (1 is the next one) fails and changes nothing; 0 cancels.
    void FailAccess(std::size_t n, std::error_code failure);
    /// What was asked since the last time, failed accesses included.
    [[nodiscard]] std::vector<PortAccess> TakeAccesses();
    void ForgetAccesses() { accesses_.clear(); }
    /// Forgets what was written and any failure to come.
    void Clear() {
        memory_.clear();
        accesses_until_failure_ = 0;
    }

    /// Runs before each access; a failure that it gives is the outcome.
    std::function<std::error_code(const PortAccess&)> before_access;
    std::function<std::uint8_t(std::uint64_t address)> background;
    bool records = true;

private:
    [[nodiscard]] std::error_code Begin(PortAccess access);

    std::map<std::uint64_t, std::uint8_t> memory_;
    std::vector<PortAccess> accesses_;
    std::size_t accesses_until_failure_ = 0;
    std::error_code failure_;
};

/// Raises the engine's log to level 2 and keeps what it prints, until it is destroyed. One at a time.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    /// The messages since the last time.
    [[nodiscard]] std::vector<std::string> Take();
};

/// A description loaded from a text, with a `RecordingDevice` bound to its port "Device". The log is captured
/// from the load on.
class TestDocument {
public:
    /// Elements as they stand between the tags of the root. A `Port` named "Device" is added.
    explicit TestDocument(std::string_view elements);

    struct WholeText {
        std::string_view text;
    };
    /// A complete description. Its port is bound if it has one.
    explicit TestDocument(WholeText whole, GenICam::load_options options = {});

    [[nodiscard]] GenICam::IGenICamDoc& operator*() const { return *doc_; }
    GenICam::IGenICamDoc* operator->() const { return doc_.get(); }
    [[nodiscard]] bool IsLoaded() const { return doc_ != nullptr; }

    /// The node of that name and kind. A test that asks for another one ends with an exception.
    [[nodiscard]] GenICam::INode& Node(std::string_view name) const;
    [[nodiscard]] GenICam::IInteger& Integer(std::string_view name) const;
    [[nodiscard]] GenICam::IFloat& Float(std::string_view name) const;
    [[nodiscard]] GenICam::IBoolean& Boolean(std::string_view name) const;
    [[nodiscard]] GenICam::ICommand& Command(std::string_view name) const;
    [[nodiscard]] GenICam::IString& String(std::string_view name) const;
    [[nodiscard]] GenICam::IEnumeration& Enumeration(std::string_view name) const;
    [[nodiscard]] GenICam::ICategory& Category(std::string_view name) const;
    [[nodiscard]] GenICam::IRegister& Register(std::string_view name) const;
    [[nodiscard]] GenICam::IPort& Port(std::string_view name = "Device") const;

    RecordingDevice device;
    LogCapture log;
    /// What the load printed.
    std::vector<std::string> load_messages;

private:
    [[nodiscard]] GenICam::INode& NodeOfType(std::string_view name, GenICam::node_type type) const;

    std::unique_ptr<GenICam::IGenICamDoc> doc_;
};

/// How often a node told of a change since this object was made.
class ChangeCounter {
public:
    explicit ChangeCounter(GenICam::INode& node);
    ~ChangeCounter();
    ChangeCounter(const ChangeCounter&) = delete;
    ChangeCounter& operator=(const ChangeCounter&) = delete;

    [[nodiscard]] int Count() const { return count_; }

private:
    GenICam::INode& node_;
    int count_ = 0;
};

}  // namespace test_support
