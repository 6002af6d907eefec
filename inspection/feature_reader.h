#pragma once

#include "genicam/core/error.h"
#include "inspection/evaluation_guard.h"
#include "inspection/feature_value.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace selvane_inspect {

/// An answer of the engine, or why there is none.
template <class T>
struct answer {
    std::optional<T> value;
    std::string failure;
    std::uint32_t code = 0;  ///< of the engine; 0 where it was not asked
};

/// What a feature shows of itself now.
struct feature_state {
    GenICam::node_type kind = GenICam::node_type::integer;
    std::string name;
    std::string_view access;  ///< RW, RO, WO; NI for not implemented, NA for not available
    answer<feature_value> value;
    GenICam::Representation style = GenICam::Representation::PureNumber;  ///< of integers
    std::string unit;
    std::optional<feature_value> minimum;
    std::optional<feature_value> maximum;
    std::optional<feature_value> increment;
    std::optional<feature_value> default_value;
};

/// Reads features, and asks the engine for nothing that it would not survive.
class feature_reader {
public:
    /// The guard may watch over another description of the same text, in the same state.
    explicit feature_reader(evaluation_guard& guard) : guard_(guard) {}

    [[nodiscard]] feature_state read(GenICam::INode& node);
    /// Name, kind and access alone.
    [[nodiscard]] feature_state begin(GenICam::INode& node);
    /// The unit, and how numbers are written.
    void add_unit(GenICam::INode& node, feature_state& state);
    [[nodiscard]] answer<feature_value> read_value(GenICam::INode& node);
    /// Completes the words for a value that could not be read, where the engine's alone leave a reader at a
    /// loss. Reads the nodes behind it once more.
    static void explain(GenICam::INode& node, answer<feature_value>& failed);
    /// A minimum, maximum, increment or default; not set where there is none.
    [[nodiscard]] std::optional<feature_value> read_limit(GenICam::INode& node, operation limit);
    [[nodiscard]] std::string read_unit(GenICam::INode& node);
    /// Of implemented, available and locked.
    [[nodiscard]] answer<bool> read_flag(GenICam::INode& node, operation flag);
    [[nodiscard]] answer<GenICam::AccessMode> read_access(GenICam::INode& node);
    [[nodiscard]] std::string_view access_state(GenICam::INode& node);

private:
    template <class T, class Ask>
    answer<T> ask(GenICam::INode& node, operation asked, Ask question);

    evaluation_guard& guard_;
};

/// What the engine answers, whether it survives that or not. Throws for blocks of registers that are too long
/// to be read.
[[nodiscard]] GenICam::result<feature_value> engine_value(GenICam::INode& node, std::uint32_t flags);

/// Whether a limit is an end of the range that every number of its kind has, and so says nothing.
[[nodiscard]] bool is_end_of_all(const feature_value& limit);
/// "[0..100 step 2]", without the ends that everything has; empty where nothing is left.
[[nodiscard]] std::string range_text(const feature_state& state);
/// "name = value unit", or only the name of what has no value; of a block no more than so many bytes.
[[nodiscard]] std::string assignment_text(const feature_state& state, std::size_t most_bytes = all_bytes);
/// Whether there is no value because the feature is not implemented or not available.
[[nodiscard]] bool is_absent(const feature_state& state);
[[nodiscard]] nlohmann::ordered_json to_json(const feature_state& state);

}  // namespace selvane_inspect
