#include "platform/file.h"

namespace platform {

std::FILE* open_for_reading(const std::string& path) { return std::fopen(path.c_str(), "rb"); }

}  // namespace platform
