#pragma once

#include "apps/inspect/description_tree.h"
#include "genicam/core/message.h"

#include <string>
#include <vector>

namespace selvane_inspect {

/// What the engine said, and what in the file it is about.
struct engine_message {
    std::string text;  ///< one line
    text_position at;  ///< line 0 for nothing
};

/// Hears everything that the engine says while it lives.
class message_capture final : GenICam::message_listener {
public:
    /// The tree is one of the text that the engine works on.
    explicit message_capture(const description_tree& tree) : tree_(tree), listening_(*this) {}

    /// The messages since the last time. Those that name no element are about the one that was asked, or else
    /// about what the next message is about: the parser of formulas knows no elements, and whoever called it
    /// complains behind it.
    [[nodiscard]] std::vector<engine_message> take(text_position asked = {});

private:
    void hear(const GenICam::reported_message& said) override;

    const description_tree& tree_;
    std::vector<engine_message> heard_;
    GenICam::listening listening_;
};

/// Keeps the engine silent while it lives, also inside a capture.
using GenICam::silence;

}  // namespace selvane_inspect
