#include "exporters/SvgExporter.h"

#include "exporters/Costs.h"
#include "exporters/NumberText.h"
#include "exporters/PathData.h"
#include "exporters/TextRuns.h"

#include <Quillet/Budget.h>
#include <Quillet/LayerObject.h>
#include <Quillet/Page.h>
#include <Quillet/PathObject.h>
#include <Quillet/TextLineObject.h>

#include <Kernel/CharTraits.h>
#include <Renderer/Colour.h>

#include <pugixml.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace Host {

namespace {

using namespace Quillet;
using Geometry::WindingOrderMode;
using Params = Raster::AffineTransform::Params;
using Chars = TextLineObject::Chars;

std::string MakeNumber(double value, int decimals = 6)
{
    std::string text;
    AppendNumber(text, value, decimals);
    return text;
}

/// What XML can hold (XML 1.0, 2.2).
bool IsXmlCharacter(char32_t code)
{
    const bool isControl = code < 0x20 && code != '\t' && code != '\n' && code != '\r';
    return !isControl && code != 0xFFFE && code != 0xFFFF && Kernel::CharTraits::IsScalarValue(code);
}

/// The characters of a text that XML can hold; none if there is no more to pay for them.
std::string MakeXmlText(std::string_view text)
{
    std::string clean;
    if (!Budget::Spend(text.size() * Costs::c_svgTextByte)) return clean;
    for (std::size_t end = 0; end < text.size();) {
        const std::size_t start = end;
        const char32_t code = Kernel::CharTraits::DecodeCodePoint(text, end);
        const std::string_view bytes = text.substr(start, end - start);
        // Bytes that are no UTF-8 decode to the replacement character.
        const bool isBroken = code == Kernel::CharTraits::c_replacement && bytes != "\uFFFD";
        if (!isBroken && IsXmlCharacter(code)) clean += bytes;
    }
    return clean;
}

std::string MakeTransform(const Params& transform)
{
    std::string text = "matrix(";
    for (const double value : {transform.a, transform.b, transform.c, transform.d}) {
        const double size = std::abs(value);
        // Nine digits that count, however small the scale.
        AppendNumber(text, value, size > 0 && size < 1 ? std::min(15, 9 - static_cast<int>(std::log10(size))) : 9);
        text += ' ';
    }
    return text + MakeNumber(transform.e) + " " + MakeNumber(transform.f) + ")";
}

/// Turns and mirrors, and scales both directions alike.
bool IsSimilarity(const Params& transform)
{
    const double x = std::hypot(transform.a, transform.b);
    const double y = std::hypot(transform.c, transform.d);
    const double skew = transform.a * transform.c + transform.b * transform.d;
    return x > 0 && std::abs(x - y) <= 1e-4 * x && std::abs(skew) <= 1e-4 * x * y;
}

class SvgWriter
{
public:
    SvgWriter(const Page& page, const std::string& title, const Raster::ICCManager::ICCProfileSet& usedProfiles)
        : profiles(usedProfiles)
    {
        const auto size = PageBase::ApplyRotate(page.GetTrimBox(), page.GetRotate());
        const std::string width = MakeNumber(size.GetWidth());
        const std::string height = MakeNumber(size.GetHeight());
        svg = Append(document.root(), "svg");
        Set(svg, "xmlns", "http://www.w3.org/2000/svg");
        Set(svg, "xmlns:inkscape", "http://www.inkscape.org/namespaces/inkscape");
        Set(svg, "xmlns:sodipodi", "http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd");
        Set(svg, "version", "1.1");
        // A page is an isolated group that is painted before it is put on paper (ISO 32000-2, 11.4.7): its blend modes
        // never see the paper.
        Set(svg, "style", "isolation:isolate");
        Set(svg, "width", width + "pt");
        Set(svg, "height", height + "pt");
        Set(svg, "viewBox", "0 0 " + width + " " + height);
        if (!title.empty()) Append(svg, "title").text().set(MakeXmlText(title).c_str());
        defs = Append(svg, "defs");
    }

