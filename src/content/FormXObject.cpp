#include "content/FormXObject.h"

#include "content/GraphicsStateStack.h"
#include "document/Resources.h"
#include "content/StreamInterpreter.h"
#include "document/Dictionary.h"
#include "document/Guard.h"
#include "document/Limits.h"
#include "filters/Stream.h"

#include <Quillet/Budget.h>
#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>

#include <algorithm>
#include <array>

namespace Quillet {

namespace {

/// The longest content that a form keeps decoded. Symbols of a map are shorter and drawn by the thousand; files of many
/// forms must not grow much in memory.
constexpr std::size_t c_maxKeptContent = 4096;

/// Bytes that outlive their reading.
class KeptContentSource : public SequentialSource
{
public:
    KeptContentSource(const std::vector<char>& content, const Ref& form)
        : SequentialSource(form.GetErrorHandler()), bytes(content), ref(form)
    {}

    ErrorPlace GetErrorPlace() const override { return ref.GetErrorPlace(); }
    bool AtEnd() const override { return position == bytes.size(); }
    unsigned long long GetEstimatedLength() const override { return bytes.size() - position; }
    using SequentialSource::Read;
    int Read(char* buf, int size) override
    {
        const std::size_t count = std::min(bytes.size() - position, static_cast<std::size_t>(std::max(size, 0)));
        std::copy_n(bytes.data() + position, count, buf);
        position += count;
        return static_cast<int>(count);
    }

private:
    const std::vector<char>& bytes;
    const Ref ref;
    std::size_t position = 0;
};

/// Up to `limit` bytes.
std::vector<char> ReadUpTo(SequentialSource& source, std::size_t limit)
{
    std::vector<char> bytes(limit);
    bytes.resize(source.ReadUpTo(bytes.data(), limit));
    bytes.shrink_to_fit();
    return bytes;
}

} // namespace

FormXObject::FormXObject(Kernel::Counted<Dictionary> dictionary, Kernel::Counted<const Resources> inherited)
    : streamRef(dictionary->object), resources(GetResources(dictionary, std::move(inherited)))
{
    ReadMatrix(*dictionary);
    if (!dictionary->Check(dictionary->GetRect("BBox", bbox), dictionary->errorType)) bbox = {0, 0, 1000, 1000};
}

FormXObject::~FormXObject() = default;

void FormXObject::ReadMatrix(Dictionary& dictionary)
{
    const Kernel::Counted<Parser> parser = dictionary.OpenValue("Matrix");
    if (!parser || parser->tokenType != Token::TokenArrayStart) return;
    std::array<double, 6> values{1, 0, 0, 1, 0, 0};
    dictionary.Check(parser->GetTokenNumbers(values) == values.size(), dictionary.errorType);
    matrix = Raster::AffineTransform::Params::FromPdf(values);
}

Kernel::Counted<SequentialSource> FormXObject::OpenContent() const
{
    if (content == Content::Read) {
        keptContent = ReadUpTo(*Kernel::MakeCounted<ContentStream>(streamRef), c_maxKeptContent + 1);
        content = keptContent.size() <= c_maxKeptContent ? Content::Kept : Content::TooLong;
        if (content == Content::TooLong) keptContent = {};
        if (Budget::IsSpent()) content = Content::Read;
    }
    if (content == Content::Kept) {
        return Kernel::MakeCounted<KeptContentSource>(keptContent, streamRef);
    }
    if (content == Content::Unread) content = Content::Read;
    return Kernel::MakeCounted<ContentStream>(streamRef);
}

bool FormXObject::Accept(Kernel::NonCounted<GraphicsStateStack> stack, bool noGroup) const
{
    // Content has no conditions: a form that comes to draw itself over the same stack would do so for ever.
    const Guard::Descent descent;
    Guard::Walk walk(Guard::Way::Forms, streamRef, stack.Get());
    if (!descent || !walk.Enter(streamRef) || !Budget::Spend(Limits::c_formUnits)) return false;
    Draw(*stack, noGroup);
    return true;
}

void FormXObject::Draw(GraphicsStateStack& stack, bool noGroup) const
{
    if (!noGroup) {
        // Whatever the form leaves and closes that is not its own, the caller goes on where it was.
        stack.Save();
        auto group = Kernel::MakeCounted<GroupObject>(stack.page);
        group->SetIsXObject(true);
        stack.GetTop().PushGroup(std::move(group));
    }
    const Kernel::Counted<const Resources> callersResources = stack.resources;
    stack.SetResources(resources);
    stack.SaveForXObject();

    GraphicsState& state = stack.GetTop();
    const auto transform = state.ltCurrent * matrix;
    state.SetLtCurrent(transform);
    state.SetLtDefault();
    state.PushClippingPath(bbox, transform);
    StreamInterpreter interpreter(Kernel::Counted<GraphicsStateStack>(&stack), OpenContent());
    interpreter.Interpret();

    stack.RestoreForXObject();
    stack.SetResources(callersResources);
    if (!noGroup) stack.Restore();
}

} // namespace Quillet
