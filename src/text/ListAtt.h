#pragma once

#include <Quillet/Char.h>

#include <Kernel/Countable.h>
#include <Story/Delta.h>
#include <Story/ListAtt.h>
#include <Story/NumberFormat.h>

#include <vector>

namespace Quillet {

/// The marker that a line may begin with, read before anybody knows whether it counts in a list.
class QUILLET_API ListAtt : public Kernel::Countable
{
public:
    using Iterator = std::vector<Char>::const_iterator;

    /// Parses the start of a line.
    ListAtt(Iterator first, Iterator last);

    /// Whether this is the item behind `other`.
    bool IsCompatible(const ListAtt& other) const;
    /// The value, had the marker been read in another format: a letter that is a Roman digit may be either. The
    /// smallest int if it cannot.
    int GetEffectiveValue(Story::NumberFormat other) const;
    bool IsNone() const { return type == Story::ListType::None; }
    /// A number in capitals.
    bool IsUpper() const;

    Story::ListType type = Story::ListType::None;
    /// The bullet, or the bracket that opens; 0 for none.
    char32_t prefix = 0;
    int value = 0;
    Story::NumberFormat format = Story::NumberFormat::Decimal;
    /// 0 for none.
    char32_t suffix = 0;
    /// Characters of the marker, with the space behind it.
    int charCount = 0;
    /// How the marker looks beside the text behind it; null if it looks the same.
    Kernel::Counted<const Story::Delta> delta;
    /// For passes that go over lists.
    bool isDone = false;

private:
    bool ParseBullet(Iterator first, Iterator last);
    bool ParseNumber(Iterator first, Iterator last);
    /// Where it stopped; `last` for failure.
    Iterator ParseFormat(Iterator first, Iterator last);
    void ParseDelta(Iterator first, Iterator last);
};

} // namespace Quillet