    LongText Write(const GroupObject& root)
    {
        AddTree(root);
        if (!defs.first_child()) svg.remove_child(defs);
        struct Writer : pugi::xml_writer
        {
            void write(const void* data, std::size_t size) override
            {
                text.Append({static_cast<const char*>(data), size});
            }
            LongText text;
        } out;
        // What is written is paid for since it stands in the tree.
        const Budget::Reprieve reprieve;
        document.save(out, "", pugi::format_raw, pugi::encoding_utf8);
        out.text.Append("\n");
        return std::move(out.text);
    }

private:
    static pugi::xml_node Append(pugi::xml_node parent, const char* name)
    {
        Budget::Spend(Costs::c_svgElement);
        return parent.append_child(name);
    }

    /// Gives the value as it is kept.
    static const char* Set(pugi::xml_node node, const char* name, const std::string& value)
    {
        Budget::Spend(Costs::c_svgAttribute + Costs::c_svgValueByte * value.size());
        pugi::xml_attribute attribute = node.append_attribute(name);
        attribute.set_value(value.c_str());
        return attribute.value();
    }

    static std::string MakePathData(const Geometry::PolyCurveDbl& path, const Params& toPage)
    {
        LongText text;
        AppendPathData(text, path, toPage);
        return text.Join();
    }

    static void AddStyle(std::string& style, const char* declaration)
    {
        if (!style.empty()) style += ';';
        style += declaration;
    }

    /// Trees may be deeper than the stack, so the walk keeps its own.
    void AddTree(const GroupObject& root)
    {
        struct Level
        {
            const GroupObject* group;
            pugi::xml_node node;
            std::size_t next = 0;
        };
        std::vector<Level> levels{{&root, IsPlain(root) ? svg : AddGroup(svg, root)}};
        while (!levels.empty()) {
            Level& level = levels.back();
            if (Budget::IsSpent()) return;
            if (level.next == level.group->children.size()) {
                levels.pop_back();
                continue;
            }
            const Object& child = *level.group->children[level.next++];
            const pugi::xml_node parent = level.node;
            if (const GroupObject* group = child.AsGroup()) {
                levels.push_back({group, AddGroup(parent, *group)});
            } else if (const auto* path = dynamic_cast<const PathObject*>(&child)) {
                AddPath(parent, *path);
            } else if (const auto* line = dynamic_cast<const TextLineObject*>(&child)) {
                AddLine(parent, *line);
            }
        }
    }

    /// A group that the SVG element itself can stand for.
    static bool IsPlain(const GroupObject& group) { return !group.clipPath && !group.IsPreserve(); }

    pugi::xml_node AddGroup(pugi::xml_node parent, const GroupObject& group)
    {
        pugi::xml_node node = Append(parent, "g");
        std::string style;
        if (const auto* layer = dynamic_cast<const LayerObject*>(&group)) {
            Set(node, "inkscape:groupmode", "layer");
            if (!layer->isEditable) Set(node, "sodipodi:insensitive", "true");
            if (!layer->isVisible) AddStyle(style, "display:none");
        }
        if (!group.name.empty()) Set(node, "inkscape:label", MakeXmlText(group.name));
        if (group.clipPath) SetClip(node, *group.clipPath, group.clipWinding, group.transform);
        if (group.opacity != 1) Set(node, "opacity", MakeNumber(group.opacity));
        if (group.isIsolated) AddStyle(style, "isolation:isolate");
        AddBlendMode(style, group.blendMode);
        if (!style.empty()) Set(node, "style", style);
        return node;
    }

    static void AddBlendMode(std::string& style, Renderer::FillBlendMode::BlendMode mode)
    {
        if (mode == Renderer::FillBlendMode::Normal) return;
        // "ColorDodge" is "color-dodge" in CSS.
        std::string name;
        for (const char* letter = Renderer::FillBlendMode::GetName(mode); *letter; ++letter) {
            const bool isCapital = *letter >= 'A' && *letter <= 'Z';
            if (isCapital && !name.empty()) name += '-';
            name += static_cast<char>(isCapital ? *letter - 'A' + 'a' : *letter);
        }
        AddStyle(style, ("mix-blend-mode:" + name).c_str());
    }

