#include <Story/GlyphSink.h>

namespace Story {

GlyphSink::~GlyphSink() = default;

} // namespace Story
