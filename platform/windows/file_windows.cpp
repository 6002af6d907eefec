#include "platform/file.h"

#include "platform/text.h"

namespace platform {

std::FILE* open_for_reading(const std::string& path) { return _wfopen(widen(path).c_str(), L"rb"); }

}  // namespace platform
