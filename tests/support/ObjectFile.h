#pragma once

#include "support/PdfBuilder.h"
#include "support/TestDocument.h"

#include <string>
#include <vector>

namespace Quillet {

/// A document that has an object under test as number 5, and others from 6 on.
struct ObjectFile
{
    explicit ObjectFile(const std::string& object, const std::vector<std::string>& others = {})
        : document(Make(object, others))
    {}

    Ref GetRef(int number = 5) const { return document.GetRef(number); }
    const std::vector<int>& GetErrors() const { return document.GetErrors(); }

    TestDocument document;

private:
    static std::string Make(const std::string& object, const std::vector<std::string>& others)
    {
        PdfBuilder builder = MakePageBuilder("");
        builder.Add(object);
        for (const std::string& other : others)
            builder.Add(other);
        return builder.Build();
    }
};

} // namespace Quillet
