#include "common/AppList.h"

#include <cstdlib>
#include <cstring>
#include <vector>

namespace juntora {

std::unique_ptr<AppList::Cursor> AppList::newCursor() const {
    return head ? std::make_unique<Cursor>(head) : nullptr;
}

void* AppList::next(Cursor* cursor) {
    if (!cursor || !*cursor || !(*cursor)->next) {
        return nullptr;
    }
    *cursor = (*cursor)->next;
    return (*cursor)->value;
}

void* AppList::previous(Cursor* cursor) {
    if (!cursor || !*cursor || !(*cursor)->prev) {
        return nullptr;
    }
    *cursor = (*cursor)->prev;
    return (*cursor)->value;
}

AppNode* AppList::pushFront(void* value) { return insertBehind(nullptr, value); }

AppNode* AppList::pushBack(void* value) { return insertBehind(tail, value); }

void AppList::insertAfter(void* value, Cursor* cursor) {
    AppNode* node = insertBehind(cursor && *cursor ? *cursor : tail, value);
    if (cursor) {
        *cursor = node;
    }
}

int AppList::addUnique(void* value, Cursor* cursor) {
    if (indexOf(value) >= 0) {
        return 0;
    }
    insertAfter(value, cursor);
    return 1;
}

void AppList::removeAt(Cursor* cursor) {
    if (!cursor || !*cursor) {
        return;
    }
    const std::unique_ptr<AppNode> node(*cursor);
    *cursor = node->next;
    unlink(node.get());
}

void AppList::clear() {
    for (Cursor cursor = head; cursor;) {
        removeAt(&cursor);
    }
}

int AppList::find(const void* value, Cursor* cursor) const {
    return findFirst([&](const void* each) { return each == value; }, cursor);
}

int AppList::findBytes(const void* bytes, std::size_t offset, std::size_t length,
                       Cursor* cursor) const {
    return findFirst(
        [&](const void* each) {
            return each && std::memcmp(static_cast<const char*>(each) + offset, bytes, length) == 0;
        },
        cursor);
}

template <typename Matches>
int AppList::findFirst(Matches matches, Cursor* cursor) const {
    AppNode* node = head;
    while (node && !matches(node->value)) {
        node = node->next;
    }
    if (node && cursor) {
        *cursor = node;
    }
    return node ? 1 : 0;
}

int AppList::indexOf(const void* value) const {
    int index = 0;
    for (const AppNode* node = head; node; node = node->next, ++index) {
        if (node->value == value) {
            return index;
        }
    }
    return -1;
}

void AppList::moveToFront(const Cursor* cursor) {
    if (!cursor || !*cursor || *cursor == head) {
        return;
    }
    unlink(*cursor);
    link(*cursor, nullptr);
}

void AppList::sort(Comparison comparison) {
    if (count() < 2) {
        return;
    }
    std::vector<void*> values;
    values.reserve(static_cast<std::size_t>(count()));
    forEach([&](void* value) { values.push_back(value); });
    std::qsort(values.data(), values.size(), sizeof(void*), comparison);
    AppNode* node = head;
    for (void* value : values) {
        node->value = value;
        node = node->next;
    }
}

AppNode* AppList::insertBehind(AppNode* node, void* value) {
    auto* added = std::make_unique<AppNode>(AppNode{nullptr, nullptr, value}).release();
    link(added, node);
    return added;
}

// Behind nothing is at the head.
void AppList::link(AppNode* node, AppNode* behind) {
    node->prev = behind;
    node->next = behind ? behind->next : head;
    (node->next ? node->next->prev : tail) = node;
    (behind ? behind->next : head) = node;
    ++last;
}

void AppList::unlink(AppNode* node) {
    (node->prev ? node->prev->next : head) = node->next;
    (node->next ? node->next->prev : tail) = node->prev;
    --last;
}

}  // namespace juntora
