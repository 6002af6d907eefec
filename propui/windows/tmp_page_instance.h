#pragma once

#include "propui/windows/uvc_base_page.h"

namespace uvc_page {

/// The class of all four pages; what tells them apart is the title and the groups.
class tmpPageInstance final : public CUVCBasePage {
public:
    using CUVCBasePage::CUVCBasePage;
};

}  // namespace uvc_page
