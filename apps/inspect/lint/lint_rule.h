#pragma once

#include "apps/inspect/source_text.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include <gsl/span>

namespace selvane_inspect {

class lint_context;
class finding_list;

enum class severity { note, warning, error };
[[nodiscard]] std::string_view severity_word(severity level) noexcept;

/// One thing that is looked for in descriptions. Names are stable: people write them into scripts.
struct lint_rule {
    std::string_view name;
    severity level;
    std::string_view why;  ///< why it matters
    std::string_view what_to_do;
    void (*check)(lint_context& context, finding_list& findings);
};

[[nodiscard]] gsl::span<const lint_rule> all_lint_rules() noexcept;

struct finding {
    const lint_rule* rule;
    std::string message;
    std::vector<text_position> positions;  ///< in the order of the file; empty for none
    std::size_t count = 1;                 ///< how often it was found
    bool is_habit = false;                 ///< of the whole file, and one finding however often

    /// The first position; line 0 for none.
    [[nodiscard]] text_position at() const {
        return positions.empty() ? text_position{0, 0} : positions.front();
    }
};

/// The findings of one file.
class finding_list {
public:
    void begin(const lint_rule& rule) { rule_ = &rule; }
    /// Adds a finding of the rule that was begun. The same once more at the same position is counted.
    void add(text_position at, std::string message);
    /// The same for what is one finding wherever it stands, such as a habit of a whole file.
    void add_habit(text_position at, std::string message);

    /// In the order of the file.
    [[nodiscard]] std::vector<finding> take_sorted();

private:
    using key = std::tuple<const lint_rule*, std::string, std::size_t, std::size_t>;

    finding& at_key(key which);

    const lint_rule* rule_ = nullptr;
    std::vector<finding> findings_;
    std::map<key, std::size_t> known_;
};

}  // namespace selvane_inspect
