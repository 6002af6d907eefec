#include "apps/host/page_offer.h"

#include "apps/host/console.h"
#include "apps/host/host_error.h"
#include "platform/com_ptr.h"
#include "platform/text.h"
#include "platform/windows/owned.h"
#include "wire/page_classes.h"

#include <fmt/format.h>
#include <objbase.h>
#include <ocidl.h>

namespace selvane_host {
namespace {

using page_ptr = platform::com_ptr<IPropertyPage>;

host_error unreachable(const std::string& title, const std::string& why) {
    return {exit_code::nothing_to_show, title + ": " + why};
}

page_ptr make_page(const CLSID& clsid) {
    page_ptr page;
    const HRESULT hr =
        CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IPropertyPage, page.put_void());
    if (FAILED(hr)) throw wrong_use("no page can be made: " + system_message(static_cast<DWORD>(hr)));
    return page;
}

std::string title_of(IPropertyPage& page) {
    PROPPAGEINFO info{};
    info.cb = sizeof(info);
    if (FAILED(page.GetPageInfo(&info))) return "page without information";
    const platform::task_memory<wchar_t> title(info.pszTitle);
    const platform::task_memory<wchar_t> about(info.pszDocString);
    const platform::task_memory<wchar_t> help(info.pszHelpFile);
    return platform::narrow(title ? title.get() : L"");
}

// A page throws where the camera's driver cannot be worked with at all.
HRESULT offer(IPropertyPage& page, const std::string& title, IUnknown* camera) {
    try {
        return page.SetObjects(1, &camera);
    } catch (const std::exception& failure) {
        throw unreachable(title, failure.what());
    } catch (...) {
        throw unreachable(title, "the camera cannot be reached");
    }
}

}  // namespace

std::vector<page_answer> ask_pages(IUnknown& camera) {
    std::vector<page_answer> answers;
    for (const CLSID& clsid : wire::page_classes) {
        const page_ptr page = make_page(clsid);
        const std::string title = title_of(*page);
        answers.push_back({clsid, title, offer(*page, title, &camera)});
    }
    return answers;
}

std::string describe_answer(const page_answer& answer) {
    if (SUCCEEDED(answer.result)) return fmt::format("page \"{}\": shown", answer.title);
    if (answer.result == E_NOINTERFACE) return fmt::format("page \"{}\": nothing to show", answer.title);
    return fmt::format("page \"{}\": refused with 0x{:08X}", answer.title,
                       static_cast<std::uint32_t>(answer.result));
}

std::vector<CLSID> willing_pages(const std::vector<page_answer>& answers) {
    std::vector<CLSID> willing;
    for (const page_answer& answer : answers) {
        if (SUCCEEDED(answer.result)) willing.push_back(answer.clsid);
    }
    return willing;
}

}  // namespace selvane_host
