// How the cells of sibling pages are spread over pages when they are balanced.
#include "btree_edit.h"

namespace sqlite2::btree {

namespace {

// Fills pages from the left as full as they go.
std::vector<size_t> PackLeft(const std::vector<int>& sizes)
{
    std::vector<size_t> dividers;
    int used = 0;
    for (size_t i = 0; i < sizes.size(); ++i) {
        if (used + sizes[i] <= kUsableSpace) {
            used += sizes[i];
        } else if (i + 1 < sizes.size()) {
            dividers.push_back(i);
            used = 0;
        } else {
            // The last cell cannot separate (no page would follow it): the
            // full page before gives up its last cell instead (it holds at
            // least four, since not even one more cell fitted).
            dividers.push_back(i - 1);
            used = sizes[i];
        }
    }
    return dividers;
}

// Moves each separator left while that leaves the page after it no fuller
// than the page before, so that later inserts find room on both.
void EvenOut(const std::vector<int>& sizes, std::vector<size_t>& dividers)
{
    for (size_t m = dividers.size(); m-- > 0;) {
        const size_t leftStart = m ? dividers[m - 1] + 1 : 0;
        const size_t rightEnd = m + 1 < dividers.size() ? dividers[m + 1] : sizes.size();
        int left = 0, right = 0;
        for (size_t i = leftStart; i < dividers[m]; ++i)
            left += sizes[i];
        for (size_t i = dividers[m] + 1; i < rightEnd; ++i)
            right += sizes[i];
        for (size_t d = dividers[m]; d - leftStart >= 2; --d) {
            const int newLeft = left - sizes[d - 1];
            const int newRight = right + sizes[d];
            if (newRight > newLeft || newRight > kUsableSpace)
                break;
            left = newLeft;
            right = newRight;
            dividers[m] = d - 1;
        }
    }
}

} // namespace

std::vector<size_t> Partition(const std::vector<int>& sizes)
{
    std::vector<size_t> dividers = PackLeft(sizes);
    EvenOut(sizes, dividers);
    return dividers;
}

} // namespace sqlite2::btree
