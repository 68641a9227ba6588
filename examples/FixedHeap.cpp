// A pool for the nodes of a tree, and the block heap of the process.
#include <TuvoUtil/FixedHeap.h>

#include <cstdio>
#include <initializer_list>
#include <new>

namespace {

struct Node
{
    int key;
    Node* left;
    Node* right;
};

Node* Insert(VFixedHeap& pool, Node* root, int key)
{
    if (root == nullptr) {
        void* const block = pool.Allocate();
        return block != nullptr ? new (block) Node{key, nullptr, nullptr} : nullptr;
    }
    Node*& branch = key < root->key ? root->left : root->right;
    branch = Insert(pool, branch, key);
    return root;
}

void Print(const Node* root)
{
    if (root == nullptr)
        return;
    Print(root->left);
    std::printf(" %d", root->key);
    Print(root->right);
}

}  // namespace

int main()
{
    VFixedHeap pool(64, sizeof(Node), 0, nullptr);  // pages of 64 nodes, made as they are needed
    Node* root = nullptr;
    for (const int key : {50, 20, 70, 10, 30, 60, 80})
        root = Insert(pool, root, key);
    std::printf("in order:");
    Print(root);
    std::printf("\nblocks of %u bytes, the root is %s\n", pool.GetClassSize(),
                pool.IsPointerInHeap(root) ? "in the pool" : "elsewhere");
    int onStack = 0;
    std::printf("an address that is not the pool's is refused: %s\n", pool.Free(&onStack) ? "no" : "yes");
    // The pool releases all its nodes at once when it goes out of scope.

    void* const early = VxMalloc(40);  // the block heap is still off: this comes from malloc
    InitVxHeap();
    std::printf("block heap %s\n", IsVxHeapEnabled() ? "on" : "off");
    void* const block = VxRealloc(VxMalloc(24), 100);
    VxFree(block);
    VxFree(early);  // knows where it came from
}
