#include "apps/inspect/camera/aravis_library.h"

#include "apps/inspect/inspect_error.h"

#include <string>

#include <dlfcn.h>

namespace selvane_inspect {
namespace {

constexpr const char* file_name = "libaravis-0.8.so.0";

template <class Function>
void find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    if (function == nullptr) throw refused(std::string(file_name) + " has no " + name);
}

aravis_library load() {
    // It has threads of its own: it stays until the process ends.
    void* const library = dlopen(file_name, RTLD_NOW | RTLD_NODELETE);
    if (library == nullptr) {
        throw refused(std::string("cameras are reached through Aravis, which is not there (") + dlerror() +
                      "); on Debian the package is libaravis-0.8-0");
    }
    aravis_library loaded;
#define SELVANE_ARAVIS_FIND(function) find(library, #function, loaded.function);
    SELVANE_ARAVIS_FUNCTIONS(SELVANE_ARAVIS_FIND)
#undef SELVANE_ARAVIS_FIND
    return loaded;
}

}  // namespace

const aravis_library& aravis_library::get() {
    static const aravis_library loaded = load();
    return loaded;
}

}  // namespace selvane_inspect
