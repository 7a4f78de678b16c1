/// The reduction: an even first byte takes the rest as the content of a page, which is built and reduced with editable
/// or exact text, and its columns go to stories; an odd one takes the rest as the choices of a random tree, on which
/// each pass runs alone and all of them together.

#include "support/PdfBuilder.h"
#include "support/RandomTree.h"
#include "support/TestDocument.h"

#include "objects/reduction/Reduce.h"

#include <Quillet/Budget.h>
#include <Quillet/ColumnObject.h>
#include <Quillet/TreeWalk.h>

#include <Story/Story.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

namespace {

using namespace Quillet;

/// Enough for every operator of the longest input; the full account of a document would take seconds here.
constexpr long long c_pageWork = 8'000'000;
constexpr Object::Rect c_page{0, 0, 70, 70};
constexpr int c_largestTree = 200;

constexpr const char* c_resources =
    "/Font << /F << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> >> /XObject << /X 5 0 R >> "
    "/ExtGState << /G << /BM /Multiply /ca 0.5 >> >> /Properties << /L 6 0 R >>";

/// What the input says, and zeros behind its end.
class Bytes : public Choices
{
public:
    explicit Bytes(std::span<const std::uint8_t> input) : bytes(input) {}

    unsigned Choose(unsigned count) override
    {
        if (bytes.empty()) return 0;
        const unsigned byte = bytes.front();
        bytes = bytes.subspan(1);
        return byte % count;
    }

private:
    std::span<const std::uint8_t> bytes;
};

void CheckParents(GroupObject& root)
{
    root.VisitSubGroups([](GroupObject* group) {
        for (const auto& child : group->children)
            if (child->parent.Get() != group) std::abort();
    });
}

/// What a host asks of each column.
class StoryPass : public TreePass<>
{
public:
    Step Visit(const Object& object, const std::monostate&) override
    {
        if (object.GetKind() != Object::Kind::Column) return Step::On;
        const auto& column = static_cast<const ColumnObject&>(object);
        column.GetStoryFrameBox();
        for (const bool isWrapped : {false, true}) {
            Story::Story story;
            column.AppendTo(story, isWrapped);
        }
        return Step::On;
    }
};

void ReduceContent(unsigned options, const std::string& content)
{
    TestDocument document(MakePagePdf(
        content, {.resources = c_resources,
                  .entries = "/MediaBox [0 0 100 100] /TrimBox [10 10 90 80] /Rotate 90",
                  .objects = {PdfBuilder::MakeStream(content, "/Type /XObject /Subtype /Form /BBox [0 0 50 50] "
                                                              "/Group << /S /Transparency >>"),
                              "<< /Type /OCG /Name (Layer) >>"},
                  .catalog = "/OCProperties << /OCGs [6 0 R] /D << /Order [6 0 R] >> >>"}));
    if (!document.isOpen) return;
    document->SetBudget(Kernel::MakeCounted<Budget>(c_pageWork));
    document->SetTextFidelity(options & 2 ? TextFidelityEditable : TextFidelityExact);
    document->SetIsGroupTextLines(!(options & 4));
    const Budget::Scope scope = document->OpenScope(Budget::Share::All);
    const auto root = document.Build();
    if (!root) return;
    root->Reduce(c_page);
    CheckParents(*root);
    StoryPass stories;
    WalkTree(*root, stories);
}

void ReduceTree(unsigned options, std::span<const std::uint8_t> input)
{
    const int size = std::min(c_largestTree, static_cast<int>(input.size()));
    const auto make = [&] {
        Bytes bytes(input);
        auto root = MakeRandomTree(bytes, size, options & 2 ? Numbers::Wild : Numbers::Plain);
        root->UpdateBBoxes();
        return root;
    };
    const auto all = make();
    for (const Reduction::Pass& pass : Reduction::GetPasses()) {
        const auto root = make();
        pass.run(*root, c_page);
        pass.run(*all, c_page);
        CheckParents(*root);
    }
    CheckParents(*all);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const std::span<const std::uint8_t> input(data + 1, size - 1);
    if (data[0] % 2 == 0) {
        ReduceContent(data[0], std::string(input.begin(), input.end()));
    } else {
        ReduceTree(data[0], input);
    }
    return 0;
}
