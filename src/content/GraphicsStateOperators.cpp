#include "content/GraphicsStateOperators.h"

#include "document/ArgVec.h"
#include "content/GraphicsStateDefault.h"
#include "content/GraphicsStateStack.h"
#include "document/Resources.h"
#include "document/Dictionary.h"
#include "objects/SoftMask.h"
#include "document/Limits.h"

#include <Quillet/Budget.h>
#include <Quillet/Page.h>

#include <array>
#include <vector>

namespace Quillet {

namespace {

using Params = Raster::AffineTransform::Params;
/// Up to two accepted names; an empty text accepts nothing.
using Names = std::array<const char*, 2>;

constexpr GraphicsStateDefault<bool> c_boolDefaults[] = {
    {"OP", false, false}, {"op", false, false}, {"SA", false, false}, {"AIS", false, false}, {"TK", false, false},
};

constexpr GraphicsStateDefault<double> c_realDefaults[] = {
    {"OPM", false, 0.0},
    {"FL", false, -1.0},
    {"SM", false, -1.0},
};

constexpr GraphicsStateDefault<Names> c_nameDefaults[] = {
    {"RI", false, {"RelativeColorimetric", ""}},
    {"BG", false, {"", ""}},
    {"UCR", false, {"", ""}},
    {"BG2", false, {"Default", ""}},
    {"UCR2", false, {"Default", ""}},
    {"HT", false, {"Default", ""}},
    {"TR", true, {"Identity", ""}},
    {"TR2", true, {"Default", ""}},
    {"Name", false, {"", ""}},
};

bool IsCurrentToken(const Parser& parser, bool value)
{
    return parser.tokenType == Token::TokenKeyword && parser.tokenText == (value ? "true" : "false");
}

bool IsCurrentToken(const Parser& parser, double value)
{
    if (parser.tokenType == Token::TokenInt) return static_cast<double>(parser.tokenInt) == value;
    return parser.tokenType == Token::TokenReal && parser.tokenReal == value;
}

bool IsCurrentToken(const Parser& parser, const Names& names)
{
    if (parser.tokenType != Token::TokenName || parser.tokenText.empty()) return false;
    return parser.tokenText == names[0] || parser.tokenText == names[1];
}

enum class Loss { None, Minor, Significant };

template <typename T>
Loss GetLoss(const GraphicsStateDefault<T>& row, const Parser& parser)
{
    if (IsCurrentToken(parser, row.value)) return Loss::None;
    return row.isSignificant ? Loss::Significant : Loss::Minor;
}

/// What is lost by passing over the current token, the value of `key`.
Loss GetLoss(const std::string& key, const Parser& parser)
{
    if (const auto* row = Find(c_boolDefaults, key)) return GetLoss(*row, parser);
    if (const auto* row = Find(c_realDefaults, key)) return GetLoss(*row, parser);
    if (const auto* row = Find(c_nameDefaults, key)) return GetLoss(*row, parser);
    return Loss::Significant;
}

} // namespace

void OpSave::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Page, args, 0);
    stack->Save();
}

void OpRestore::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Page, args, 0);
    if (Check(stack->states.size() >= 2, Error::General)) stack->Restore();
}

void OpTransform::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Page, args, 6);
    Params matrix = args.GetMatrix();
    matrix.EnsureHasInverse();
    GraphicsState& state = GetState();
    state.SetLtCurrent(state.ltCurrent * matrix);
}

void OpLineDash::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Page | OperatorCategory::Text, args, -1);
    std::vector<double> dash;
    for (int i = 0; i + 1 < args.count; ++i)
        dash.push_back(args.GetReal(i));
    GetState().SetLineDash(dash, args.GetReal(args.count - 1));
}

