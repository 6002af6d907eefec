#pragma once

#include "genicam/core/error.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <gsl/span>

namespace GenICam {

class IDevicePort;
class IEval;
class enum_entry_type;

enum class node_type : std::int32_t {
    integer = 0,
    floating = 1,
    enumeration = 2,
    boolean = 3,
    string = 4,
    command = 5,
    category = 6,
    register_block = 7,
    port = 8,
    enum_entry = 9,
};

enum class AccessMode : std::uint8_t { RW = 0, RO = 1, WO = 2 };
enum class Visibility : std::uint8_t { Beginner = 0, Expert = 1, Guru = 2, Invisible = 3 };
enum class NameSpace : std::uint8_t { Custom = 0, Standard = 1 };
/// The words "-1", "0" and "+1".
enum class MergePriority : std::uint8_t { low = 0, normal = 1, high = 2 };
enum class Representation : std::uint8_t {
    Linear = 0,
    Logarithmic = 1,
    Boolean = 2,
    PureNumber = 3,
    HexNumber = 4,
    IPV4Address = 5,
    MACAddress = 6,
};
enum class FloatRepresentation : std::uint8_t { Linear = 0, Logarithmic = 1, PureNumber = 2 };
enum class DisplayNotation : std::uint8_t { Automatic = 0, Fixed = 1, Scientific = 2 };
enum class Cachable : std::uint8_t { WriteThrough = 0, WriteAround = 1, NoCache = 2 };
enum class Endianess : std::uint8_t { LittleEndian = 0, BigEndian = 1 };
enum class Sign : std::uint8_t { Signed = 0, Unsigned = 1 };
enum class StandardNameSpace : std::uint8_t {
    None = 0,
    IIDC = 1,
    GEV = 2,
    CL = 3,
    U3V = 4,
    CXP = 5,
    CLHS = 6
};

/// Bits of the flags that every value operation takes and hands on through links. Callers outside the engine
/// pass 0.
namespace access_flags {
constexpr std::uint32_t none = 0;
constexpr std::uint32_t cache_only = 0x100;        ///< the request must not reach the device
constexpr std::uint32_t bypass_cache = 0x200;      ///< a read goes to the device whatever is cached
constexpr std::uint32_t skip_range_check = 0x400;  ///< `set_val` takes any value
constexpr std::uint32_t skip_access_check =
    0x800;  ///< neither availability nor access mode refuses the operation
}  // namespace access_flags

/// The outside face of a feature. Views and pointers that it gives live as long as the document. Not
/// thread-safe.
///
/// Of each pair of overloads, the one with an error code reports a failure of the links behind it and the
/// plain one swallows it.
class INode {
public:
    using callback = std::function<void(INode*)>;
    using extension = std::pair<std::string_view, std::string_view>;

