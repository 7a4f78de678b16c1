// The smallest host: opens a document and says what its first page holds.

#include <Quillet/Quillet.h>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv)
{
    const auto document = Kernel::MakeCounted<Quillet::PdfDocument>();
    if (argc != 2) {
        std::fputs("usage: smallest FILE\n", stderr);
        return EXIT_FAILURE;
    }
    if (!document->OpenFile(argv[1])) {
        std::fprintf(stderr, "smallest: %s\n", Quillet::GetErrorName(document->GetDefaultErrorHandler()->lastError));
        return EXIT_FAILURE;
    }
    try {
        const auto page = document->GetPage(0);
        const auto root = page ? page->BuildObjects() : nullptr;
        if (root) std::printf("%zu objects stand at the top of the page\n", root->children.size());
    } catch (Quillet::Error::Type error) {
        std::fprintf(stderr, "smallest: page 1: %s\n", Quillet::GetErrorName(error));
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