    /// `path` is in the space of the element that it clips, from which `toPage` leads to the page.
    void SetClip(pugi::xml_node node, const Geometry::PolyCurveDbl& path, WindingOrderMode winding,
                 const Params& toPage)
    {
        // Runs of objects share one clip.
        const std::string data = MakePathData(path, toPage);
        const bool isEvenOdd = winding == WindingOrderMode::EvenOdd;
        auto& known = isEvenOdd ? evenOddClips : nonZeroClips;
        auto found = known.find(data);
        if (found == known.end()) {
            const std::size_t number = nonZeroClips.size() + evenOddClips.size() + 1;
            pugi::xml_node clip = Append(defs, "clipPath");
            Set(clip, "id", MakeClipName(number));
            Set(clip, "clipPathUnits", "userSpaceOnUse");
            pugi::xml_node shape = Append(clip, "path");
            found = known.emplace(Set(shape, "d", data), number).first;
            if (isEvenOdd) Set(shape, "clip-rule", "evenodd");
        }
        Set(node, "clip-path", "url(#" + MakeClipName(found->second) + ")");
    }

    static std::string MakeClipName(std::size_t number) { return "clip-" + std::to_string(number); }

    void SetPaint(pugi::xml_node node, const char* name, const char* opacityName,
                  const Renderer::FillDescriptor& descriptor)
    {
        const auto colour = descriptor.IsEmpty() ? nullptr : descriptor.fill->GetColour();
        if (!colour) {
            Set(node, name, "none");
            return;
        }
        const auto pixel = colour->GetRgbaPixel(profiles);
        char text[8] = "#";
        const float channels[] = {pixel.red, pixel.green, pixel.blue};
        for (int i = 0; i < 3; ++i) {
            const auto value = static_cast<unsigned>(std::clamp(channels[i], 0.0f, 1.0f) * 255.0f + 0.5f);
            text[1 + 2 * i] = "0123456789abcdef"[value >> 4];
            text[2 + 2 * i] = "0123456789abcdef"[value & 15];
        }
        text[7] = 0;
        Set(node, name, text);
        const double alpha = std::clamp(static_cast<double>(colour->GetAlpha()), 0.0, 1.0);
        if (alpha != 1) Set(node, opacityName, MakeNumber(alpha));
    }

    /// `scale` leads from the space of the path data to the page, on which the style's lengths are points.
    static void SetLine(pugi::xml_node node, const Renderer::LineStyleDescriptor& descriptor, double scale)
    {
        const Renderer::LineStyle& style = *descriptor.lineStyle;
        const int decimals = GetDecimals(scale, 1e-4);
        const double width = style.width / scale;
        Set(node, "stroke-width", MakeNumber(width, decimals));
        if (style.cap != Renderer::LineStyle::CapButt) {
            Set(node, "stroke-linecap", style.cap == Renderer::LineStyle::CapHalfCircle ? "round" : "square");
        }
        if (style.join == Renderer::LineStyle::JoinRound)
            Set(node, "stroke-linejoin", "round");
        else if (style.join == Renderer::LineStyle::JoinBevel)
            Set(node, "stroke-linejoin", "bevel");
        else
            Set(node, "stroke-miterlimit", MakeNumber(std::max(style.mitreLimit, 1.0)));
        if (style.dashKind == Renderer::LineStyle::DashDashed) {
            std::string dashes;
            for (const double dash : style.dashes) {
                if (!Budget::Spend(Costs::c_segment)) break;
                if (!dashes.empty()) dashes += ' ';
                AppendNumber(dashes, dash * width, decimals);
            }
            Set(node, "stroke-dasharray", dashes);
            if (style.dashPhase != 0) Set(node, "stroke-dashoffset", MakeNumber(style.dashPhase * width, decimals));
        }
        if (descriptor.isBehindFill) Set(node, "paint-order", "stroke");
    }

    static Kernel::Counted<Geometry::PolyCurveDbl> MakeMoved(const Geometry::PolyCurveDbl& path,
                                                             const Params& transform)
    {
        for (const auto& curve : path) {
            if (!Budget::Spend(Costs::c_movedSegment * (curve->GetSegmentCount() + 1)))
                return Kernel::MakeCounted<Geometry::PolyCurveDbl>();
        }
        auto moved = path.Clone();
        moved->Transform(transform);
        return moved;
    }

