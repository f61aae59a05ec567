// The free list of a 2.x file: trunk pages listing up to 254 free pages each,
// the first trunk and the total count (trunks included) on page 1.
#include "btree.h"

#include "btree_page.h"

namespace sqlite2 {

namespace {

constexpr int kFreeHead = 52;
constexpr int kFreeCount = 56;
constexpr uint32_t kTrunkCapacity = 254;

bool IsPageInFile(Pager& pager, uint32_t page)
{
    return page >= 2 && page <= pager.PageCount();
}

} // namespace

// Nothing to reuse: the file grows by one page of zeros. Page 2 is the
// schema's root even in a file that ends before it, so it is never handed out.
Status BTree::Grow(uint32_t& page)
{
    page = pager.PageCount() + 1;
    PageHandle fresh;
    if (page == 2) {
        if (Status status = pager.Write(page, fresh); !status)
            return status;
        btree::EncodeNode(order, btree::Node{}, fresh->bytes);
        page = 3;
    }
    return pager.Write(page, fresh);
}

Status BTree::AllocatePage(uint32_t& page)
{
    PageHandle first;
    if (Status status = pager.Read(1, first); !status)
        return status;
    const uint32_t head = order.Get32(first->bytes + kFreeHead);
    const uint32_t count = order.Get32(first->bytes + kFreeCount);
    if (head == 0)
        return Grow(page);
    PageHandle trunk;
    if (!IsPageInFile(pager, head) || count == 0)
        return Status::Corrupt();
    if (Status status = pager.Read(head, trunk); !status)
        return status;
    const uint32_t leaves = order.Get32(trunk->bytes + 4);
    if (leaves > kTrunkCapacity)
        return Status::Corrupt();
    if (Status status = pager.Write(1, first); !status)
        return status;
    order.Put32(first->bytes + kFreeCount, count - 1);
    if (leaves == 0) {
        // An empty trunk is itself the free page; the list starts at the next.
        page = head;
        order.Put32(first->bytes + kFreeHead, order.Get32(trunk->bytes));
        return Status::Ok();
    }
    uint8_t* last = trunk->bytes + 8 + 4 * (leaves - 1);
    page = order.Get32(last);
    if (!IsPageInFile(pager, page) || page == head)
        return Status::Corrupt();
    if (Status status = pager.Write(head, trunk); !status)
        return status;
    last = trunk->bytes + 8 + 4 * (leaves - 1);
    order.Put32(last, 0);
    order.Put32(trunk->bytes + 4, leaves - 1);
    return Status::Ok();
}

Status BTree::FreePage(uint32_t page)
{
    if (!IsPageInFile(pager, page))
        return Status::Corrupt();
    PageHandle first;
    if (Status status = pager.Write(1, first); !status)
        return status;
    const uint32_t head = order.Get32(first->bytes + kFreeHead);
    order.Put32(first->bytes + kFreeCount, order.Get32(first->bytes + kFreeCount) + 1);
    if (head != 0) {
        PageHandle trunk;
        if (!IsPageInFile(pager, head))
            return Status::Corrupt();
        if (Status status = pager.Read(head, trunk); !status)
            return status;
        const uint32_t leaves = order.Get32(trunk->bytes + 4);
        if (leaves < kTrunkCapacity) {
            // The freed page itself is left as it is: a listed page has no
            // content, so it need not be written (nor journalled).
            if (Status status = pager.Write(head, trunk); !status)
                return status;
            order.Put32(trunk->bytes + 8 + 4 * leaves, page);
            order.Put32(trunk->bytes + 4, leaves + 1);
            return Status::Ok();
        }
    }
    // The first trunk is full (or there is none): the page becomes the new first trunk.
    PageHandle trunk;
    if (Status status = pager.Write(page, trunk); !status)
        return status;
    memset(trunk->bytes, 0, pageSize);
    order.Put32(trunk->bytes, head);
    order.Put32(first->bytes + kFreeHead, page);
    return Status::Ok();
}

} // namespace sqlite2
