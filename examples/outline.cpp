// Prints what the first page of a PDF is made of: an indented outline of its objects, each with its box in points.

#include <Quillet/Quillet.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

std::string Describe(const Quillet::Object& object)
{
    if (const auto* layer = dynamic_cast<const Quillet::LayerObject*>(&object)) return "layer \"" + layer->name + '"';
    if (dynamic_cast<const Quillet::GroupObject*>(&object)) return "group";
    if (const auto* path = dynamic_cast<const Quillet::PathObject*>(&object)) {
        return std::string("path") + (path->IsFilled() ? " filled" : "") + (path->IsStroked() ? " stroked" : "");
    }
    if (const auto* line = dynamic_cast<const Quillet::TextLineObject*>(&object))
        return "line \"" + line->GetText() + '"';
    if (dynamic_cast<const Quillet::BitmapObject*>(&object)) return "bitmap";
    return "object";
}

void PrintOutline(const Quillet::Object& root)
{
    struct Node
    {
        const Quillet::Object* object;
        int depth;
    };
    // A page may nest its groups very deep, so the walk keeps a stack of its own.
    for (std::vector<Node> pending{{&root, 0}}; !pending.empty();) {
        const auto [object, depth] = pending.back();
        pending.pop_back();
        const auto& box = object->transformedBBox;
        std::printf("%*s%s [%.2f %.2f %.2f %.2f]\n", 2 * std::min(depth, 40), "", Describe(*object).c_str(), box.left,
                    box.top, box.right, box.bottom);
        if (const auto* group = dynamic_cast<const Quillet::GroupObject*>(object)) {
            for (auto child = group->children.rbegin(); child != group->children.rend(); ++child) {
                pending.push_back({child->Get(), depth + 1});
            }
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "Usage: outline FILE.pdf\n");
        return 2;
    }
    const auto document = Kernel::MakeCounted<Quillet::PdfDocument>();
    if (!document->OpenFile(argv[1]) || document->GetPageCount() < 1) {
        const auto error = document->GetDefaultErrorHandler()->lastError;
        std::fprintf(stderr, "outline: %s: %s\n", argv[1], Quillet::GetErrorName(error));
        return 3;
    }
    try {
        const auto root = document->GetPage(0)->BuildObjects();
        root->UpdateBBoxes();
        PrintOutline(*root);
    } catch (Quillet::Error::Type error) {
        std::fprintf(stderr, "outline: %s: page 1: %s\n", argv[1], Quillet::GetErrorName(error));
        return 6;
    }
    return 0;
}