void OpGraphicsState::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Page | OperatorCategory::Text, args, 1);
    if (!Check(static_cast<bool>(GetResources()), Error::General)) return;
    const Ref ref = GetResources()->GetExtGStateRef(args.GetName(0));
    if (!Check(!ref.IsNull(), Error::General)) return;

    auto parser = Kernel::MakeCounted<Parser>(ref);
    if (!parser->Skip(Token::TokenDictStart)) return;
    unsigned long long position = parser->GetPosition();
    while (parser->NextToken() != Token::TokenDictEnd) {
        const std::string key = parser->GetTokenName();
        if (parser->tokenType == Token::TokenEnd) return;
        ApplyEntry(key, *parser);
        // A short operator may name a long dictionary again and again.
        const unsigned long long next = parser->GetPosition();
        if (!Budget::Spend(Limits::c_operatorUnits + next - position)) return;
        position = next;
    }
}

void OpGraphicsState::ApplyEntry(const std::string& key, Parser& parser) const
{
    GraphicsState& state = GetState();
    if (key == "Type") {
        parser.Skip(Token::TokenName, "ExtGState");
    } else if (key == "LW") {
        state.SetLineWidth(parser.NextReal());
    } else if (key == "D") {
        SetLineDash(parser);
    } else if (key == "LC") {
        state.SetLineCap(ArgVec::HoldToInt(parser.NextInt()));
    } else if (key == "LJ") {
        state.SetLineJoin(ArgVec::HoldToInt(parser.NextInt()));
    } else if (key == "ML") {
        state.SetMiterLimit(parser.NextReal());
    } else if (key == "CA") {
        state.SetAlpha(true, parser.NextReal());
    } else if (key == "ca") {
        state.SetAlpha(false, parser.NextReal());
    } else if (key == "BM") {
        SetBlendMode(parser);
    } else if (key == "SMask") {
        SetSoftMask(parser);
    } else {
        SkipEntry(key, parser);
    }
}

void OpGraphicsState::SetLineDash(Parser& parser) const
{
    parser.NextToken();
    if (!Check(parser.tokenType == Token::TokenArrayStart, Error::General)) return parser.SkipToObjectEnd();
    parser.NextToken();
    if (!Check(parser.tokenType == Token::TokenArrayStart, Error::General)) {
        // Behind the damaged value the next key stands, if the array still has an end to be found.
        parser.SkipToObjectEnd();
        if (parser.tokenType != Token::TokenArrayEnd) parser.SkipToArrayEnd();
        return;
    }
    std::vector<double> dash;
    parser.GetTokenRealVec(dash);
    const double phase = parser.NextReal();
    Check(parser.NextToken() == Token::TokenArrayEnd, Error::General);
    GetState().SetLineDash(dash, phase);
}

void OpGraphicsState::SetBlendMode(Parser& parser) const
{
    using namespace Renderer::FillBlendMode;
    parser.NextToken();
    std::vector<std::string> names;
    parser.GetTokenNameVec(names);
    Budget::Spend(Limits::c_entryUnits * names.size());
    BlendMode mode = Normal;
    for (const std::string& name : names) {
        const BlendMode known = GetByName(name.c_str());
        if (known == Unknown) continue;
        mode = known;
        break;
    }
    GetState().SetBlendMode(mode);
}

void OpGraphicsState::SetSoftMask(Parser& parser) const
{
    if (parser.NextToken() == Token::TokenName) {
        Check(parser.tokenText == "None", Error::UnimplementedTransparency);
        GetState().SetSoftMask(nullptr);
        return;
    }
    auto dictionary = Kernel::MakeCounted<Dictionary>(parser.GetTokenRef());
    Budget::Spend(Limits::c_objectUnits);
    GetState().SetSoftMask(Kernel::MakeCounted<SoftMask>(std::move(dictionary), GetPage()));
    // It is kept with what it masks, but nothing draws it yet.
    OnError(Error::UnimplementedTransparency);
    parser.SkipToObjectEnd();
}

void OpGraphicsState::SkipEntry(const std::string& key, Parser& parser) const
{
    parser.NextToken();
    const Loss loss = GetLoss(key, parser);
    if (loss == Loss::None) return;
    if (loss == Loss::Significant) Check(IsInCompatibility(), Error::UnimplementedFeature);
    parser.SkipToObjectEnd();
}

} // namespace Quillet
