#include "LargeFile.h"

#include "support/PdfBuilder.h"

#include <algorithm>
#include <vector>

namespace Quillet {

namespace {

constexpr int c_objectStreamMembers = 200;

std::string MakeExtraObject(int number)
{
    return "<< /Type /Extra /Number " + std::to_string(number) + " /Link " + std::to_string(number) + " 0 R >>";
}

void AppendRecord(std::string& table, int type, std::size_t first, std::size_t second)
{
    table += static_cast<char>(type);
    for (int shift = 24; shift >= 0; shift -= 8)
        table += static_cast<char>(first >> shift & 0xFF);
    table += static_cast<char>(second);
}

/// Writes objects from `number` on as one object stream with the number `stream`.
void AppendObjectStream(std::string& file, std::string& table, int number, int count, int stream)
{
    std::string offsets;
    std::string objects;
    for (int i = 0; i < count; ++i) {
        offsets += std::to_string(number + i) + " " + std::to_string(objects.size()) + " ";
        objects += MakeExtraObject(number + i) + " ";
        AppendRecord(table, 2, static_cast<std::size_t>(stream), static_cast<std::size_t>(i));
    }
    file += std::to_string(stream) + " 0 obj\n" +
            PdfBuilder::MakeStream(offsets + objects, "/Type /ObjStm /N " + std::to_string(count) + " /First " +
                                                          std::to_string(offsets.size())) +
            "\nendobj\n";
}

/// The node above `kids`, which are numbers of objects and hold so many pages together.
int AddNode(PdfBuilder& builder, const std::vector<int>& kids, int pageCount)
{
    std::string list;
    for (const int kid : kids)
        list += std::to_string(kid) + " 0 R ";
    return builder.Add("<< /Type /Pages /Kids [" + list + "] /Count " + std::to_string(pageCount) +
                       " /MediaBox [0 0 100 100] >>");
}

} // namespace

std::string MakeClassicFile(int objectCount)
{
    PdfBuilder builder = MakePageBuilder("");
    for (int i = 0; i < objectCount; ++i)
        builder.Add(MakeExtraObject(c_firstExtraObject + i));
    return builder.Build();
}

std::string MakeCompressedFile(int objectCount)
{
    const std::string small[] = {"<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
                                 "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 100 100] /Contents 4 0 R >>",
                                 PdfBuilder::MakeStream("")};
    std::string file = "%PDF-1.7\n";
    std::string table;
    AppendRecord(table, 0, 0, 255);
    for (int number = 1; number < c_firstExtraObject; ++number) {
        AppendRecord(table, 1, file.size(), 0);
        file += std::to_string(number) + " 0 obj\n" + small[number - 1] + "\nendobj\n";
    }

    std::string streams;
    const int firstStream = c_firstExtraObject + objectCount;
    int stream = firstStream;
    for (int done = 0; done < objectCount; done += c_objectStreamMembers, ++stream) {
        AppendRecord(streams, 1, file.size(), 0);
        AppendObjectStream(file, table, c_firstExtraObject + done, std::min(c_objectStreamMembers, objectCount - done),
                           stream);
    }
    const std::size_t start = file.size();
    AppendRecord(streams, 1, start, 0);
    table += streams;
    return file + std::to_string(stream) + " 0 obj\n" +
           PdfBuilder::MakeStream(table, "/Type /XRef /W [1 4 1] /Root 1 0 R /Size " + std::to_string(stream + 1)) +
           "\nendobj\nstartxref\n" + std::to_string(start) + "\n%%EOF\n";
}

std::string MakePageTreeFile(int pageCount, int fanOut)
{
    PdfBuilder builder;
    builder.Add("");
    struct Node
    {
        int number;
        int pageCount;
    };
    std::vector<Node> level;
    for (int i = 0; i < pageCount; ++i)
        level.push_back({builder.Add("<< /Type /Page >>"), 1});
    while (level.size() > 1) {
        std::vector<Node> above;
        for (std::size_t i = 0; i < level.size();) {
            std::vector<int> kids;
            int count = 0;
            for (; i < level.size() && kids.size() < static_cast<std::size_t>(fanOut); ++i) {
                kids.push_back(level[i].number);
                count += level[i].pageCount;
            }
            above.push_back({AddNode(builder, kids, count), count});
        }
        level = std::move(above);
    }
    builder.Set(1, "<< /Type /Catalog /Pages " + std::to_string(level.front().number) + " 0 R >>");
    return builder.Build();
}

} // namespace Quillet