    void AddPath(pugi::xml_node parent, const PathObject& object)
    {
        if (!object.path) return;
        pugi::xml_node node = Append(parent, "path");
        const bool isStroked = object.IsStroked();
        // A line has one width on the page, which SVG can say only where x and y are scaled alike; elsewhere the path
        // itself moves to the page, and its clip with it.
        const bool isOnPage = isStroked && !IsSimilarity(object.transform);
        if (isOnPage) {
            Set(node, "d", MakePathData(*MakeMoved(*object.path, object.transform), Params()));
        } else {
            Set(node, "d", MakePathData(*object.path, object.transform));
            if (!object.transform.IsIdentity(0)) Set(node, "transform", MakeTransform(object.transform));
        }
        SetPaint(node, "fill", "fill-opacity", *object.GetBrushDescriptor());
        if (object.IsFilled() && object.winding == WindingOrderMode::EvenOdd) Set(node, "fill-rule", "evenodd");
        if (isStroked) {
            SetPaint(node, "stroke", "stroke-opacity", *object.penDescriptor);
            const double scale = isOnPage ? 1 : GetScale(object.transform);
            SetLine(node, *object.lineStyleDescriptor, scale > 0 ? scale : 1);
        }
        if (object.clipPath && isOnPage) {
            SetClip(node, *MakeMoved(*object.clipPath, object.transform), object.clipWinding, Params());
        } else if (object.clipPath) {
            SetClip(node, *object.clipPath, object.clipWinding, object.transform);
        }
        if (object.opacity != 1) Set(node, "opacity", MakeNumber(object.opacity));
        std::string style;
        AddBlendMode(style, object.blendMode);
        if (!style.empty()) Set(node, "style", style);
    }

    void AddLine(pugi::xml_node parent, const TextLineObject& line)
    {
        for (const TextRun& run : SplitIntoRuns(line)) {
            if (!Budget::Spend(Costs::c_svgRun)) return;
            const auto isSeen = [](const Char& c) { return !c.isSpace && !c.IsTab(); };
            if (std::any_of(run.first, run.last, isSeen)) AddRun(parent, line, run);
        }
    }

    /// A text element for each run: only an element can be scaled and slanted.
    void AddRun(pugi::xml_node parent, const TextLineObject& line, const TextRun& run)
    {
        using namespace Story::GlyphAtt;
        const Story::GlyphAtts& atts = *run.first->atts;
        const double size = atts.GetSize();
        const double scale = atts.Get(HorizontalScale);
        if (!(size > 0) || !std::isfinite(scale) || scale == 0) return;

        pugi::xml_node text = Append(parent, "text");
        const auto position = line.GetGdiPosition();
        // Em space to the page, with the size left to the font.
        Params placement = atts.GetGlyphTransform({position.x + run.start, position.y + atts.Get(BaselineShift)});
        placement = line.transform * placement * Params::Scale(1 / size, 1 / size);
        Set(text, "transform", MakeTransform(placement));
        Set(text, "xml:space", "preserve");
        SetFont(text, atts);
        SetPaint(text, "fill", "fill-opacity", *atts.GetFill(Story::GlyphAtt::Fill));
        if (Renderer::LineStyleDescriptor::IsLineStyleVisible(atts.GetLineStyle(), atts.GetFill(StrokeFill))) {
            SetPaint(text, "stroke", "stroke-opacity", *atts.GetFill(StrokeFill));
            const double toPage = GetScale(placement);
            SetLine(text, *atts.GetLineStyle(), toPage > 0 ? toPage : 1);
        }
        if (line.clipPath) {
            const auto clip = MakeMoved(*line.clipPath, placement.GetInverse() * line.transform);
            SetClip(text, *clip, line.clipWinding, placement);
        }
        std::string style;
        AddBlendMode(style, line.blendMode);
        if (atts.Get(Underline) != 0) AddStyle(style, "text-decoration:underline");
        if (!style.empty()) Set(text, "style", style);
        AddWords(text, run, scale);
    }

    /// Characters that one start and one letter spacing place.
    struct Piece
    {
        Chars::const_iterator last;
        double spacing;
    };

    /// What is drawn for it is a glyph of the font, so that its width is known.
    static bool IsMeasured(const Char& c) { return c.GetGlyphMetrics().id != 0 && c.unicode != 0; }

