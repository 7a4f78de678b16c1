#include "MakeObjects.h"

#include <Quillet/TreeWalk.h>

#include <gtest/gtest.h>

#include <string>

namespace Quillet::Test {
namespace {

/// Writes down where it comes; the level is the path of ids that leads there.
struct Diary : TreePass<std::string>
{
    Step Enter(const GroupObject& group, std::string& level) override
    {
        if (group.id == skippedId) return Step::Past;
        level += std::to_string(group.id);
        text += "(" + level + " ";
        return Step::On;
    }

    Step Visit(const Object& leaf, const std::string& level) override
    {
        text += level + "-" + std::to_string(leaf.id) + " ";
        return leaf.id == lastId ? Step::End : Step::On;
    }

    void Leave(const GroupObject&, const std::string& level) override { text += level + ") "; }

    int skippedId = -1;
    int lastId = -1;
    std::string text;
};

TEST(TreeWalk, CarriesWhatItGathersDown)
{
    const auto inner = MakeGroup(), left = MakeGroup({MakeBox(), inner}), right = MakeGroup({MakeBox()});
    const auto root = MakeGroup({left, MakeBox(), right});
    root->children.insert(root->children.begin() + 1, nullptr);
    int id = 0;
    for (const Kernel::Counted<Object>& object :
         GroupObject::Children{root, left, inner, right, left->children[0], root->children[2], right->children[0]})
        object->id = ++id;

    const auto walk = [&](int skippedId, int lastId) {
        Diary diary;
        diary.skippedId = skippedId;
        diary.lastId = lastId;
        WalkTree(*root, diary);
        return diary.text;
    };
    EXPECT_EQ(walk(0, 0), "(1 (12 12-5 (123 123) 12) 1-6 (14 14-7 14) 1) ");
    EXPECT_EQ(walk(2, 0), "(1 1-6 (14 14-7 14) 1) ");
    EXPECT_EQ(walk(1, 0), "");
    EXPECT_EQ(walk(0, 5), "(1 (12 12-5 12) 1) ");
    EXPECT_EQ(walk(3, 6), "(1 (12 12-5 12) 1-6 1) ");
}

} // namespace
} // namespace Quillet::Test
