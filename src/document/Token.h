#pragma once

namespace Quillet::Token {

enum Type : int {
    TokenNone = 0, ///< Nothing read yet, or no such key.
    TokenKeyword = 1,
    TokenInt = 2,
    TokenReal = 3,
    TokenName = 4,
    TokenString = 5,
    TokenArrayStart = 6,
    TokenArrayEnd = 7,
    TokenDictStart = 8,
    TokenDictEnd = 9,
    TokenProcStart = 10,
    TokenProcEnd = 11,
    TokenRef = 12,
    TokenEnd = 13, ///< The end of the data, or a byte that starts no token.
};

} // namespace Quillet::Token
