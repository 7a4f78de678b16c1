#include "MakeObjects.h"

#include <Quillet/BitmapObject.h>
#include <Quillet/LayerObject.h>
#include <Quillet/TextLineObject.h>
#include <Quillet/TreeWalk.h>

#include <gtest/gtest.h>

#include <string>

namespace Quillet::Test {
namespace {

TEST(ObjectKind, IsThatOfTheClass)
{
    using enum Object::Kind;
    const auto line = Kernel::MakeCounted<TextLineObject>(0);
    const struct
    {
        Kernel::Counted<Object> object;
        Object::Kind kind;
    } rows[] = {
        {MakeGroup(), Group},
        {MakeGroup()->MakeTwin(), Group},
        {Kernel::MakeCounted<LayerObject>(nullptr), Layer},
        {MakeBox({0, 0, 1, 1}), Path},
        {Kernel::MakeCounted<BitmapObject>(), Bitmap},
        {line, TextLine},
        {Kernel::MakeCounted<TextLineObject>(*line, 1, line->chars.begin(), line->chars.end()), TextLine},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.object->GetKind(), row.kind);
        EXPECT_EQ(row.object->AsGroup(), dynamic_cast<GroupObject*>(row.object.Get()));
    }
}

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
    const auto root = MakeGroup(), left = MakeGroup(), inner = MakeGroup(), right = MakeGroup();
    root->Add(left);
    left->Add(MakeBox({0, 0, 1, 1}));
    left->Add(inner);
    root->children.push_back(nullptr);
    root->Add(MakeBox({0, 0, 1, 1}));
    root->Add(right);
    right->Add(MakeBox({0, 0, 1, 1}));
    int id = 0;
    for (const auto& object : {root, left, inner, right})
        object->id = ++id;
    for (const auto& leaf : {left->children[0], root->children[2], right->children[0]})
        leaf->id = ++id;

    const struct
    {
        int skippedId, lastId;
        const char* text;
    } rows[] = {
        {0, 0, "(1 (12 12-5 (123 123) 12) 1-6 (14 14-7 14) 1) "},
        {2, 0, "(1 1-6 (14 14-7 14) 1) "},
        {1, 0, ""},
        {0, 5, "(1 (12 12-5 12) 1) "},
        {3, 6, "(1 (12 12-5 12) 1-6 1) "},
    };
    for (const auto& row : rows) {
        Diary diary;
        diary.skippedId = row.skippedId;
        diary.lastId = row.lastId;
        WalkTree(*root, diary);
        EXPECT_EQ(diary.text, row.text);
    }
}

} // namespace
} // namespace Quillet::Test
