#include "objects/SoftMask.h"

#include "colour/ColourSpace.h"
#include "document/Resources.h"
#include "content/TransparencyXObject.h"
#include "document/Dictionary.h"

#include <Quillet/Page.h>

#include <string>
#include <vector>

namespace Quillet {

SoftMask::SoftMask(Kernel::Counted<Dictionary> dictionary, Kernel::NonCounted<const Page> maskPage) : page(maskPage)
{
    const std::string kind = dictionary->GetName("S");
    isLuminosity = kind == "Luminosity";
    dictionary->Check(isLuminosity || kind == "Alpha", dictionary->errorType);

    group = Kernel::DynamicCast<const TransparencyXObject>(
        XObject::Make(dictionary->GetRef("G"), page->GetResources(), XObjectType::SoftMaskGroup, "_SoftMask"));
    if (group && group->groupColourSpace) {
        Colour colour(group->groupColourSpace->GetComponentCount());
        std::vector<double> components;
        if (dictionary->GetRealVec("BC", components)) colour = Colour(std::move(components));
        backdrop = group->groupColourSpace->MakeColour(colour);
    }

    if (dictionary->GetToken("TR") == Token::TokenName) {
        dictionary->Check(dictionary->tokenText == "Identity", dictionary->errorType);
    }
}

SoftMask::~SoftMask() = default;

bool SoftMask::operator==(const SoftMask& other) const
{
    return isLuminosity == other.isLuminosity && group == other.group && backdrop == other.backdrop &&
           page == other.page;
}

} // namespace Quillet
