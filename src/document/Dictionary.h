#pragma once

#include "document/Parser.h"

namespace Quillet {

/// A dictionary of the file, indexed by key; values are parsed anew at each get.
///
/// On a null reference it is a legal empty dictionary. Values taken from it stay valid, a position does not: each get
/// moves the cursor. An absent key gives the fallback, the empty value or false.
class QUILLET_API Dictionary : public Parser
{
public:
    struct Item
    {
        std::string key;
        /// Behind the key.
        unsigned long long pos;
    };

    /// Raises `type` for anything that is no dictionary, and for a "Type" entry other than `requiredType`, which may be
    /// null; a missing "Type" is accepted.
    explicit Dictionary(const Ref& ref, const char* requiredType = nullptr, Error::Type type = Error::General,
                        bool isAlreadyDecrypted = false);

    bool Has(const char* key) { return DictionarySeek(key); }
    /// True leaves the cursor before the value.
    bool DictionarySeek(const char* key);
    using Parser::DictionarySeek;
    /// The type of the value, which becomes the current token; `TokenNone` if absent.
    Token::Type GetToken(const char* key);
    /// The value with one reference followed, on its first token; null if absent. For a counted dictionary.
    Kernel::Counted<Parser> OpenValue(const char* key);
    /// In order of bytes.
    std::vector<std::string> GetKeys() const;

    std::string GetName(const char* key);
    std::string GetString(const char* key);
    /// Valid until the next get.
    const std::vector<char>& GetStringBuf(const char* key);
    bool GetBool(const char* key, bool fallback);
    int GetInt(const char* key, int fallback);
    double GetReal(const char* key, double fallback);
    /// If absent, a null reference that still belongs to this dictionary's object and document.
    Ref GetRef(const char* key);
    bool GetRef(const char* key, Ref& out);
    bool GetRect(const char* key, Kernel::RectT<double>& out);
    /// True if the key is there, even when its value is no matrix and gave the identity.
    bool GetTransform(const char* key, Raster::AffineTransform::Params& out);
    bool GetIntVec(const char* key, std::vector<int>& out);
    bool GetRealVec(const char* key, std::vector<double>& out);
    bool GetRefVec(const char* key, std::vector<Ref>& out);
    bool GetNameVec(const char* key, std::vector<std::string>& out);
    bool GetStringVec(const char* key, std::vector<std::string>& out);
    bool GetStringBufVec(const char* key, std::vector<std::vector<char>>& out);

    /// Raises UnimplementedFeature for each of the keys that is there; the list ends with null.
    void UnimplementedKeys(const char* const* keys);

    unsigned long long startPos;
    std::vector<Item> items;

private:
    void ReadItems();
    bool GetNext(const char* key);
    template <typename Value, typename Result>
    bool Get(const char* key, Value& out, Result (Parser::*get)(Value&));
};

} // namespace Quillet
