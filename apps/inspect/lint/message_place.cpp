#include "apps/inspect/lint/message_place.h"

#include "apps/inspect/lint/message_target.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <unordered_map>

namespace selvane_inspect {
namespace {

class message_placer {
public:
    explicit message_placer(const lint_context& context) : context_(context), targets_(context) {}

    [[nodiscard]] std::optional<text_position> place(const engine_message& message);

private:
    struct repeated_message {
        std::vector<message_target> fitting;
        std::size_t times = 0;
    };

    [[nodiscard]] text_position position_of(const message_target& target) const {
        return context_.tree().position_of(target.xml, target.attribute);
    }

    const lint_context& context_;
    message_targets targets_;
    std::unordered_map<std::string, repeated_message> known_;
};

// What is asked is asked of one element at a time, so that nothing comes round to the next.
std::optional<text_position> message_placer::place(const engine_message& message) {
    if (message.asked) {
        const auto fitting = targets_.find(message.text, context_.tree().at(*message.asked).xml);
        return position_of(fitting.front());
    }
    const auto [known, is_new] = known_.try_emplace(message.text);
    repeated_message& repeated = known->second;
    if (is_new) repeated.fitting = targets_.find(message.text, {});
    if (repeated.fitting.empty()) return std::nullopt;
    return position_of(repeated.fitting[std::min(repeated.times++, repeated.fitting.size() - 1)]);
}

}  // namespace

std::vector<placed_message> place_messages(const lint_context& context,
                                           const std::vector<engine_message>& messages) {
    message_placer placer(context);
    std::vector<placed_message> placed;
    std::size_t waiting = 0;  // how many at the end have no place yet
    for (const engine_message& message : messages) {
        std::string line = message.text;
        std::replace(line.begin(), line.end(), '\n', ' ');
        placed.push_back({{}, std::move(line)});
        const auto at = placer.place(message);
        if (!at) {
            ++waiting;
            continue;
        }
        for (std::size_t back = 0; back <= waiting; ++back) placed[placed.size() - 1 - back].at = *at;
        waiting = 0;
    }
    return placed;
}

}  // namespace selvane_inspect
