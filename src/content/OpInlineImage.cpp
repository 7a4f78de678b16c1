#include "content/OpInlineImage.h"

#include "colour/ColourSpace.h"
#include "colour/ColourSpaceFactory.h"
#include "document/ArgVec.h"
#include "content/ContentContext.h"
#include "document/CharType.h"
#include "content/GraphicsStateStack.h"
#include "document/Resources.h"
#include "document/Limits.h"
#include "document/Parser.h"
#include "document/DecodeParams.h"
#include "filters/FilterPipeline.h"

#include <Quillet/Budget.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace Quillet {

namespace {

using Kernel::Counted;

bool IsWhiteSpace(char byte)
{
    return CharType::IsPdfSpace(static_cast<unsigned char>(byte));
}

/// The dictionary of an inline image, and the way through its data.
class InlineImageHelper
{
public:
    InlineImageHelper(Counted<Parser> imageParser, Kernel::NonCounted<ColourSpaceFactory> spaces,
                      Kernel::NonCounted<const Resources> imageResources, const ErrorHandler* handler)
        : parser(std::move(imageParser)), factory(spaces), resources(imageResources),
          pipeline(Kernel::MakeCounted<FilterPipeline>(handler))
    {
        while (parser->NextToken() != Token::TokenKeyword && parser->tokenType != Token::TokenEnd) {
            if (parser->tokenType == Token::TokenName) ReadEntry(std::string(parser->tokenText));
            if (IsAtData()) break;
        }
        pipeline->AddFilter(parser);
        pipeline->AddFilters(filterNames, params);
        pipeline->SetIsUnbuffered(true);
        if (isImageMask || !space) space = factory->MakeDeviceGray(resources);
    }

    bool IsAtData() const { return parser->tokenType == Token::TokenKeyword && parser->tokenText == "ID"; }

    /// Bytes of the decoded image; 0 for an image without any.
    unsigned long long GetSize() const
    {
        const int components = space->GetComponentCount();
        if (width <= 0 || height <= 0 || bitsPerComponent <= 0 || bitsPerComponent > 32 || components <= 0) return 0;
        const auto bitsPerRow = static_cast<unsigned long long>(width) *
                                static_cast<unsigned long long>(bitsPerComponent) *
                                static_cast<unsigned long long>(components);
        const auto rows = static_cast<unsigned long long>(height);
        const unsigned long long rowSize = (bitsPerRow + 7) / 8;
        return rowSize > Limits::c_maxDecodedLength / rows ? Limits::c_maxDecodedLength : rowSize * rows;
    }

    /// Takes the image's bytes out of the content. Data in an unknown coding is left where it is.
    void SkipData()
    {
        std::array<char, 4096> bytes{};
        unsigned long long left = pipeline->hasUnknownFilter ? 0 : GetSize();
        while (left != 0) {
            const int count =
                pipeline->Read(bytes.data(), static_cast<int>(std::min<unsigned long long>(left, bytes.size())));
            if (count <= 0) return;
            left -= static_cast<unsigned long long>(count);
        }
    }

    Counted<Parser> parser;
    Kernel::NonCounted<ColourSpaceFactory> factory;
    Kernel::NonCounted<const Resources> resources;
    int width = 0;
    int height = 0;
    int bitsPerComponent = 1;
    bool isImageMask = false;
    Counted<const ColourSpace> space;
    std::vector<double> decode;
    std::vector<std::string> filterNames;
    std::vector<Counted<const DecodeParams>> params;
    Counted<FilterPipeline> pipeline;

private:
    void ReadEntry(const std::string& key)
    {
        if (key == "BitsPerComponent" || key == "BPC") {
            bitsPerComponent = ArgVec::HoldToInt(parser->NextInt());
        } else if (key == "Width" || key == "W") {
            width = ArgVec::HoldToInt(parser->NextInt());
        } else if (key == "Height" || key == "H") {
            height = ArgVec::HoldToInt(parser->NextInt());
        } else if (key == "ImageMask" || key == "IM") {
            isImageMask = parser->NextBool();
        } else if (key == "ColorSpace" || key == "CS") {
            space = factory->Make(parser, resources);
        } else if (key == "Filter" || key == "F") {
            parser->NextToken();
            parser->GetTokenNameVec(filterNames);
        } else if (key == "DecodeParms" || key == "DP") {
            params = GetDecodeParams(parser, Ref());
        } else if (key == "Decode" || key == "D") {
            parser->NextToken();
            parser->GetTokenRealVec(decode);
        } else {
            parser->NextToken();
            parser->SkipToObjectEnd();
        }
    }
};

/// Passes everything up to the end marker, and it too. Among bytes of unknown meaning the marker has to stand alone, or
/// any image of some size would hold it.
bool SkipToEndMarker(Parser& parser, bool isAlone)
{
    char before = ' ';
    char last = ' ';
    char byte = 0;
    while (parser.Read(&byte, 1) == 1) {
        const bool isMarker = last == 'E' && byte == 'I';
        if (isMarker && !isAlone) return true;
        if (isMarker && IsWhiteSpace(before) && (parser.AtEnd() || IsWhiteSpace(*parser.cursor))) return true;
        before = last;
        last = byte;
    }
    return false;
}

} // namespace

void OpInlineImage::Execute(const ArgVec& args) const
{
    CheckCall(OperatorCategory::Page, args, 0);
    FlushObjects();
    // Nothing draws them yet.
    Check(false, SkipImage() ? Error::UnimplementedFill : Error::General);
}

void OpInlineImage::AddRasterFormats(RasterFormatPicker&, const ArgVec&) const
{
    SkipImage();
}

bool OpInlineImage::SkipImage() const
{
    const Kernel::NonCounted<Parser> parser = stack->context->parser;
    InlineImageHelper image(parser.Get(), GetColourSpaceFactory(), GetResources(), GetErrorHandler());
    if (!parser->Check(parser->tokenType == Token::TokenKeyword, parser->errorType)) return false;
    if (!Check(image.IsAtData(), Error::General)) return false;

    char separator = 0;
    const bool isSeparated = parser->Read(&separator, 1) == 1 && IsWhiteSpace(separator);
    Check(isSeparated, Error::General);
    if (separator == '\r' && *parser->cursor == '\n') parser->Read(&separator, 1);

    const bool isEmpty = image.GetSize() == 0;
    image.SkipData();
    Check(SkipToEndMarker(*parser, image.pipeline->hasUnknownFilter), Error::General);
    return !isEmpty;
}

} // namespace Quillet
