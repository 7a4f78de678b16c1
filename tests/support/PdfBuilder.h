#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Quillet {

/// Writes a PDF into memory, object by object, with right offsets.
class PdfBuilder
{
public:
    /// Appends an object with the text between "obj" and "endobj"; gives its number, from 1.
    int Add(std::string body);
    /// Appends a stream object; `entries` are those of its dictionary besides the length.
    int AddStream(const std::string& data, const std::string& entries = "");
    /// Replaces the text of an object.
    void Set(int number, std::string body);

    static std::string MakeStream(const std::string& data, const std::string& entries = "");

    /// The file, with a classic table.
    std::string Build() const;
    /// The file with a cross-reference stream; objects that are no streams lie in one object stream.
    std::string BuildCompressed() const;

    std::string header = "%PDF-1.7\n";
    /// Entries of the trailer besides the size.
    std::string trailer = "/Root 1 0 R";

private:
    std::vector<std::string> bodies;
};

/// What a test page has besides its content.
struct PageParts
{
    /// Entries of the resource dictionary.
    std::string resources = {};
    /// Further entries of the page.
    std::string entries = "/MediaBox [0 0 100 100]";
    /// Objects from number 5 on.
    std::vector<std::string> objects = {};
    /// Further entries of the catalog.
    std::string catalog = {};
};

/// A document of one page: object 1 is the catalog, 2 the page tree, 3 the page, 4 its content.
PdfBuilder MakePageBuilder(const std::string& content, const PageParts& parts = {});
std::string MakePagePdf(const std::string& content, const PageParts& parts = {});

} // namespace Quillet
