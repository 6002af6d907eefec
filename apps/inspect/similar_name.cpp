#include "apps/inspect/similar_name.h"

#include "platform/ascii.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace selvane_inspect {
namespace {

using platform::lower;

// How many characters are to be added, dropped, changed or swapped with their neighbour; capitals count as
// nothing.
std::size_t distance(std::string_view left, std::string_view right) {
    std::vector<std::size_t> before_last;
    std::vector<std::size_t> last(right.size() + 1);
    std::iota(last.begin(), last.end(), std::size_t{0});
    for (std::size_t i = 1; i <= left.size(); ++i) {
        std::vector<std::size_t> row(right.size() + 1);
        row[0] = i;
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const bool same = lower(left[i - 1]) == lower(right[j - 1]);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
            const bool swapped = i > 1 && j > 1 && lower(left[i - 1]) == lower(right[j - 2]) &&
                                 lower(left[i - 2]) == lower(right[j - 1]);
            if (swapped) row[j] = std::min(row[j], before_last[j - 2] + 1);
        }
        before_last.swap(last);
        last.swap(row);
    }
    return last.back();
}

}  // namespace

std::string_view find_similar(std::string_view wrong, const std::vector<std::string_view>& known) {
    constexpr std::size_t characters_a_slip = 4;
    std::size_t best = wrong.size() / characters_a_slip + 1;
    std::string_view found;
    for (const std::string_view name : known) {
        const std::size_t difference =
            std::max(name.size(), wrong.size()) - std::min(name.size(), wrong.size());
        if (difference > best) continue;
        const std::size_t steps = distance(wrong, name);
        if (steps < best || (steps == best && found.empty())) {
            best = steps;
            found = name;
        }
    }
    return found;
}

std::string did_you_mean(std::string_view wrong, const std::vector<std::string_view>& known,
                         std::string_view otherwise) {
    const std::string meant(find_similar(wrong, known));
    return meant.empty() ? std::string(otherwise) : " (did you mean " + meant + "?)";
}

}  // namespace selvane_inspect
