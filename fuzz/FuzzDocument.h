#pragma once

#include "Problems.h"
#include "exporters/JsonExporter.h"
#include "exporters/SvgExporter.h"

#include <Quillet/Budget.h>
#include <Quillet/GroupObject.h>
#include <Quillet/Page.h>
#include <Quillet/PdfDocument.h>

#include <Kernel/Counted.h>

#include <exception>
#include <string>

namespace Quillet {

/// A document in memory that is exported as the command does it.
class FuzzDocument
{
public:
    explicit FuzzDocument(std::string file) : bytes(std::move(file)), document(Kernel::MakeCounted<PdfDocument>())
    {
        document->SetErrorHandler(&counter);
        document->SetPassword("user");
        isOpen = document->OpenMemory(bytes.data(), bytes.size());
        counter.Take();
    }

    /// Builds a page, and writes it in both formats.
    void Export(int index)
    {
        const Budget::Scope scope = document->OpenScope(Budget::Share::Page);
        try {
            const auto page = document->GetPage(index);
            document->SetPage(index);
            const auto root = page ? page->BuildObjects() : nullptr;
            if (!root) return;
            root->UpdateBBoxes();
            Host::Problems problems = counter.Take();
            (void)Host::MakePageJson(*page, index, *root, problems, 0);
            (void)Host::MakeSvg(*page, *root, document->GetTitle(), document->GetICCProfiles(-1), problems);
        } catch (Error::Type) {
        }
    }

    std::string bytes;
    Host::ProblemCounter counter;
    Kernel::Counted<PdfDocument> document;
    bool isOpen;
};

} // namespace Quillet
