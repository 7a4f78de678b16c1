#pragma once

#include <Quillet/ErrorForwarder.h>

#include "document/Parser.h"

#include <string>
#include <vector>

namespace Quillet {

/// The operands of the operator being read.
///
/// Slots are reused from operator to operator, with their strings and buffers. A getter with a wrong type or index
/// reports `general` and gives a neutral value, so that a handler never has to test its operands.
class QUILLET_API ArgVec : public ErrorForwarder
{
public:
    struct Arg
    {
        Token::Type type{};
        /// An integer operand, held to the range of int; 1 or 0 for "true" or "false".
        int intValue = 0;
        /// A number operand of either type.
        double realValue = 0;
        std::string name;
        std::vector<char> buffer;
    };

    explicit ArgVec(const ErrorHandler* errorHandler = nullptr) : ErrorForwarder(errorHandler) {}

    /// The nearest int: numbers in files may have any length.
    static int HoldToInt(long long value);

    void clear() { count = 0; }
    /// The next slot, with only its type set. Once the page has used its memory up, the last slot is given again.
    Arg& Add(Token::Type type);
    void AddInt(long long value);
    void AddReal(double value);
    void AddName(const std::string& name);
    void AddStringBuf(const std::vector<char>& buffer);
    /// An operand without a value.
    void AddToken(Token::Type type) { Add(type); }
    /// True only for "true" and "false", whose value is stored.
    bool AddKeyword(const std::string& keyword);

    bool CheckSize(int size) const;
    Token::Type GetType(int index) const;
    Token::Type GetToken(int index) const { return GetType(index); }
    double GetReal(int index) const;
    /// The first six operands.
    Raster::AffineTransform::Params GetMatrix() const;
    /// Integers only: a real operand is a fault.
    int GetInt(int index) const;
    /// A number from 0 to 1 as 0 to 255.
    unsigned char GetByte(int index) const;
    const std::string& GetName(int index) const;
    std::string GetString(int index) const;
    std::string GetNameOrString(int index) const;
    const std::vector<char>& GetStringBuf(int index) const;
    /// The operands and the operator as text, for diagnostics.
    std::string ToString() const;

    /// The operator's name, for `ToString` only.
    std::string op;
    std::vector<Arg> args;
    int count = 0;

private:
    /// The operand at `index` if it is of that type; else null, after a report.
    const Arg* Find(int index, Token::Type type) const;
};

} // namespace Quillet
