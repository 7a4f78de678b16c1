#include "filters/FilterWithPredictor.h"

#include "document/DecodeParams.h"
#include "filters/PngFilter.h"
#include "filters/Tiff2Filter.h"

namespace Quillet {

void FilterWithPredictor::SetDecodeParams(Kernel::Counted<const DecodeParams> params)
{
    predictor = params->GetInt("Predictor", 1);
}

Kernel::Counted<Filter> FilterWithPredictor::MakePredictor()
{
    if (predictor == 1) return nullptr;
    if (predictor == 2) return Kernel::MakeCounted<Tiff2Filter>();
    if (predictor >= 10) return Kernel::MakeCounted<PngFilter>();
    OnError(Error::UnimplementedFeature);
    return nullptr;
}

} // namespace Quillet
