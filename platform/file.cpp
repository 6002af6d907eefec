#include "platform/file.h"

#include <memory>

namespace platform {
namespace {

struct file_closer {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

}  // namespace

// The library's streams would be larger than most of what uses this.
bool read_file(const std::string& path, std::string& contents) {
    const std::unique_ptr<std::FILE, file_closer> file(open_for_reading(path));
    if (file == nullptr) return false;
    contents.clear();
    char part[4096];
    for (std::size_t read = sizeof part; read == sizeof part;) {
        read = std::fread(part, 1, sizeof part, file.get());
        contents.append(part, read);
    }
    return std::ferror(file.get()) == 0;
}

}  // namespace platform
