#include "propui/page_groups.h"

#include "propui/resource_ids.h"

#include <cstddef>
#include <iterator>

namespace ZELPropUI {
namespace {

constexpr std::size_t max_groups = 3;

struct PageContents {
    std::string_view title;
    const wchar_t* groups[max_groups];  // null where there are fewer
};

// In the order of the page names.
constexpr PageContents contents[] = {
    {SELVANE_NAME_EXPOSURE, {L"Exposure", L"Image", L"WDR"}},
    {SELVANE_NAME_FEATURE, {L"Special", L"Partial Scan", L"Partial scan"}},
    {SELVANE_NAME_LENS, {L"Lens"}},
    {SELVANE_NAME_COLOR, {L"Color"}},
};
static_assert(std::size(contents) == std::size(all_pages));

const PageContents& ContentsOf(PageName page) noexcept { return contents[static_cast<std::size_t>(page)]; }

}  // namespace

std::string_view TitleOf(PageName page) noexcept { return ContentsOf(page).title; }

std::vector<std::wstring> GroupsOf(PageName page) {
    std::vector<std::wstring> groups;
    for (const wchar_t* group : ContentsOf(page).groups) {
        if (group != nullptr) groups.emplace_back(group);
    }
    return groups;
}

}  // namespace ZELPropUI
