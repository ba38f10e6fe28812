// The list that holds what the hub keeps in an order of its own: the rows of its table, and the
// windows that watch a row.
#pragma once

#include <cstddef>
#include <memory>

namespace juntora {

/// A place in a list. The list owns it.
struct AppNode {
    AppNode* next;
    AppNode* prev;
    void* value;
};

/// A doubly linked list of pointers. It owns its nodes and never what the values point at; a value
/// may be null, and the same one may stand in it several times. Values are as wide as a pointer,
/// for most of them are the addresses of heap objects. For one thread.
///
/// A cursor is a word that holds a node. Operations that take the address of one accept a null
/// address and a cursor without a node alike. Another cursor on a node that is removed dangles.
class AppList {
public:
    using Cursor = AppNode*;
    /// Of two values, given by their addresses in an array: below, at or above 0, as qsort has it.
    using Comparison = int (*)(const void* left, const void* right);

    AppList() = default;
    ~AppList() { clear(); }
    AppList(const AppList&) = delete;
    AppList& operator=(const AppList&) = delete;

    int count() const { return last + 1; }

    /// A new cursor at the head; null in an empty list.
    std::unique_ptr<Cursor> newCursor() const;
    /// The same by value, for those who keep their cursor on the stack.
    Cursor atHead() const { return head; }
    Cursor atTail() const { return tail; }
    /// The value at the cursor; null without a node.
    static void* at(const Cursor* cursor) { return cursor && *cursor ? (*cursor)->value : nullptr; }

    /// Moves on and returns the value there. At the last node: null, and the cursor stays.
    static void* next(Cursor* cursor);
    /// Moves back and returns the value there. At the first node: null, and the cursor stays.
    static void* previous(Cursor* cursor);

    /// Puts a new node at the head and returns it.
    AppNode* pushFront(void* value);
    /// Puts a new node at the tail and returns it.
    AppNode* pushBack(void* value);
    /// Puts a new node behind the cursor's, or at the tail if there is none, and moves the cursor
    /// to it.
    void insertAfter(void* value, Cursor* cursor);
    /// As insertAfter, unless the value is in the list already. Returns 1 if it was added, else 0.
    int addUnique(void* value, Cursor* cursor);

    /// Takes the cursor's node out; the cursor moves to the one behind it, to none at the tail.
    void removeAt(Cursor* cursor);
    /// Takes all nodes out.
    void clear();

    /// Puts the cursor on the first node with this value. 1, or 0 (and the cursor stays).
    int find(const void* value, Cursor* cursor) const;
    /// The same for the first value at which the `length` bytes from `offset` on are `bytes`.
    int findBytes(const void* bytes, std::size_t offset, std::size_t length, Cursor* cursor) const;
    /// How many nodes stand before the first one with this value; -1 if there is none.
    int indexOf(const void* value) const;

    /// Moves the cursor's node to the head; the cursor stays on it.
    void moveToFront(const Cursor* cursor);
    /// Orders the values; each cursor stays on its place in the list, not on its value.
    void sort(Comparison comparison);

    /// Calls `visit(value)` for each value from the head on. The list must not change meanwhile.
    template <typename Visit>
    void forEach(Visit visit) const {
        for (const AppNode* node = head; node; node = node->next) {
            visit(node->value);
        }
    }

private:
    template <typename Matches>
    int findFirst(Matches matches, Cursor* cursor) const;
    AppNode* insertBehind(AppNode* node, void* value);
    void link(AppNode* node, AppNode* behind);
    void unlink(AppNode* node);

    int last = -1;  ///< Number of values minus one.
    AppNode* head = nullptr;
    AppNode* tail = nullptr;
};

}  // namespace juntora
