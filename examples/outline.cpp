// Prints what the first page of a PDF is made of: an indented outline of its objects, each with its box in points.

#include <Quillet/Quillet.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

std::string Describe(const Quillet::Object& object)
{
    using Kind = Quillet::Object::Kind;
    switch (object.GetKind()) {
    case Kind::Group:
        return "group";
    case Kind::Layer:
        return "layer \"" + static_cast<const Quillet::LayerObject&>(object).name + '"';
    case Kind::Path: {
        const auto& path = static_cast<const Quillet::PathObject&>(object);
        return std::string("path") + (path.IsFilled() ? " filled" : "") + (path.IsStroked() ? " stroked" : "");
    }
    case Kind::Bitmap:
        return "bitmap";
    case Kind::TextLine:
        return "line \"" + static_cast<const Quillet::TextLineObject&>(object).GetText() + '"';
    case Kind::Column:
        return "column of " + std::to_string(static_cast<const Quillet::ColumnObject&>(object).lines.size()) + " lines";
    }
    return "object";
}

/// Carries the depth down the tree.
class Outline : public Quillet::TreePass<int>
{
public:
    Quillet::Step Enter(const Quillet::GroupObject& group, int& depth) override
    {
        Print(group, depth++);
        return Quillet::Step::On;
    }

    Quillet::Step Visit(const Quillet::Object& leaf, const int& depth) override
    {
        Print(leaf, depth);
        return Quillet::Step::On;
    }

private:
    static void Print(const Quillet::Object& object, int depth)
    {
        const auto& box = object.transformedBBox;
        // A page may nest its groups very deep.
        std::printf("%*s%s [%.2f %.2f %.2f %.2f]\n", 2 * std::min(depth, 40), "", Describe(object).c_str(), box.left,
                    box.top, box.right, box.bottom);
    }
};

/// What a host shows in place of fonts that the machine lacks.
class HostFonts : public Kernel::FontMap
{
public:
    Kernel::FontReplacement GetReplacement(const Kernel::Font& font) const override
    {
        Kernel::FontReplacement replacement;
        replacement.font.family = "DejaVu Sans";
        replacement.font.SetWeight(font.weight);
        replacement.font.SetIsItalic(font.isItalic);
        replacement.match = 1;
        return replacement;
    }
};

/// By which profiles a host means colours that come without one: here those that the machine has, and as they look.
Raster::ICCManager::ICCProfileSet MakeProfiles()
{
    Raster::ICCManager::ICCProfileSet profiles;
    profiles.intent = Raster::RenderingIntent::Perceptual;
    return profiles;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "Usage: outline FILE.pdf\n");
        return 2;
    }
    const auto document = Kernel::MakeCounted<Quillet::PdfDocument>();
    document->SetFontMap(Kernel::MakeCounted<HostFonts>());
    document->SetDefaultProfiles(MakeProfiles());
    if (!document->OpenFile(argv[1]) || document->GetPageCount() < 1) {
        const auto error = document->GetDefaultErrorHandler()->lastError;
        std::fprintf(stderr, "outline: %s: %s\n", argv[1], Quillet::GetErrorName(error));
        return 3;
    }
    try {
        const auto root = document->GetPage(0)->BuildObjects();
        root->UpdateBBoxes();
        Outline outline;
        Quillet::WalkTree(*root, outline);
    } catch (Quillet::Error::Type error) {
        std::fprintf(stderr, "outline: %s: page 1: %s\n", argv[1], Quillet::GetErrorName(error));
        return 6;
    }
    return 0;
}
