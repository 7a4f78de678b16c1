#pragma once

#include "document/ArgVec.h"
#include "content/GraphicsStateStack.h"
#include "content/StreamInterpreter.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>
#include <Quillet/PathObject.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Quillet::Test {

using Probe = std::function<void(GraphicsStateStack&, const ArgVec&)>;

/// An operator that looks at the run where it stands.
class OpProbe : public Operator
{
public:
    explicit OpProbe(Probe atCall) : probe(std::move(atCall)) {}
    void Execute(const ArgVec& args) const override { probe(*stack, args); }

    Probe probe;
};

/// A page's content, run once; `probe` is called wherever the content says "probe".
class ContentRun
{
public:
    explicit ContentRun(const std::string& content, const PageParts& parts = {}, Probe probe = {})
        : ContentRun(content, parts, std::move(probe), [](PdfDocument&) {})
    {}
    template <typename Prepare>
    ContentRun(const std::string& content, const PageParts& parts, Probe probe, Prepare prepare)
        : document(MakePagePdf(content, parts))
    {
        prepare(*document.document);
        StreamInterpreter interpreter(document->GetPage(0));
        if (probe) interpreter.RegisterOperator("probe", std::make_unique<OpProbe>(std::move(probe)));
        root = interpreter.Interpret();
    }

    std::size_t GetCount() const { return root->children.size(); }
    Kernel::Counted<PathObject> GetPath(std::size_t index) const
    {
        return Kernel::DynamicCast<PathObject>(root->children.at(index));
    }
    Kernel::Counted<GroupObject> GetGroup(std::size_t index) const
    {
        return Kernel::DynamicCast<GroupObject>(root->children.at(index));
    }
    const std::vector<int>& GetErrors() const { return document.GetErrors(); }

    TestDocument document;
    Kernel::Counted<GroupObject> root;
};

/// How often `probe` ran: a test that expects something of a probe expects that it ran, too.
template <typename Inspect>
int InspectState(const std::string& content, const PageParts& parts, Inspect inspect)
{
    int calls = 0;
    const ContentRun run(content, parts, [&](GraphicsStateStack& stack, const ArgVec&) {
        ++calls;
        inspect(stack.GetTop());
    });
    return calls;
}

} // namespace Quillet::Test
