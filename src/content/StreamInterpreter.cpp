#include "content/StreamInterpreter.h"

#include "content/ColourOperators.h"
#include "colour/ColourSpaceFactory.h"
#include "document/ArgVec.h"
#include "document/DocumentState.h"
#include "content/GraphicsStateOperators.h"
#include "content/GraphicsStateStack.h"
#include "content/MarkedContentOperators.h"
#include "content/PathOperators.h"
#include "document/Resources.h"
#include "content/TextOperators.h"
#include "content/XObjectOperators.h"
#include "document/Guard.h"
#include "document/Parser.h"
#include "content/OpInlineImage.h"
#include "content/OpShade.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>
#include <Kernel/Abortable.h>
#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

#include <utility>

namespace Quillet {

namespace {

using Kernel::Counted;

constexpr std::size_t c_tableSize = 100;
constexpr OperatorCategory::Type c_stateMask = OperatorCategory::Page | OperatorCategory::Text;

/// Makes a context the stack's as long as it lives.
class InnermostContext
{
public:
    InnermostContext(GraphicsStateStack& usedStack, const ContentContext& context)
        : stack(usedStack), outer(std::exchange(stack.context, &context))
    {}
    ~InnermostContext() { stack.context = outer; }
    InnermostContext(const InnermostContext&) = delete;
    InnermostContext& operator=(const InnermostContext&) = delete;

private:
    GraphicsStateStack& stack;
    const ContentContext* const outer;
};

} // namespace

StreamInterpreter::StreamInterpreter(Kernel::NonCounted<const Page> page)
    : StreamInterpreter(Kernel::MakeCounted<GraphicsStateStack>(page), page->GetContentsStream())
{}

StreamInterpreter::StreamInterpreter(Counted<GraphicsStateStack> runStack, Counted<SequentialSource> source)
    : parser(Kernel::MakeCounted<Parser>(std::move(source))), stack(std::move(runStack)), context(MakeContext())
{
    if (stack->operators.empty()) RegisterOperators();
}

StreamInterpreter::~StreamInterpreter() = default;

ContentContext StreamInterpreter::MakeContext() const
{
    const Kernel::NonCounted<ColourSpaceFactory> factory = stack->GetColourSpaceFactory();
    return {parser, factory->MakeDeviceGray(stack->resources), factory->MakeDeviceRgb(stack->resources),
            factory->MakeDeviceCmyk(stack->resources)};
}

void StreamInterpreter::RegisterOperator(const char* keyword, std::unique_ptr<Operator> op)
{
    op->Init(stack);
    stack->operators[keyword] = std::move(op);
}

template <typename Handler, typename... Arguments>
void StreamInterpreter::Add(const char* keyword, Arguments&&... arguments)
{
    RegisterOperator(keyword, std::make_unique<Handler>(std::forward<Arguments>(arguments)...));
}

void StreamInterpreter::RegisterOperators()
{
    stack->operators.max_load_factor(1.0F);
    stack->operators.reserve(c_tableSize);
    RegisterSpecialOps();
    RegisterGraphicStateOps();
    RegisterPathOps();
    RegisterTextOps();
    RegisterColourOps();
}

void StreamInterpreter::RegisterSpecialOps()
{
    Add<OpCompatibility>("BX", true);
    Add<OpCompatibility>("EX", false);
    Add<OpIgnore>("DP");
    Add<OpIgnore>("MP");
    Add<OpIgnore>("i");
    Add<OpIgnore>("ri");
    Add<OpXObject>("Do");
    Add<OpBeginMarkedContent>("BMC");
    Add<OpBeginMarkedContentProperties>("BDC");
    Add<OpEndMarkedContent>("EMC");
    Add<OpInlineImage>("BI");
}

void StreamInterpreter::RegisterGraphicStateOps()
{
    Add<OpSave>("q");
    Add<OpRestore>("Q");
    Add<OpTransform>("cm");
    Add<OpGraphicsState>("gs");
    Add<OpLineDash>("d");
    Add<OpSet1Real>("w", c_stateMask, &GraphicsState::SetLineWidth, "LineWidth");
    Add<OpSet1Int>("J", c_stateMask, &GraphicsState::SetLineCap, "LineCap");
    Add<OpSet1Int>("j", c_stateMask, &GraphicsState::SetLineJoin, "LineJoin");
    Add<OpSet1Real>("M", c_stateMask, &GraphicsState::SetMiterLimit, "LineMitre");
}

void StreamInterpreter::RegisterPathOps()
{
    using enum Geometry::WindingOrderMode;
    using enum PathEnd;
    Add<OpMoveTo>("m");
    Add<OpLineTo>("l");
    Add<OpRectangle>("re");
    Add<OpCurveToC>("c");
    Add<OpCurveToV>("v");
    Add<OpCurveToY>("y");
    Add<OpClosePath>("h");
    Add<OpPaintPath>("S", Fill::Stroke, NonZero, KeepOpen);
    Add<OpPaintPath>("s", Fill::Stroke, NonZero, Close);
    Add<OpPaintPath>("f", Fill::Fill, NonZero, KeepOpen);
    Add<OpPaintPath>("F", Fill::Fill, NonZero, KeepOpen);
    Add<OpPaintPath>("f*", Fill::Fill, EvenOdd, KeepOpen);
    Add<OpPaintPath>("B", Fill::FillAndStroke, NonZero, KeepOpen);
    Add<OpPaintPath>("B*", Fill::FillAndStroke, EvenOdd, KeepOpen);
    Add<OpPaintPath>("b", Fill::FillAndStroke, NonZero, Close);
    Add<OpPaintPath>("b*", Fill::FillAndStroke, EvenOdd, Close);
    Add<OpPaintPath>("n", Fill::None, NonZero, KeepOpen);
    Add<OpClippingAction>("W", ClippingAction::NonZero);
    Add<OpClippingAction>("W*", ClippingAction::EvenOdd);
}

void StreamInterpreter::RegisterTextOps()
{
    Add<OpBeginText>("BT");
    Add<OpEndText>("ET");
    Add<OpTextFont>("Tf");
    Add<OpTextPosition>("Td", false);
    Add<OpTextPosition>("TD", true);
    Add<OpTextMatrix>("Tm");
    Add<OpTextOut>("Tj");
    Add<OpTextOutArray>("TJ");
    Add<OpNewLine>("T*", false, false);
    Add<OpNewLine>("'", true, false);
    Add<OpNewLine>("\"", true, true);
    Add<OpSet1Real>("TL", c_stateMask, &GraphicsState::SetLeading, "Leading");
    Add<OpSet1Real>("Tc", c_stateMask, &GraphicsState::SetCharSpace, "CharSpace");
    Add<OpSet1Real>("Tw", c_stateMask, &GraphicsState::SetWordSpace, "WordSpace");
    Add<OpSet1Real>("Ts", c_stateMask, &GraphicsState::SetTextRise, "TextRise");
    Add<OpSet1Real>("Tz", c_stateMask, &GraphicsState::SetTextWidth, "TextWidth");
    Add<OpSet1Int>("Tr", c_stateMask, &GraphicsState::SetTextRenderMode, "TextRenderMode");
}

void StreamInterpreter::RegisterColourOps()
{
    Add<OpSetColourSpace>("cs", false);
    Add<OpSetColourSpace>("CS", true);
    Add<OpSetColour>("sc", false);
    Add<OpSetColour>("SC", true);
    Add<OpSetColour>("scn", false);
    Add<OpSetColour>("SCN", true);
    Add<OpSetColour>("g", false, &ContentContext::deviceGray);
    Add<OpSetColour>("G", true, &ContentContext::deviceGray);
    Add<OpSetColour>("rg", false, &ContentContext::deviceRgb);
    Add<OpSetColour>("RG", true, &ContentContext::deviceRgb);
    Add<OpSetColour>("k", false, &ContentContext::deviceCmyk);
    Add<OpSetColour>("K", true, &ContentContext::deviceCmyk);
    Add<OpShade>("sh");
}

template <typename Visit>
void StreamInterpreter::Run(Visit visit)
{
    const Guard::Descent descent;
    const ErrorHandler* handler = stack->GetErrorHandler();
    if (!handler->Check(static_cast<bool>(descent), Error::General)) return;

    const RunningContent running(*stack->page, parser.Get());
    const InnermostContext innermost(*stack, context);
    const bool* abort = stack->GetAbortPointer();
    ArgVec args(handler);
    for (;;) {
        const Operator* op = Parse(args);
        if (op == &endOperator || Kernel::IsAborted(abort)) return;
        if (!Budget::Spend(Limits::c_operatorUnits)) return;
        visit(*op, args);
    }
}

Counted<GroupObject> StreamInterpreter::Interpret()
{
    if (!parser) return nullptr;
    Run([](const Operator& op, const ArgVec& args) { op.Execute(args); });
    stack->FlushObjects();
    Counted<GroupObject> root = stack->root;
    End();
    return root;
}

void StreamInterpreter::AddRasterFormats(RasterFormatPicker& picker)
{
    if (!parser) return;
    Run([&picker](const Operator& op, const ArgVec& args) { op.AddRasterFormats(picker, args); });
    End();
}

void StreamInterpreter::End()
{
    stack = nullptr;
    parser = nullptr;
}

const Operator* StreamInterpreter::Parse(ArgVec& args)
{
    args.clear();
    for (;;) {
        parser->NextToken();
        const Operator* op = ParseObject(args);
        if (!op) continue;
        args.op = parser->tokenText;
        return op;
    }
}

const Operator* StreamInterpreter::ParseObject(ArgVec& args)
{
    switch (parser->tokenType) {
    case Token::TokenKeyword: {
        const auto found = stack->operators.find(parser->tokenText);
        return found == stack->operators.end() ? &defaultOperator : found->second.get();
    }
    case Token::TokenInt:
        args.AddInt(parser->tokenInt);
        return nullptr;
    case Token::TokenReal:
        args.AddReal(parser->tokenReal);
        return nullptr;
    case Token::TokenName:
        args.AddName(parser->tokenText);
        return nullptr;
    case Token::TokenString:
        args.AddStringBuf(parser->tokenBytes);
        return nullptr;
    case Token::TokenArrayStart:
        ParseArray(args);
        return nullptr;
    case Token::TokenDictStart:
        args.AddToken(Token::TokenDictStart);
        parser->SkipToObjectEnd();
        return nullptr;
    case Token::TokenEnd:
        return &endOperator;
    default:
        return &defaultOperator;
    }
}

void StreamInterpreter::ParseArray(ArgVec& args)
{
    const Guard::Descent descent;
    if (!descent) {
        parser->SkipToObjectEnd();
        return;
    }
    while (parser->NextToken() != Token::TokenArrayEnd && parser->tokenType != Token::TokenEnd)
        ParseObject(args);
}

} // namespace Quillet
