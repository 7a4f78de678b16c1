#include "document/Dictionary.h"

#include "document/Limits.h"

#include <Quillet/Budget.h>

#include <algorithm>

namespace Quillet {

using namespace Token;

Dictionary::Dictionary(const Ref& ref, const char* requiredType, Error::Type type, bool isDecrypted)
    : Parser(ref), startPos(GetPosition())
{
    SetType(type);
    if (isDecrypted) SetIsAlreadyDecrypted(true);
    if (startPos != 0) ReadItems();
    if (requiredType && DictionarySeek("Type")) Check(NextName() == requiredType, errorType);
}

void Dictionary::ReadItems()
{
    if (!Skip(TokenDictStart)) return;
    const bool wasDecrypted = std::exchange(isAlreadyDecrypted, true);
    while (NextToken() != TokenDictEnd && tokenType != TokenEnd) {
        std::string key = GetTokenName();
        if (!Budget::Spend(Limits::c_entryUnits + key.size())) break;
        items.push_back({std::move(key), GetPosition()});
        NextToken();
        SkipToObjectEnd();
    }
    isAlreadyDecrypted = wasDecrypted;
    std::stable_sort(items.begin(), items.end(), [](const Item& a, const Item& b) { return a.key < b.key; });
}

bool Dictionary::DictionarySeek(const char* key)
{
    const auto found = std::lower_bound(items.begin(), items.end(), key,
                                        [](const Item& item, const char* wanted) { return item.key < wanted; });
    if (found == items.end() || found->key != key) return false;
    Seek(found->pos);
    return true;
}

bool Dictionary::GetNext(const char* key)
{
    if (!DictionarySeek(key)) return false;
    NextToken();
    return true;
}

template <typename Value, typename Result>
bool Dictionary::Get(const char* key, Value& out, Result (Parser::*get)(Value&))
{
    if (!GetNext(key)) return false;
    (this->*get)(out);
    return true;
}

Token::Type Dictionary::GetToken(const char* key)
{
    return GetNext(key) ? tokenType : TokenNone;
}

Kernel::Counted<Parser> Dictionary::OpenValue(const char* key)
{
    return DictionarySeek(key) ? NextValue() : nullptr;
}

std::vector<std::string> Dictionary::GetKeys() const
{
    std::vector<std::string> keys;
    keys.reserve(items.size());
    for (const Item& item : items)
        keys.push_back(item.key);
    return keys;
}

std::string Dictionary::GetName(const char* key)
{
    return GetNext(key) ? GetTokenName() : std::string();
}

std::string Dictionary::GetString(const char* key)
{
    return GetNext(key) ? GetTokenString() : std::string();
}

const std::vector<char>& Dictionary::GetStringBuf(const char* key)
{
    static const std::vector<char> c_empty;
    return GetNext(key) ? GetTokenStringBuf() : c_empty;
}

bool Dictionary::GetBool(const char* key, bool fallback)
{
    return GetNext(key) ? GetTokenBool() : fallback;
}

int Dictionary::GetInt(const char* key, int fallback)
{
    return GetNext(key) ? static_cast<int>(GetTokenInt()) : fallback;
}

double Dictionary::GetReal(const char* key, double fallback)
{
    return GetNext(key) ? GetTokenReal() : fallback;
}

Ref Dictionary::GetRef(const char* key)
{
    Ref ref = Ref::FromPosition(object, 0);
    GetRef(key, ref);
    return ref;
}

bool Dictionary::GetRef(const char* key, Ref& out)
{
    if (!GetNext(key)) return false;
    out = GetTokenRef();
    return true;
}

bool Dictionary::GetRect(const char* key, Kernel::RectT<double>& out)
{
    return Get(key, out, &Parser::GetTokenRect);
}

bool Dictionary::GetTransform(const char* key, Raster::AffineTransform::Params& out)
{
    return Get(key, out, &Parser::GetTokenTransform);
}

bool Dictionary::GetIntVec(const char* key, std::vector<int>& out)
{
    return Get(key, out, &Parser::GetTokenIntVec);
}

bool Dictionary::GetRealVec(const char* key, std::vector<double>& out)
{
    return Get(key, out, &Parser::GetTokenRealVec);
}

bool Dictionary::GetRefVec(const char* key, std::vector<Ref>& out)
{
    return Get(key, out, &Parser::GetTokenRefVec);
}

bool Dictionary::GetNameVec(const char* key, std::vector<std::string>& out)
{
    return Get(key, out, &Parser::GetTokenNameVec);
}

bool Dictionary::GetStringVec(const char* key, std::vector<std::string>& out)
{
    return Get(key, out, &Parser::GetTokenStringVec);
}

bool Dictionary::GetStringBufVec(const char* key, std::vector<std::vector<char>>& out)
{
    return Get(key, out, &Parser::GetTokenStringBufVec);
}

void Dictionary::UnimplementedKeys(const char* const* keys)
{
    for (; *keys; ++keys)
        Check(!DictionarySeek(*keys), Error::UnimplementedFeature);
}

} // namespace Quillet
