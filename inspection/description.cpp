#include "inspection/description.h"

#include "inspection/camera/connected_camera.h"
#include "inspection/inspect_error.h"
#include "platform/replace_file.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

#include <fmt/format.h>

namespace selvane_inspect {
namespace {

std::string system_words(int error) {
    return error != 0 ? ": " + std::generic_category().message(error) : std::string();
}

}  // namespace

std::string read_file(const std::string& path) {
    const std::filesystem::path native = std::filesystem::u8path(path);
    std::error_code unknown;
    if (std::filesystem::is_directory(native, unknown))
        throw wrong_use("cannot read " + path + ": it is a folder");
    errno = 0;
    std::ifstream file(native, std::ios::binary);
    std::string contents{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file.is_open() || file.bad()) throw wrong_use("cannot read " + path + system_words(errno));
    return contents;
}

void write_file(const std::string& path, const std::string& contents) {
    if (const auto failure = platform::replace_file(std::filesystem::u8path(path), contents))
        throw wrong_use("cannot write " + path + ": " + failure.message());
}

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
    heard_.push_back({std::move(text), position_of(said.origin)});
}

// A child that is named stands anywhere among its siblings, and as many of these may complain of it.
text_position message_capture::position_of(const GenICam::message_origin& origin) {
    if (origin.part || origin.name == nullptr) return tree_.position_of(origin.node(), origin.attribute());
    const auto [known, is_new] = named_.try_emplace({origin.element, origin.name});
    if (is_new) known->second = tree_.position_of(origin.node());
    return known->second;
}

std::unique_ptr<description> description::open(const std::string& path) {
    const connected_camera* const behind = connected_camera::behind(path);
    if (behind == nullptr) return from_bytes(path, read_file(path));
    std::unique_ptr<description> opened = from_bytes(path, std::string(behind->camera().description()));
    opened->port().lead_to(behind->camera(), behind->trace());
    return opened;
}

std::unique_ptr<description> description::from_bytes(std::string path, std::string bytes) {
    std::unique_ptr<description> opened(new description(std::move(path), std::move(bytes)));
    if (const auto& malformed = opened->tree_.malformed()) {
        throw wrong_use(fmt::format("{}:{}:{}: not well-formed: {}", opened->path_, malformed->at.line,
                                    malformed->at.column, malformed->about));
    }
    opened->load();
    return opened;
}

description::description(std::string path, std::string bytes)
    : path_(std::move(path)), source_(std::move(bytes)), tree_(source_) {}

void description::load() {
    message_capture messages(tree_);
    const std::string& bytes = source_.bytes();
    const auto start = std::chrono::steady_clock::now();
    try {
        document_.reset(GenICam::load_genicam_doc(bytes.data(), bytes.size(), page_options));
    } catch (const std::exception& failure) {
        load_failure_ = failure.what();
    }
    load_time_ =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    load_messages_ = messages.take();
    nodes_.resize(tree_.elements().size());
    if (document_ == nullptr) return;
    match_nodes();
    if (GenICam::INode* port = document_->find_port({})) static_cast<GenICam::IPort*>(port)->bind(&port_);
}

std::string description::why_not_loaded() const {
    if (!load_failure_.empty()) return "an exception left the load: " + load_failure_;
    return "the engine refuses it: " + (load_messages_.empty() ? "" : load_messages_.back().text);
}

void description::match_nodes() {
    const auto match = [this](GenICam::INode* node) {
        if (const auto index = tree_.find(*node)) nodes_[*index] = node;
    };
    document_->for_each_node([&](GenICam::INode* node) {
        match(node);
        if (node->get_node_type() != GenICam::node_type::enumeration) return;
        for (GenICam::IEnumEntry* entry : static_cast<GenICam::IEnumeration*>(node)->get_entries())
            match(entry);
    });
}

std::unique_ptr<description> open_loaded(const std::string& path) {
    std::unique_ptr<description> opened = description::open(path);
    if (opened->document() == nullptr) {
        throw wrong_use(path + ": " + opened->why_not_loaded());
    }
    return opened;
}

}  // namespace selvane_inspect
