#pragma once

namespace Quillet {

/// Where a fault was met, as far as that is known; -1 for what is not.
struct ErrorPlace
{
    /// Index from 0 of the page that is run, or of the one that the host names by `SetPage`.
    int page = -1;
    /// The indirect object that the fault is in. For content it is the stream that is run: the page's, or a form's.
    int objectNumber = -1;
    int objectGeneration = -1;
    /// In bytes from the start of the file: where reading stood, which is behind what was wrong; of coded data and of
    /// content, where the stream begins. What lies in an object stream has none.
    long long position = -1;
};

} // namespace Quillet
