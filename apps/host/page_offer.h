#pragma once

#include "platform/com.h"

#include <string>
#include <vector>

namespace selvane_host {

/// What a page said to a camera.
struct page_answer {
    CLSID clsid;
    std::string title;
    HRESULT result;  ///< S_OK: it has something to show
};

/// Asks each page class whether it takes the camera, in the order of `page_classes`. Throws `host_error` when
/// a page cannot be made or reports that the camera cannot be reached.
[[nodiscard]] std::vector<page_answer> ask_pages(IUnknown& camera);

/// "page "Selvane Lens Controls": nothing to show"
[[nodiscard]] std::string describe_answer(const page_answer& answer);

/// The classes that took the camera.
[[nodiscard]] std::vector<CLSID> willing_pages(const std::vector<page_answer>& answers);

}  // namespace selvane_host
