#include "server/page_table.h"

#include "platform/windows/com_edge.h"
#include "propui/page_groups.h"
#include "propui/resource_ids.h"
#include "propui/windows/tmp_page_instance.h"
#include "wire/page_classes.h"

#include <iterator>

namespace selvane_server {
namespace {

HRESULT CreatePage(IUnknown* outer, ZELAdapterHelper::CUnknown** object, UINT title,
                   ZELPropUI::PageName page) {
    return platform::at_com_edge([&] {
        *object = new uvc_page::tmpPageInstance(outer, title, ZELPropUI::GroupsOf(page));
        return S_OK;
    });
}

constexpr PageRecord pages[] = {
    {platform::null_guid, wire::exposure_page,
     [](IUnknown* outer, ZELAdapterHelper::CUnknown** object) {
         return CreatePage(outer, object, SELVANE_TITLE_EXPOSURE, ZELPropUI::PageName::Exposure);
     },
     L"" SELVANE_NAME_EXPOSURE},
    {platform::null_guid, wire::feature_page,
     [](IUnknown* outer, ZELAdapterHelper::CUnknown** object) {
         return CreatePage(outer, object, SELVANE_TITLE_FEATURE, ZELPropUI::PageName::Feature);
     },
     L"" SELVANE_NAME_FEATURE},
    {platform::null_guid, wire::lens_page,
     [](IUnknown* outer, ZELAdapterHelper::CUnknown** object) {
         return CreatePage(outer, object, SELVANE_TITLE_LENS, ZELPropUI::PageName::Lens);
     },
     L"" SELVANE_NAME_LENS},
    {platform::null_guid, wire::color_page,
     [](IUnknown* outer, ZELAdapterHelper::CUnknown** object) {
         return CreatePage(outer, object, SELVANE_TITLE_COLOR, ZELPropUI::PageName::Color);
     },
     L"" SELVANE_NAME_COLOR},
};

}  // namespace

ZELAdapterHelper::RecordSpan<PageRecord> PageTable() noexcept { return {pages, std::size(pages)}; }

const PageRecord* FindPage(REFCLSID clsid) noexcept {
    for (const PageRecord& page : pages) {
        if (page.clsid == clsid) return &page;
    }
    return nullptr;
}

}  // namespace selvane_server
