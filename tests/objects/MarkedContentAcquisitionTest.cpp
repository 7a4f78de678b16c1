#include "MakeObjects.h"

#include <Quillet/LayerObject.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Quillet::Test {
namespace {

/// Runs a page of one letter a step: a to p draw, q and Q save and restore, W opens a clip group, < and > begin and end
/// a layer.
class PageRun
{
public:
    Kernel::Counted<GroupObject> root = MakeGroup();

    explicit PageRun(const std::string& steps)
    {
        for (const char step : steps)
            Do(step);
    }

    /// Groups in round brackets, layers in square ones.
    std::string Print() const { return Print(*root); }

private:
    struct Sequence
    {
        Kernel::Counted<Object> previous;
        Kernel::Counted<LayerObject> layer;
    };

    std::vector<Kernel::Counted<GroupObject>> currentGroups{root};
    std::vector<Sequence> sequences;

    void Do(char step)
    {
        if (step == 'q') {
            currentGroups.push_back(currentGroups.back());
        } else if (step == 'Q') {
            currentGroups.pop_back();
        } else if (step == 'W') {
            const auto group = MakeGroup();
            currentGroups.back()->Add(group);
            currentGroups.back() = group;
        } else if (step == '<') {
            sequences.push_back({GetPrevious(), Kernel::MakeCounted<LayerObject>(nullptr)});
        } else if (step == '>') {
            End();
        } else {
            const auto object = MakeBox({0, 0, 1, 1});
            object->SetId(step);
            currentGroups.back()->Add(object);
        }
    }

    Kernel::Counted<Object> GetPrevious() const
    {
        Object* object = currentGroups.back().Get();
        while (object->AsGroup() && !object->AsGroup()->children.empty())
            object = object->AsGroup()->children.back().Get();
        return object;
    }

    void End()
    {
        const Sequence sequence = sequences.back();
        sequences.pop_back();
        const auto source = sequence.layer->AcquireMarkedContent(sequence.previous);
        if (!source) return;
        if (!sequence.layer->children.empty()) currentGroups.back() = source;
        currentGroups.back()->Add(sequence.layer);
    }

    static std::string Print(const GroupObject& group)
    {
        std::string text;
        for (const auto& child : group.children) {
            EXPECT_EQ(child->parent.Get(), &group);
            text += child->AsGroup() ? Print(*child->AsGroup()) : std::string(1, static_cast<char>(child->id));
        }
        return group.IsLayer() ? "[" + text + "]" : "(" + text + ")";
    }
};

struct Row
{
    const char* steps;
    const char* tree;
};

class AcquireMarkedContent : public testing::TestWithParam<Row>
{};

TEST_P(AcquireMarkedContent, CutsWhatCameAfterTheMark)
{
    EXPECT_EQ(PageRun(GetParam().steps).Print(), GetParam().tree) << GetParam().steps;
}

INSTANTIATE_TEST_SUITE_P(
    Pages, AcquireMarkedContent,
    testing::Values(Row{"aq<bc>dQe", "(a[bc]de)"},    // siblings
                    Row{"a<>b", "(a[]b)"},            // nothing between
                    Row{"<>a", "([]a)"},              // nothing between, on an empty page
                    Row{"<ab>c", "([ab]c)"},          // from the page's start: the mark is the root
                    Row{"a<qWbcQ>d", "(a[(bc)]d)"},   // clips go along whole
                    Row{"a<bqWc>dQe", "(a[b(c)]de)"}, // ends within a clip
                    Row{"aq<bQc>d", "(a[bc]d)"},      // ends after its state
                    Row{"aqWb<Qc>d", "(a(b)[c]d)"},   // the mark was the clip's last
                    Row{"qWaQqWb<QqWcQ>d", "((a)(b)[(c)]d)"},
                    Row{"aqWb<cQd>e", "(a(bc)de)"},  // cannot be cut: it would leave half a clip behind
                    Row{"qW<aQb>c", "([(a)b]c)"},    // the mark is an empty clip that was filled since
                    Row{"qW<a>bQc", "([(a)]bc)"},    // what follows goes to where the layer is
                    Row{"qWW<aQb>c", "([((a))b]c)"}, // the filled group is first in its own
                    Row{"qWaW<bQc>d", "((a(b))cd)"}, // the filled group is not first: cannot be cut
                    Row{"a<b<c>d>e", "(a[b[c]d]e)"}, // nested
                    Row{"a<b<cd>>e", "(a[b[cd]]e)"}));

TEST(AcquireMarkedContentAlone, TakesNothingFromAnObjectOutsideAnyTree)
{
    const auto layer = Kernel::MakeCounted<LayerObject>(nullptr);
    EXPECT_EQ(layer->AcquireMarkedContent(MakeBox({0, 0, 1, 1})), nullptr);
    EXPECT_EQ(layer->AcquireMarkedContent(nullptr), nullptr);
    EXPECT_TRUE(layer->children.empty());
}

} // namespace
} // namespace Quillet::Test
