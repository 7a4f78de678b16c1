#pragma once

#include "colour/ColourSpaceFactory.h"
#include "document/DocumentState.h"
#include "document/Resources.h"
#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <Quillet/Page.h>
#include <Renderer/Colour.h>

#include <string>
#include <utility>
#include <vector>

namespace Quillet {

/// A document whose page has the colour spaces `spaces` by name; further objects count from 5.
struct Spaces
{
    explicit Spaces(const std::string& spaces, std::vector<std::string> objects = {})
        : document(MakePagePdf("", {.resources = "/ColorSpace << " + spaces + " >>", .objects = std::move(objects)})),
          resources(document->GetPage(0)->GetResources()), factory(*document->GetState().colourSpaceFactory)
    {}

    Kernel::Counted<const ColourSpace> Get(const std::string& name) const { return resources->GetColourSpace(name); }
    const std::vector<int>& GetErrors() const { return document.GetErrors(); }

    TestDocument document;
    Kernel::Counted<const Resources> resources;
    ColourSpaceFactory& factory;
};

/// The space /X of such a document.
struct OneSpace : Spaces
{
    explicit OneSpace(const std::string& definition, std::vector<std::string> objects = {})
        : Spaces("/X " + definition, std::move(objects)), space(Get("X"))
    {}

    Kernel::Consolidated<Renderer::Colour> Make(std::vector<double> components) const
    {
        return space->MakeColour(Colour(std::move(components)));
    }

    Kernel::Counted<const ColourSpace> space;
};

} // namespace Quillet
