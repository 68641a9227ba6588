// An item of a tree: some data, a parent, and a doubly linked list of children that it owns.
//
//   BuTreeItemTempl<Section*, BuCRTAllocator> root;
//   auto* child = root.AppendChild(section);     // null when memory is exhausted
//   root.RemoveAllChildren();
//
// Deleting an item deletes its descendants, without recursion; what their data points to stays with the caller. Data
// must be a plain value.
#pragma once

#include <basutl/BuCRTAllocator.h>

#include <cstddef>
#include <new>
#include <type_traits>

template <typename Data, typename Allocator = BuCRTAllocator>
class BuTreeItemTempl
{
    static_assert(std::is_trivially_copyable_v<Data> && alignof(Data) <= alignof(std::max_align_t));

public:
    // One place in the list of children.
    struct Node
    {
        Node* previous = nullptr;         // null in the first one
        Node* next = nullptr;             // null in the last one
        BuTreeItemTempl* item = nullptr;  // the child; never null in a list
    };

    constexpr BuTreeItemTempl() noexcept = default;
    BuTreeItemTempl(const BuTreeItemTempl&) = delete;
    BuTreeItemTempl& operator=(const BuTreeItemTempl&) = delete;
    ~BuTreeItemTempl() { RemoveAllChildren(); }

    // The data, which is copied in.
    const Data& GetData() const noexcept { return m_data; }
    void SetData(const Data& data) noexcept { m_data = data; }

    // The item above, null for a root; the number of children, and the ends of their list, null when there are none.
    BuTreeItemTempl* GetParent() const noexcept { return m_parent; }
    int GetChildCount() const noexcept { return m_count; }
    Node* GetFirstChildNode() const noexcept { return m_head; }  // NOLINT(clang-analyzer-unix.Malloc): of no freed item
    Node* GetLastChildNode() const noexcept { return m_tail; }

    // Adds a child at the end of the list; null when memory is exhausted.
    BuTreeItemTempl* AppendChild(const Data& data) noexcept
    {
        void* const memory = Allocator::Allocate(sizeof(Linked));
        if (memory == nullptr)
            return nullptr;
        Linked* const linked = ::new (memory) Linked;
        linked->item.m_data = data;
        linked->item.m_parent = this;
        linked->node.item = &linked->item;
        linked->node.previous = m_tail;
        (m_tail != nullptr ? m_tail->next : m_head) = &linked->node;
        m_tail = &linked->node;
        ++m_count;
        return &linked->item;
    }

    // Removes one child, which must be in the list, with its descendants.
    void RemoveChild(Node* node) noexcept
    {
        node->item->RemoveAllChildren();
        (node->previous != nullptr ? node->previous->next : m_head) = node->next;
        (node->next != nullptr ? node->next->previous : m_tail) = node->previous;
        --m_count;
        Release(node);
    }

    // Removes all descendants. Each item's children are moved in front of its own place until only leaves are left, so
    // that the depth of the tree does not matter.
    void RemoveAllChildren() noexcept
    {
        while (m_head != nullptr) {
            Node* const node = m_head;
            BuTreeItemTempl* const item = node->item;
            if (item->m_head != nullptr) {
                item->m_tail->next = m_head;
                m_head->previous = item->m_tail;
                m_head = item->m_head;
                item->m_head = item->m_tail = nullptr;
                item->m_count = 0;
            } else {
                m_head = node->next;
                Release(node);
            }
        }
        m_tail = nullptr;
        m_count = 0;
    }

    // Whether list, counts and parents of the whole tree agree. For tests; recursive.
    bool IsValid() const noexcept
    {
        int count = 0;
        const Node* previous = nullptr;
        for (const Node* node = m_head; node != nullptr; previous = node, node = node->next, ++count)
            if (node->previous != previous || node->item == nullptr || node->item->m_parent != this ||
                !node->item->IsValid())
                return false;
        return m_tail == previous && m_count == count;
    }

private:
    struct Linked;

    static void Release(Node* node) noexcept;

    Node* m_head = nullptr;
    Node* m_tail = nullptr;
    int m_count = 0;
    BuTreeItemTempl* m_parent = nullptr;
    Data m_data = Data();
};

// A child and its place in the list share one block.
template <typename Data, typename Allocator>
struct BuTreeItemTempl<Data, Allocator>::Linked
{
    Node node;
    BuTreeItemTempl item;
};

template <typename Data, typename Allocator>
void BuTreeItemTempl<Data, Allocator>::Release(Node* node) noexcept
{
    Linked* const linked = reinterpret_cast<Linked*>(node);
    linked->~Linked();
    Allocator::Release(linked);
}
