#pragma once

#include "formula/expansion_budget.h"
#include "genicam/core/message.h"
#include "genicam/genicam_doc.h"
#include "inspection/description_tree.h"
#include "inspection/source_text.h"
#include "inspection/traced_port.h"
#include "simcam/register_memory.h"

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <utility>
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
    [[nodiscard]] text_position position_of(const GenICam::message_origin& origin);

    const description_tree& tree_;
    std::vector<engine_message> heard_;
    std::map<std::pair<pugi::xml_node, const char*>, text_position> named_;  // children that were looked for
    GenICam::listening listening_;
};

/// Keeps the engine silent while it lives, also inside a capture.
using GenICam::silence;

/// A description that the engine has loaded over a register memory, and what is known of its text.
class description {
public:
    /// Reads and loads a file, or the camera behind its name with its registers. Throws `inspect_error` for
    /// one that cannot be read or is not well-formed.
    [[nodiscard]] static std::unique_ptr<description> open(const std::string& path);
    /// The same for a text that is no file; `path` is what it is called in messages.
    [[nodiscard]] static std::unique_ptr<description> from_bytes(std::string path, std::string bytes);

    description(const description&) = delete;
    description& operator=(const description&) = delete;

    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] const source_text& source() const noexcept { return source_; }
    [[nodiscard]] const description_tree& tree() const noexcept { return tree_; }
    /// Null when an exception left the load, or the engine refused the description.
    [[nodiscard]] GenICam::IGenICamDoc* document() const noexcept { return document_.get(); }
    /// The exception that left the load; empty for none.
    [[nodiscard]] const std::string& load_failure() const noexcept { return load_failure_; }
    /// Why there is no document.
    [[nodiscard]] std::string why_not_loaded() const;
    /// What the engine said while it loaded.
    [[nodiscard]] const std::vector<engine_message>& load_messages() const noexcept { return load_messages_; }
    [[nodiscard]] std::chrono::microseconds load_time() const noexcept { return load_time_; }

    /// The node of an element, also of one whose name another bears as well; null when nothing was loaded.
    [[nodiscard]] GenICam::INode* node_of(element_index index) const { return nodes_[index]; }

    /// For formulas that are built beside the engine; as large as the engine's own.
    [[nodiscard]] GenICam::expansion_budget& formula_expansion() noexcept { return formula_expansion_; }

    [[nodiscard]] simcam::register_memory& memory() noexcept { return memory_; }
    [[nodiscard]] traced_port& port() noexcept { return port_; }

private:
    description(std::string path, std::string bytes);
    void load();
    void match_nodes();

    std::string path_;
    source_text source_;
    description_tree tree_;
    simcam::register_memory memory_;
    traced_port port_{memory_};
    GenICam::expansion_budget formula_expansion_;
    std::unique_ptr<GenICam::IGenICamDoc> document_;
    std::vector<GenICam::INode*> nodes_;  // of the elements of the tree
    std::string load_failure_;
    std::vector<engine_message> load_messages_;
    std::chrono::microseconds load_time_{0};
};

/// The same for commands that need the nodes: also throws when an exception left the load.
[[nodiscard]] std::unique_ptr<description> open_loaded(const std::string& path);

/// The contents of a file. Throws `inspect_error`.
[[nodiscard]] std::string read_file(const std::string& path);
/// Puts contents into a file in one step, as `platform::replace_file` does. Throws `inspect_error`.
void write_file(const std::string& path, const std::string& contents);

}  // namespace selvane_inspect
