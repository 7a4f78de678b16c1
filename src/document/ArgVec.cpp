#include "document/ArgVec.h"

#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <Kernel/ToString.h>

#include <algorithm>
#include <array>
#include <limits>

namespace Quillet {

namespace {

/// Slots are made a few at a time.
constexpr std::size_t c_slotStep = 4;

bool IsNumber(const ArgVec::Arg& arg)
{
    return arg.type == Token::TokenInt || arg.type == Token::TokenReal;
}

std::string ToText(const ArgVec::Arg& arg)
{
    switch (arg.type) {
    case Token::TokenKeyword:
        return arg.name;
    case Token::TokenInt:
        return Kernel::ToString(arg.intValue);
    case Token::TokenReal:
        return Kernel::ToString(arg.realValue, 3);
    case Token::TokenName:
        return '/' + arg.name;
    case Token::TokenString:
        return '(' + std::string(arg.buffer.begin(), arg.buffer.end()) + ')';
    default:
        return {};
    }
}

} // namespace

int ArgVec::HoldToInt(long long value)
{
    constexpr long long lowest = std::numeric_limits<int>::lowest();
    constexpr long long highest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, lowest, highest));
}

ArgVec::Arg& ArgVec::Add(Token::Type type)
{
    const auto index = static_cast<std::size_t>(count);
    if (index == args.size()) {
        // Slots stay, so that a page pays for the longest operand list only.
        const bool isAffordable = Budget::Spend(Limits::c_entryUnits * 2 * c_slotStep);
        if (!isAffordable && count != 0) {
            args.back().type = type;
            return args.back();
        }
        args.resize(index + c_slotStep);
    }
    ++count;
    args[index].type = type;
    return args[index];
}

void ArgVec::AddInt(long long value)
{
    Arg& arg = Add(Token::TokenInt);
    arg.intValue = HoldToInt(value);
    arg.realValue = static_cast<double>(value);
}

void ArgVec::AddReal(double value)
{
    Add(Token::TokenReal).realValue = value;
}

void ArgVec::AddName(const std::string& name)
{
    Add(Token::TokenName).name = name;
}

void ArgVec::AddStringBuf(const std::vector<char>& buffer)
{
    Add(Token::TokenString).buffer = buffer;
}

bool ArgVec::AddKeyword(const std::string& keyword)
{
    Arg& arg = Add(Token::TokenKeyword);
    arg.name = keyword;
    arg.intValue = keyword == "true" ? 1 : 0;
    return keyword == "true" || keyword == "false";
}

bool ArgVec::CheckSize(int size) const
{
    return Check(count == size, Error::General);
}

Token::Type ArgVec::GetType(int index) const
{
    if (!Check(index >= 0 && index < count, Error::General)) return Token::TokenNone;
    return args[static_cast<std::size_t>(index)].type;
}

const ArgVec::Arg* ArgVec::Find(int index, Token::Type type) const
{
    const bool isThere = index >= 0 && index < count && args[static_cast<std::size_t>(index)].type == type;
    return Check(isThere, Error::General) ? &args[static_cast<std::size_t>(index)] : nullptr;
}

double ArgVec::GetReal(int index) const
{
    const bool isThere = index >= 0 && index < count && IsNumber(args[static_cast<std::size_t>(index)]);
    return Check(isThere, Error::General) ? args[static_cast<std::size_t>(index)].realValue : 0;
}

Raster::AffineTransform::Params ArgVec::GetMatrix() const
{
    const std::array<double, 6> values{GetReal(0), GetReal(1), GetReal(2), GetReal(3), GetReal(4), GetReal(5)};
    return Raster::AffineTransform::Params::FromPdf(values);
}

int ArgVec::GetInt(int index) const
{
    const Arg* arg = Find(index, Token::TokenInt);
    return arg ? arg->intValue : 0;
}

unsigned char ArgVec::GetByte(int index) const
{
    const double value = GetReal(index);
    if (!(value > 0)) return 0;
    if (value >= 1) return 255;
    return static_cast<unsigned char>(value * 255 + 0.5);
}

const std::string& ArgVec::GetName(int index) const
{
    static const std::string c_empty;
    const Arg* arg = Find(index, Token::TokenName);
    return arg ? arg->name : c_empty;
}

std::string ArgVec::GetString(int index) const
{
    const Arg* arg = Find(index, Token::TokenString);
    return arg ? std::string(arg->buffer.begin(), arg->buffer.end()) : std::string();
}

std::string ArgVec::GetNameOrString(int index) const
{
    const bool isName = index >= 0 && index < count && args[static_cast<std::size_t>(index)].type == Token::TokenName;
    return isName ? GetName(index) : GetString(index);
}

const std::vector<char>& ArgVec::GetStringBuf(int index) const
{
    static const std::vector<char> c_empty;
    const Arg* arg = Find(index, Token::TokenString);
    return arg ? arg->buffer : c_empty;
}

std::string ArgVec::ToString() const
{
    std::string text;
    for (int i = 0; i < count; ++i) {
        if (!text.empty()) text += ' ';
        text += ToText(args[static_cast<std::size_t>(i)]);
    }
    if (!text.empty()) text += ' ';
    return text + op;
}

} // namespace Quillet