    [[nodiscard]] virtual node_type get_node_type() const = 0;
    [[nodiscard]] virtual std::string_view get_name() const = 0;
    /// The children of `Extension`, key and text, in document order.
    [[nodiscard]] virtual std::vector<extension> get_extensions() const = 0;
    /// The text of one child of `Extension`; empty when absent.
    [[nodiscard]] virtual std::string_view get_extension(std::string_view key) const = 0;
    [[nodiscard]] virtual std::error_code is_implemented(bool& value, std::uint32_t flags) = 0;
    /// True also when the evaluation fails.
    [[nodiscard]] virtual bool is_implemented() = 0;
    [[nodiscard]] virtual std::error_code is_available(bool& value, std::uint32_t flags) = 0;
    /// True also when the evaluation fails.
    [[nodiscard]] virtual bool is_available() = 0;
    /// A node that can only be read counts as locked.
    [[nodiscard]] virtual std::error_code is_locked(bool& value, std::uint32_t flags) = 0;
    /// The `pIsLocked` link alone; false also when its evaluation fails.
    [[nodiscard]] virtual bool is_locked() = 0;
    [[nodiscard]] virtual Visibility get_visibility() const = 0;
    /// The `DisplayName`, or the name where there is none.
    [[nodiscard]] virtual std::string_view get_display_name() const = 0;
    [[nodiscard]] virtual std::string_view get_tooltip() const = 0;
    [[nodiscard]] virtual std::string_view get_description() const = 0;
    [[nodiscard]] virtual std::string_view get_docu_url() const = 0;
    [[nodiscard]] virtual bool is_deprecated() const = 0;
    [[nodiscard]] virtual bool get_streamable() const = 0;
    /// The imposed access mode, or that of the node behind the value link.
    [[nodiscard]] virtual AccessMode get_access_mode() = 0;
    /// The callback runs inside each write that changes this node, on the thread of that write. Always
    /// succeeds.
    virtual std::error_code register_callback(callback fn) = 0;
    virtual void clear_callbacks() = 0;
    [[nodiscard]] virtual IEval* get_eval() = 0;
    [[nodiscard]] virtual std::optional<std::uint64_t> get_event_id() const = 0;
    [[nodiscard]] virtual INode* get_alias() const = 0;
    [[nodiscard]] virtual INode* get_cast_alias() const = 0;
    [[nodiscard]] virtual INode* get_block_polling() const = 0;
    [[nodiscard]] virtual NameSpace get_name_space() const = 0;
    [[nodiscard]] virtual MergePriority get_merge_priority() const = 0;
    [[nodiscard]] virtual std::optional<bool> get_expose_static() const = 0;

protected:
    ~INode() = default;
};

class IInteger : public INode {
public:
    [[nodiscard]] virtual Representation get_representation() = 0;
    [[nodiscard]] virtual std::string_view get_unit() = 0;
    [[nodiscard]] virtual std::vector<INode*> get_selected() const = 0;
    [[nodiscard]] virtual std::error_code set_val(std::int64_t value, std::uint32_t flags) = 0;
    [[nodiscard]] virtual result<std::int64_t> get_val(std::uint32_t flags) = 0;
    [[nodiscard]] virtual result<std::int64_t> get_min(std::uint32_t flags) = 0;
    [[nodiscard]] virtual result<std::int64_t> get_max(std::uint32_t flags) = 0;
    [[nodiscard]] virtual result<std::int64_t> get_inc(std::uint32_t flags) = 0;
    [[nodiscard]] virtual result<std::int64_t> get_default(std::uint32_t flags) = 0;

protected:
    ~IInteger() = default;
};

class IFloat : public INode {
public:
    [[nodiscard]] virtual FloatRepresentation get_representation() = 0;
    [[nodiscard]] virtual std::string_view get_unit() = 0;
    [[nodiscard]] virtual DisplayNotation get_display_notation() = 0;
    [[nodiscard]] virtual std::int64_t get_display_precision() = 0;
    [[nodiscard]] virtual std::error_code set_val(double value, std::uint32_t flags) = 0;
    [[nodiscard]] virtual result<double> get_val(std::uint32_t flags) = 0;
    [[nodiscard]] virtual result<double> get_min(std::uint32_t flags) = 0;
    [[nodiscard]] virtual result<double> get_max(std::uint32_t flags) = 0;
    [[nodiscard]] virtual result<double> get_default(std::uint32_t flags) = 0;
    [[nodiscard]] virtual result<double> get_inc(std::uint32_t flags) = 0;

protected:
    ~IFloat() = default;
};

class IBoolean : public INode {
public:
    [[nodiscard]] virtual std::vector<INode*> get_selected() const = 0;
    [[nodiscard]] virtual std::error_code set_val(bool value, std::uint32_t flags) = 0;
    [[nodiscard]] virtual result<bool> get_val(std::uint32_t flags) = 0;
    [[nodiscard]] virtual result<bool> get_default(std::uint32_t flags) = 0;

protected:
    ~IBoolean() = default;
};

class ICommand : public INode {
public:
    /// Milliseconds.
    [[nodiscard]] virtual std::optional<std::int64_t> get_polling_time() const = 0;
    [[nodiscard]] virtual std::error_code execute(std::uint32_t flags) = 0;
    /// True when the value node no longer reads the command value, or cannot be read at all.
    [[nodiscard]] virtual result<bool> is_done(std::uint32_t flags) = 0;

protected:
    ~ICommand() = default;
};

class IString : public INode {
public:
    /// Bytes as they are: a register's text comes with all its trailing zeros.
    [[nodiscard]] virtual result<std::string> get_val(std::uint32_t flags) = 0;
    [[nodiscard]] virtual std::error_code set_val(std::string_view value, std::uint32_t flags) = 0;

protected:
    ~IString() = default;
};

class IEnumEntry : public INode {
public:
    [[nodiscard]] virtual std::int64_t get_value() const = 0;
    /// The index in the enumeration, from 0.
    [[nodiscard]] virtual std::uint32_t get_index() const = 0;
    [[nodiscard]] virtual std::optional<double> get_numeric_value() const = 0;
    [[nodiscard]] virtual bool is_self_clearing() const = 0;

protected:
    ~IEnumEntry() = default;
};

class IEnumeration : public INode {
public:
    [[nodiscard]] virtual std::optional<std::int64_t> get_polling_time() const = 0;
    [[nodiscard]] virtual std::vector<INode*> get_selected() const = 0;
    /// All entries in document order, available or not.
    [[nodiscard]] virtual std::vector<IEnumEntry*> get_entries() = 0;
    [[nodiscard]] virtual std::error_code set_selected_entry(IEnumEntry* entry, std::uint32_t flags) = 0;
    /// Fails with `index_out_of_range` when no entry has the present value.
    [[nodiscard]] virtual result<IEnumEntry*> get_selected_entry(std::uint32_t flags) = 0;
    /// Null only for an enumeration without entries (or a value that compares with none).
    [[nodiscard]] virtual IEnumEntry* find_nearest_entry(double value) = 0;
    [[nodiscard]] virtual IEnumEntry* find_entry(std::int64_t value) = 0;
    [[nodiscard]] virtual IEnumEntry* find_entry(std::string_view name) = 0;
    [[nodiscard]] virtual gsl::span<enum_entry_type> get_entry_span() = 0;

protected:
    ~IEnumeration() = default;
};

class ICategory : public INode {
public:
    /// The features that resolved, in document order.
    [[nodiscard]] virtual std::vector<INode*> get_features() const = 0;

protected:
    ~ICategory() = default;
};

class IRegister : public INode {
public:
    [[nodiscard]] virtual std::optional<std::int64_t> get_polling_time() const = 0;
    /// `length` bytes from the register's address on; fails with `invalid_parameter` unless 1 <= length <=
    /// its length.
    [[nodiscard]] virtual std::error_code read(void* buffer, std::int64_t length, std::uint32_t flags) = 0;
    [[nodiscard]] virtual std::error_code write(const void* buffer, std::int64_t length,
                                                std::uint32_t flags) = 0;
    [[nodiscard]] virtual result<std::uint64_t> get_address(std::uint32_t flags) = 0;
    /// Bytes.
    [[nodiscard]] virtual result<std::int64_t> get_length(std::uint32_t flags) = 0;

protected:
    ~IRegister() = default;
};

class IPort : public INode {
public:
    [[nodiscard]] virtual std::error_code read(std::uint64_t address, void* buffer, std::int64_t length,
                                               std::uint32_t flags) = 0;
    [[nodiscard]] virtual std::error_code write(std::uint64_t address, const void* buffer,
                                                std::int64_t length, std::uint32_t flags) = 0;
    /// Binds a device, which must outlive the binding; `access_denied` when one is bound already.
    virtual std::error_code bind(IDevicePort* device) = 0;
    /// Binds a block of `length` bytes whose first byte has the register address `base_address`; not owned.
    virtual std::error_code bind(std::uint64_t base_address, void* data, std::int64_t length) = 0;
    virtual void unbind() = 0;
    [[nodiscard]] virtual bool is_bound() const = 0;
    [[nodiscard]] virtual result<std::int64_t> get_chunk_id(std::uint32_t flags) = 0;

protected:
    ~IPort() = default;
};

}  // namespace GenICam
