#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace page_test {

/// What an open page shows, as a user sees it: rows from the top, in each its windows from the left.
class PageRows {
public:
    explicit PageRows(HWND page);

    /// A line for each row, those of elements indented. A slider with its edit and its up-down control stands
    /// as the edit's text in parentheses, a check box as [x] or [ ] with its caption, a button as <caption>,
    /// a list as {selection}. "~" in front means disabled, "=" a value that shows but cannot be changed, "?"
    /// three controls of one value that do not agree.
    [[nodiscard]] std::vector<std::wstring> Lines() const;
    /// The items from the top, each with its lines.
    struct Item {
        std::wstring name;
        std::vector<std::wstring> lines;
    };
    [[nodiscard]] std::vector<Item> Items() const;
    /// The lines of one item; none where it is not shown.
    [[nodiscard]] std::vector<std::wstring> LinesOf(const std::wstring& item) const;
    /// Top edges of the rows, in the pixels that they were made with.
    [[nodiscard]] std::vector<int> Tops() const;

    // The controls of an element, by the labels of its item and of its own row; the head row has the item's
    // name. Null where there is none.
    [[nodiscard]] HWND Slider(const std::wstring& item, const std::wstring& element) const;
    [[nodiscard]] HWND Edit(const std::wstring& item, const std::wstring& element) const;
    [[nodiscard]] HWND Spin(const std::wstring& item, const std::wstring& element) const;
    [[nodiscard]] HWND List(const std::wstring& item, const std::wstring& element) const;
    /// A check box or button by its caption; the n-th of that caption within the item, from 0.
    [[nodiscard]] HWND Button(const std::wstring& item, const std::wstring& caption, int n = 0) const;

private:
    struct Row {
        int top = 0;
        bool is_head = false;
        std::wstring item;
        std::wstring label;
        std::vector<HWND> windows;
    };

    void Add(HWND window);
    [[nodiscard]] static std::wstring LineOf(const Row& row);
    [[nodiscard]] HWND Find(const std::wstring& window_class, const std::wstring& item,
                            const std::wstring& element) const;

    std::vector<Row> rows_;
};

}  // namespace page_test
