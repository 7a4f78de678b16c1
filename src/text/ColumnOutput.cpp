#include <Quillet/ColumnObject.h>

#include <Story/GlyphSink.h>
#include <Story/Story.h>

namespace Quillet {

void ColumnObject::AppendTo(Story::GlyphSink& sink, bool isWrapped) const
{
    for (const auto& line : lines)
        line->AppendTo(sink, isWrapped);
    sink.Flush();
}

void ColumnObject::VerifyCompositionFidelity(const Kernel::Counted<Story::Story>&) {}

} // namespace Quillet
