#pragma once

#include "apps/inspect/source_text.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
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
    text_position at;
    std::string message;
    std::size_t count = 1;  ///< places with the same message; the first one is told
};

/// The findings of one file.
class finding_list {
public:
    void begin(const lint_rule& rule) { rule_ = &rule; }
    /// Adds a finding of the rule that was begun, or counts it when its message is there already.
    void add(text_position at, std::string message);

    /// In the order of the file.
    [[nodiscard]] std::vector<finding> take_sorted();

private:
    const lint_rule* rule_ = nullptr;
    std::vector<finding> findings_;
    std::map<std::pair<const lint_rule*, std::string>, std::size_t> places_;
};

}  // namespace selvane_inspect
