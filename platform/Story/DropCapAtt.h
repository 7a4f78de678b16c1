#pragma once

#include <Story/Delta.h>

#include <string>

namespace Story {

/// The large letter that a paragraph begins with. How many characters it has is up to the text: it ends with the first
/// letter or digit.
class QUILLET_API DropCapAtt : public Kernel::Countable
{
public:
    void SetIsEnabled(bool isOn) { isEnabled = isOn; }
    void SetHeightInLines(int count) { heightInLines = count; }
    /// Points between the cap and the text beside it.
    void SetDistanceToText(double distance) { distanceToText = distance; }
    /// The character style of the cap, by its name in the style sheet, and what it holds.
    void SetStyleName(const std::string& name, Kernel::Counted<const Delta> newDelta)
    {
        styleName = name;
        delta = std::move(newDelta);
    }
    std::size_t GetHash() const;

    friend QUILLET_API bool operator==(const DropCapAtt& a, const DropCapAtt& b);

    bool isEnabled = false;
    int heightInLines = 0;
    double distanceToText = 0;
    std::string styleName;
    Kernel::Counted<const Delta> delta;
};

} // namespace Story
