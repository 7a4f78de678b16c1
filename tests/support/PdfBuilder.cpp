#include "support/PdfBuilder.h"

#include <cstdio>

namespace Quillet {

namespace {

std::string MakeObject(std::size_t number, const std::string& body)
{
    return std::to_string(number) + " 0 obj\n" + body + "\nendobj\n";
}

void AppendBigEndian(std::string& text, std::size_t value, int bytes)
{
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        text += static_cast<char>(value >> shift & 0xFF);
}

} // namespace

int PdfBuilder::Add(std::string body)
{
    bodies.push_back(std::move(body));
    return static_cast<int>(bodies.size());
}

int PdfBuilder::AddStream(const std::string& data, const std::string& entries)
{
    return Add(MakeStream(data, entries));
}

void PdfBuilder::Set(int number, std::string body)
{
    bodies.at(static_cast<std::size_t>(number) - 1) = std::move(body);
}

std::string PdfBuilder::MakeStream(const std::string& data, const std::string& entries)
{
    return "<< /Length " + std::to_string(data.size()) + " " + entries + " >>\nstream\n" + data + "\nendstream";
}

std::string PdfBuilder::Build() const
{
    std::string file = header;
    std::string table = "0000000000 65535 f \n";
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        char entry[32];
        std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", file.size());
        table += entry;
        file += MakeObject(i + 1, bodies[i]);
    }
    const std::size_t start = file.size();
    const std::string size = std::to_string(bodies.size() + 1);
    return file + "xref\n0 " + size + "\n" + table + "trailer\n<< /Size " + size + " " + trailer + " >>\nstartxref\n" +
           std::to_string(start) + "\n%%EOF\n";
}

std::string PdfBuilder::BuildCompressed() const
{
    const std::size_t streamNumber = bodies.size() + 1;
    const std::size_t tableNumber = streamNumber + 1;
    std::string file = header;
    std::string offsets;
    std::string objects;
    std::string records("\0\0\0\0\0\xFF\xFF", 7);
    std::size_t index = 0;
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        const bool isStream = bodies[i].find("\nstream\n") != std::string::npos;
        records += static_cast<char>(isStream ? 1 : 2);
        AppendBigEndian(records, isStream ? file.size() : streamNumber, 4);
        AppendBigEndian(records, isStream ? 0 : index, 2);
        if (isStream) {
            file += MakeObject(i + 1, bodies[i]);
        } else {
            offsets += std::to_string(i + 1) + " " + std::to_string(objects.size()) + " ";
            objects += bodies[i] + " ";
            ++index;
        }
    }
    records += '\1';
    AppendBigEndian(records, file.size(), 4);
    AppendBigEndian(records, 0, 2);
    file += MakeObject(streamNumber, MakeStream(offsets + objects, "/Type /ObjStm /N " + std::to_string(index) +
                                                                       " /First " + std::to_string(offsets.size())));
    const std::size_t start = file.size();
    records += '\1';
    AppendBigEndian(records, start, 4);
    AppendBigEndian(records, 0, 2);
    file += MakeObject(tableNumber, MakeStream(records, "/Type /XRef /W [1 4 2] /Size " +
                                                            std::to_string(tableNumber + 1) + " " + trailer));
    return file + "startxref\n" + std::to_string(start) + "\n%%EOF\n";
}

PdfBuilder MakePageBuilder(const std::string& content, const PageParts& parts)
{
    PdfBuilder builder;
    builder.Add("<< /Type /Catalog /Pages 2 0 R " + parts.catalog + " >>");
    builder.Add("<< /Type /Pages /Kids [3 0 R] /Count 1 >>");
    builder.Add("<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Resources << " + parts.resources + " >> " +
                parts.entries + " >>");
    builder.AddStream(content);
    for (const std::string& object : parts.objects)
        builder.Add(object);
    return builder;
}

std::string MakePagePdf(const std::string& content, const PageParts& parts)
{
    return MakePageBuilder(content, parts).Build();
}

} // namespace Quillet
