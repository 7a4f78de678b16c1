#include "PageMaker.h"

#include "Guarded.h"
#include "Interrupt.h"
#include "exporters/Costs.h"
#include "exporters/Format.h"

#include <Quillet/Budget.h>
#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

namespace Host {

namespace {

using namespace Quillet;

/// A page while a worker has it.
struct PageTree
{
    Kernel::Counted<const Page> page;
    Kernel::Counted<GroupObject> root;
};

PageTree BuildPage(const PdfDocument& document, int index, bool isRaw)
{
    PageTree tree;
    tree.page = document.GetPage(index);
    document.SetPage(index);
    if (tree.page) tree.root = tree.page->BuildObjects();
    if (!tree.root) return tree;
    if (isRaw) {
        tree.root->UpdateBBoxes();
        return tree;
    }
    const auto size = PageBase::ApplyRotate(tree.page->GetTrimBox(), tree.page->GetRotate());
    tree.root->Reduce({0, 0, size.GetWidth(), size.GetHeight()});
    return tree;
}

/// False for a step of the work on a page that did not come to its end; the next page may need less memory.
template <typename Step>
bool TryStep(PageResult& result, Step step)
{
    const Outcome outcome = Guarded(step);
    if (!outcome.IsDone()) result.isOutOfMemory = outcome.type == Error::None;
    return outcome.IsDone();
}

} // namespace

void PageMaker::Begin(const PdfDocument& document)
{
    profiles = document.GetICCProfiles(-1);
    title = document.GetTitle();
}

PageResult PageMaker::Make(OpenedDocument& opened, long long place, int index)
{
    PageResult result;
    const PdfDocument& document = *opened.document;
    // Numbers depend on the page alone, and not on the pages that this document happened to build before.
    document.SetNextObjectId(0);
    const Budget::Scope scope = document.OpenScope(Budget::Share::Page);
    result.isUnpaid = !Budget::Spend(Costs::c_page);
    PageTree tree;
    if (!result.isUnpaid) TryStep(result, [&] { tree = BuildPage(document, index, options.isRaw); });
    result.isFound = tree.page != nullptr;
    result.problems = opened.counter.Take();
    PageNumbers::Given given;
    const bool isNumbered =
        TryStep(result, [&] { given = numbers.Give(place, document.GetNextObjectId(), tree.root.Get()); });
    if (!isNumbered || !tree.root || Interrupt::IsSet()) return result;
    TryStep(result, [&] {
        result.text = options.format->makePage(
            {*tree.page, index, *tree.root, result.problems, given.firstId, given.styleNames, title, profiles});
    });
    return result;
}

PageResult PageMaker::Skip(long long place)
{
    numbers.Give(place, 0, nullptr);
    return {};
}

LongText PageMaker::MakeTail(const PdfDocument& document) const
{
    if (!options.format->makeTail) return {};
    const Budget::Scope scope = document.OpenScope(Budget::Share::All);
    return options.format->makeTail(numbers.GetStyles());
}

} // namespace Host
