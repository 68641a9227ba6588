#include <basutl/BuArrayTempl.h>
#include <basutl/BuString.h>
#include <basutl/BuTemplateArray.h>
#include <basutl/BuTreeItemTempl.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace {

using Item = BuTreeItemTempl<int>;

// A value that shares a token, whose owners tell how many values are alive.
struct Counted
{
    int value;
    std::shared_ptr<int> token;
};

TEST(BuObjectArrayTempl, BehavesLikeAVector)
{
    std::mt19937 random(4);
    const auto token = std::make_shared<int>();
    {
        BuObjectArrayTempl<Counted> ours;
        std::vector<int> expected;
        for (int i = 0; i < 2000; ++i) {
            const int count = ours.GetCount();
            const int index = static_cast<int>(random() % static_cast<unsigned>(count + 1));
            if (random() % 4 == 0 && index < count) {
                ours.RemoveAt(index);
                expected.erase(expected.begin() + index);
            } else {
                EXPECT_EQ(index == count ? ours.Add({i, token}) : ours.Insert(index, {i, token}), index);
                expected.insert(expected.begin() + index, i);
            }
            ASSERT_TRUE(std::ranges::equal(ours, expected, {}, &Counted::value)) << "after change " << i;
        }
        EXPECT_EQ(token.use_count(), 1 + ours.GetCount());
        EXPECT_EQ(ours.Insert(1'000'000, {1, token}), static_cast<int>(expected.size()));
    }
    EXPECT_EQ(token.use_count(), 1);
}

TEST(BuObjectArrayTempl, CopiesAndTakesItsOwnItems)
{
    BuTemplateArray<BuString> names;
    for (int i = 0; i < 20; ++i)
        names.Add(BuString::FromDouble(i, 30));
    for (int i = 0; i < 20; ++i)
        names.Insert(0, names[names.GetCount() - 1]);
    BuTemplateArray<BuString> copy = names;
    EXPECT_TRUE(copy.Append(copy));
    const BuTemplateArray<BuString>& same = copy;
    copy = same;
    ASSERT_EQ(copy.GetCount(), 80);
    for (int i = 0; i < 80; ++i)
        EXPECT_STREQ(copy[i], names[i % 40]) << i;
    copy = BuTemplateArray<BuString>();
    EXPECT_TRUE(copy.IsEmpty() && names.GetCount() == 40);
    EXPECT_EQ(BuArrayTempl<double>().GetData(), nullptr);
}

TEST(BuTreeItemTempl, StaysValidThroughEveryChange)
{
    std::mt19937 random(5);
    Item root;
    std::vector<int> expected;
    for (int i = 0; i < 500; ++i) {
        if (random() % 3 != 0 || expected.empty()) {
            Item* const child = root.AppendChild(i);
            child->AppendChild(-i)->AppendChild(i);
            expected.push_back(i);
        } else {
            const auto index = static_cast<std::ptrdiff_t>(random() % expected.size());
            Item::Node* node = root.GetFirstChildNode();
            for (auto step = index; step > 0; --step)
                node = node->next;
            root.RemoveChild(node);
            expected.erase(expected.begin() + index);
        }
        std::vector<int> values;
        for (const Item::Node* node = root.GetFirstChildNode(); node != nullptr; node = node->next)
            values.push_back(node->item->GetData());
        ASSERT_TRUE(root.IsValid()) << "after change " << i;
        ASSERT_EQ(values, expected) << "after change " << i;
    }
    EXPECT_EQ(root.GetLastChildNode()->item->GetParent(), &root);
    root.RemoveAllChildren();
    EXPECT_TRUE(root.IsValid() && root.GetChildCount() == 0 && root.GetParent() == nullptr);
}

TEST(BuTreeItemTempl, ReleasesATreeOfAnyDepth)
{
    Item root;
    Item* deepest = root.AppendChild(0);
    for (int i = 1; i < 1'000'000; ++i) {
        deepest->AppendChild(-1);
        deepest = deepest->AppendChild(i);
    }
    root.RemoveChild(root.GetFirstChildNode());
    EXPECT_TRUE(root.IsValid());
}

}  // namespace
