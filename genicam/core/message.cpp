#include "genicam/core/message.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <utility>

namespace GenICam {
namespace {

message_listener* listener = nullptr;

/// The text of a message as it grows, in as much room as the log has.
class message_text {
public:
    void add(std::string_view text) noexcept {
        const std::size_t added = std::min(text.size(), sizeof(text_) - 1 - used_);
        std::memcpy(text_ + used_, text.data(), added);
        used_ += added;
    }
    void add(const message_argument& given) {
        char number[32] = {};
        switch (given.is) {
            case message_argument::kind::text:
                return add(given.text);
            case message_argument::kind::integer:
                std::snprintf(number, sizeof(number), "%lld", static_cast<long long>(given.integer));
                break;
            case message_argument::kind::natural:
                std::snprintf(number, sizeof(number), "%llu", static_cast<unsigned long long>(given.natural));
                break;
            case message_argument::kind::real:
                std::snprintf(number, sizeof(number), "%e", given.real);
                // The sign that the locale of the host has.
                std::replace(std::begin(number), std::end(number), ',', '.');
                break;
        }
        add(std::string_view(number));
    }
    [[nodiscard]] const char* terminated() noexcept {
        text_[used_] = 0;
        return text_;
    }

private:
    char text_[log_message_size];
    std::size_t used_ = 0;
};

void write(const reported_message& said, message_text& text) {
    const message_argument subject[] = {std::string_view(said.origin.element.name()),
                                        std::string_view(said.origin.element.attribute("Name").value())};
    std::size_t named = 2 - static_cast<std::size_t>(said.row.subject);
    const message_argument* given = said.arguments.data();
    message_conversion next = next_conversion(said.row.format);
    for (; next.letter != 0; next = next_conversion(next.behind)) {
        text.add(next.before);
        text.add(named < 2 ? subject[named++] : *given++);
    }
    text.add(next.before);
}

}  // namespace

pugi::xml_node message_origin::node() const {
    if (part) return part;
    const pugi::xml_node found = name != nullptr ? element.child(name) : pugi::xml_node();
    return found ? found : element;
}

pugi::xml_attribute message_origin::attribute() const {
    return part && name != nullptr ? part.attribute(name) : pugi::xml_attribute();
}

std::string reported_message::text() const {
    message_text text;
    write(*this, text);
    return text.terminated();
}

listening::listening(message_listener& to) noexcept
    : former_listener_(std::exchange(listener, &to)),
      former_threshold_(std::exchange(log_threshold, log_rejection)) {}

listening::~listening() {
    listener = former_listener_;
    log_threshold = former_threshold_;
}

void report_enabled(const message_row& row, const message_origin& origin,
                    gsl::span<const message_argument> arguments) {
    const reported_message said = {row, origin, arguments};
    if (listener != nullptr) return listener->hear(said);
    message_text text;
    write(said, text);
    log_message(row.level, "%s", text.terminated());
}

}  // namespace GenICam
