#include "apps/inspect/engine_messages.h"

#include <algorithm>
#include <utility>

namespace selvane_inspect {

std::vector<engine_message> message_capture::take(text_position asked) {
    text_position next = {};
    for (auto message = heard_.rbegin(); message != heard_.rend(); ++message) {
        if (message->at.line == 0) {
            message->at = asked.line != 0 ? asked : next;
        } else {
            next = message->at;
        }
    }
    return std::exchange(heard_, {});
}

// The engine has a copy of the text, in which everything stands at the same offset.
void message_capture::hear(const GenICam::reported_message& said) {
    std::string text = said.text();
    text.erase(text.find_last_not_of('\n') + 1);
    std::replace(text.begin(), text.end(), '\n', ' ');
    heard_.push_back({std::move(text), tree_.position_of(said.origin.node(), said.origin.attribute())});
}

}  // namespace selvane_inspect
