#pragma once

#include "support/ErrorRecorder.h"

#include <Quillet/PdfDocument.h>
#include <Quillet/Ref.h>

#include <Kernel/Counted.h>

#include <string>

namespace Quillet {

class GroupObject;

/// A document in memory, with a record of every kind that it raised, while opening and after.
class TestDocument
{
public:
    explicit TestDocument(std::string file);
    ~TestDocument();

    PdfDocument* operator->() const { return document.Get(); }
    /// The tree of a page; null for a page that cannot be built.
    Kernel::Counted<GroupObject> Build(int page = 0);
    /// An object of the file by its number.
    Ref GetRef(int number) const { return Ref(document, number, 0); }
    const std::vector<int>& GetErrors() const { return errors.kinds; }

    std::string bytes;
    ErrorRecorder errors;
    Kernel::Counted<PdfDocument> document;
    bool isOpen;
};

} // namespace Quillet
