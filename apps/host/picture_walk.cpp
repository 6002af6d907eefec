#include "apps/host/picture_walk.h"

#include "apps/host/console.h"
#include "apps/host/host_error.h"
#include "apps/host/picture.h"

#include <system_error>
#include <utility>

namespace selvane_host {
namespace {

// What a page posts to itself when it opens must be done before its picture is taken.
constexpr int steps_to_settle = 3;

// "Selvane Lens Controls" -> "selvane-lens-controls"
std::string file_word(const std::string& title) {
    std::string word;
    for (const char character : title) {
        const bool upper = character >= 'A' && character <= 'Z';
        const bool plain = (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9');
        if (upper) word += static_cast<char>(character - 'A' + 'a');
        if (plain) word += character;
        if (!upper && !plain) word += '-';
    }
    return word;
}

}  // namespace

picture_walk::picture_walk(std::filesystem::path folder) : folder_(std::move(folder)) {
    std::error_code failure;
    std::filesystem::create_directories(folder_, failure);
    if (!std::filesystem::is_directory(folder_)) {
        throw wrong_use("cannot make the folder " + folder_.u8string() +
                        (failure ? ": " + system_message(static_cast<unsigned long>(failure.value())) : ""));
    }
}

void picture_walk::step(const frame_window& frame) {
    if (page_ >= frame.page_count()) return;
    if (frame.shown_page() != page_) {
        frame.show_page(page_);
        steps_shown_ = 0;
        return;
    }
    if (steps_shown_++ < steps_to_settle) return;
    SetWindowPos(frame.handle(), HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    frame.repaint();
    const std::filesystem::path file = file_of(frame);
    save_picture(frame.handle(), file);
    write_line("picture " + file.u8string());
    steps_shown_ = 0;
    if (++page_ < frame.page_count()) return;
    is_done_ = true;
    frame.close();
}

void picture_walk::finish() const {
    if (is_done_) return;
    throw wrong_use("the property frame was closed before every page had its picture; saved: " +
                    std::to_string(page_));
}

std::filesystem::path picture_walk::file_of(const frame_window& frame) const {
    return folder_ / std::filesystem::u8path(std::to_string(page_ + 1) + "-" +
                                             file_word(frame.page_title(page_)) + ".png");
}

}  // namespace selvane_host
