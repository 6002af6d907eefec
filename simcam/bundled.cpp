#include "simcam/camera_options.h"
#include "simcam/embedded_texts.h"

namespace simcam {
namespace {

constexpr std::string_view description_end = ".xml";
constexpr std::string_view memory_end = ".memory";

std::string_view find_text(std::string_view name, std::string_view end) {
    for (const embedded_text& text : embedded_texts()) {
        const std::string_view file = text.file_name;
        if (file.size() == name.size() + end.size() && file.substr(0, name.size()) == name &&
            file.substr(name.size()) == end) {
            return text.contents;
        }
    }
    return {};
}

std::vector<std::string_view> description_names() {
    std::vector<std::string_view> names;
    for (const embedded_text& text : embedded_texts()) {
        const std::size_t at = text.file_name.rfind(description_end);
        if (at != std::string_view::npos) names.push_back(text.file_name.substr(0, at));
    }
    return names;
}

}  // namespace

std::string_view bundled_description(std::string_view name) { return find_text(name, description_end); }

std::string_view bundled_memory(std::string_view name) { return find_text(name, memory_end); }

const std::vector<std::string_view>& bundled_description_names() {
    static const std::vector<std::string_view> names = description_names();
    return names;
}

}  // namespace simcam
