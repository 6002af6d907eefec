#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ZELPropUI {

/// The pages, in the order in which they are registered.
enum class PageName { Exposure, Feature, Lens, Color };
constexpr PageName all_pages[] = {PageName::Exposure, PageName::Feature, PageName::Lens, PageName::Color};

[[nodiscard]] std::string_view TitleOf(PageName page) noexcept;

/// The groups whose items a page shows.
[[nodiscard]] std::vector<std::wstring> GroupsOf(PageName page);

}  // namespace ZELPropUI
