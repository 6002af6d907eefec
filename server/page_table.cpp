#include "server/page_table.h"

#include "propui/page_groups.h"
#include "propui/windows/framework/com_edge.h"
#include "propui/windows/resource_ids.h"
#include "propui/windows/tmp_page_instance.h"

#include <iterator>

namespace selvane_server {
namespace {

HRESULT CreatePage(IUnknown* outer, ZELAdapterHelper::CUnknown** object, UINT title,
                   ZELPropUI::PageName page) {
    return ZELPropUI::Framework::AtComEdge([&] {
        *object = new uvc_page::tmpPageInstance(outer, title, ZELPropUI::GroupsOf(page));
        return S_OK;
    });
}

constexpr PageRecord pages[] = {
    {platform::null_guid,
     {0x01F8BA96, 0x06C1, 0x4888, {0xB9, 0xFF, 0x8B, 0x60, 0xF3, 0xA1, 0x22, 0x1A}},
     [](IUnknown* outer, ZELAdapterHelper::CUnknown** object) {
         return CreatePage(outer, object, SELVANE_TITLE_EXPOSURE, ZELPropUI::PageName::Exposure);
     },
     L"" SELVANE_NAME_EXPOSURE},
    {platform::null_guid,
     {0x01F8BA96, 0x06C1, 0x4888, {0xB9, 0xFF, 0x8B, 0x60, 0xF3, 0xA1, 0x22, 0x1B}},
     [](IUnknown* outer, ZELAdapterHelper::CUnknown** object) {
         return CreatePage(outer, object, SELVANE_TITLE_FEATURE, ZELPropUI::PageName::Feature);
     },
     L"" SELVANE_NAME_FEATURE},
    {platform::null_guid,
     {0xC423731D, 0xD4C5, 0x41EE, {0xB1, 0x7D, 0xA3, 0x11, 0xA7, 0xB2, 0x7D, 0xEC}},
     [](IUnknown* outer, ZELAdapterHelper::CUnknown** object) {
         return CreatePage(outer, object, SELVANE_TITLE_LENS, ZELPropUI::PageName::Lens);
     },
     L"" SELVANE_NAME_LENS},
    {platform::null_guid,
     {0xA522337D, 0x5324, 0x4123, {0x9D, 0xA4, 0x84, 0xD1, 0x7E, 0xF1, 0xEA, 0xDA}},
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
