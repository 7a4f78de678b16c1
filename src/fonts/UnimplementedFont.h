#pragma once

#include "fonts/Font.h"

namespace Quillet {

/// A font of a kind that is not known. It has no text.
class QUILLET_API UnimplementedFont : public Font
{
public:
    explicit UnimplementedFont(Dictionary& dictionary) : Font(dictionary) {}
    bool IsSupported() const override { return false; }
    bool IsAvailable() const override { return false; }
    const Kernel::Font& GetKernelFont() const override { return Kernel::Font::GetEmpty(); }
    bool operator==(const Font& other) const override { return this == &other; }
    void AddTo(Story::GlyphAtts&) const override {}
    double TextOut(std::vector<Char>&, const std::vector<char>&, const TextState&) const override { return 0; }
};

} // namespace Quillet