    /// A word, as far as its letters can be spaced evenly so that each lies near its place on the page, whatever the
    /// widths of the font that is used. The space goes with the word before it: text copied from the picture has it.
    static Piece FindPiece(Chars::const_iterator first, Chars::const_iterator end, double scale)
    {
        // In ems: what the eye forgives within a word.
        constexpr double c_tolerance = 0.05;
        const double size = first->GetSize();
        const Renderer::FontMetrics& metrics = *first->atts->GetFontMetrics();
        double lowest = -std::numeric_limits<double>::infinity();
        double highest = std::numeric_limits<double>::infinity();
        double deviation = 0;
        double count = 0;
        auto c = first;
        for (; !c->isSpace && c + 1 != end && !(c + 1)->isSpace; ++c) {
            const Char& next = *(c + 1);
            if (!IsMeasured(*c) || !IsMeasured(next) || !IsXmlCharacter(next.unicode)) break;
            const Renderer::GlyphMetrics glyph = c->GetGlyphMetrics();
            const double kerning = metrics.GetAutoKerning(glyph.id, next.GetGlyphMetrics().id);
            const double nextDeviation = deviation + c->width / scale - (glyph.advance + kerning) * size;
            const double least = std::max(lowest, (nextDeviation - c_tolerance * size) / (count + 1));
            const double most = std::min(highest, (nextDeviation + c_tolerance * size) / (count + 1));
            if (!(least <= most)) break;
            lowest = least;
            highest = most;
            deviation = nextDeviation;
            ++count;
        }
        auto last = c + 1;
        if (!c->isSpace && last != end && last->isSpace) ++last;
        return {last, count > 0 ? std::clamp(deviation / count, lowest, highest) : 0};
    }

    static void AddWords(pugi::xml_node text, const TextRun& run, double scale)
    {
        double pen = 0;
        for (auto first = run.first; first != run.last;) {
            const Piece piece = FindPiece(first, run.last, scale);
            if (!Budget::Spend(Costs::c_svgChar * static_cast<unsigned long long>(piece.last - first))) return;
            const std::string characters = MakeXmlText(GetRunText(first, piece.last));
            if (!characters.empty()) {
                pugi::xml_node span = Append(text, "tspan");
                Set(span, "x", MakeNumber(pen, 4));
                if (std::abs(piece.spacing) > 1e-3) Set(span, "letter-spacing", MakeNumber(piece.spacing, 4));
                // The characters are in the order of their places, and not of reading.
                if (std::any_of(first, piece.last, IsRightToLeft))
                    Set(span, "style", "direction:ltr;unicode-bidi:bidi-override");
                span.text().set(characters.c_str());
            }
            for (; first != piece.last; ++first)
                pen += first->width / scale;
        }
    }

    /// Of a script that is written from right to left.
    static bool IsRightToLeft(const Char& c)
    {
        return (c.unicode >= 0x0590 && c.unicode < 0x0900) || (c.unicode >= 0xFB1D && c.unicode < 0xFE00) ||
               (c.unicode >= 0xFE70 && c.unicode < 0xFF00) || (c.unicode >= 0x10800 && c.unicode < 0x11000);
    }

    static void SetFont(pugi::xml_node node, const Story::GlyphAtts& atts)
    {
        const Kernel::Font& desired = atts.GetDesiredFont();
        const Kernel::Font& actual = atts.GetFontMetrics()->GetActualFont();
        std::string families;
        const auto add = [&families](const std::string& name) {
            if (name.empty()) return;
            std::string clean;
            for (const char c : name) {
                if (c != '\'' && c != '"' && c != '\\' && c != ';') clean += c;
            }
            families += (families.empty() ? "'" : ", '") + clean + "'";
        };
        add(actual.family);
        if (desired.family != actual.family) add(desired.family.empty() ? desired.postscriptName : desired.family);
        Set(node, "font-family", MakeXmlText(families));
        Set(node, "font-size", MakeNumber(atts.GetSize(), 4));
        if (actual.weight != 400) Set(node, "font-weight", std::to_string(actual.weight));
        if (actual.isItalic) Set(node, "font-style", "italic");
    }

    const Raster::ICCManager::ICCProfileSet& profiles;
    pugi::xml_document document;
    pugi::xml_node svg;
    pugi::xml_node defs;
    /// The numbers of those in use, by their path data, which the document keeps.
    std::unordered_map<std::string_view, std::size_t> nonZeroClips;
    std::unordered_map<std::string_view, std::size_t> evenOddClips;
};

} // namespace

LongText MakeSvg(const Page& page, const GroupObject& root, const std::string& title,
                 const Raster::ICCManager::ICCProfileSet& profiles, Problems& problems)
{
    LongText text = SvgWriter(page, title, profiles).Write(root);
    if (Budget::IsSpent()) problems[Error::CutShort] = 1;
    return text;
}

} // namespace Host
