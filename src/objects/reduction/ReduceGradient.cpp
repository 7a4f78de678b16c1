#include "objects/reduction/GradientRecognition.h"

#include <Quillet/Page.h>

namespace Quillet {

void GroupObject::ReduceGradient()
{
    const Kernel::Counted<Renderer::FillDescriptor> fill = Reduction::MakeGradientFill(*this);
    if (!fill) return;
    const Kernel::Counted<const Page> groupPage(GetPage().Get());
    const auto rectangle = Kernel::MakeCounted<PathObject>(groupPage, bbox, fill);
    ReleaseChildren();
    Add(rectangle);
    UpdateBBox();
}

} // namespace Quillet
