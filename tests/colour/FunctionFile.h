#pragma once

#include "colour/Function.h"
#include "support/ObjectFile.h"

#include <string>
#include <vector>

namespace Quillet {

/// The function in object 5; further objects count from 6.
struct FunctionFile : ObjectFile
{
    explicit FunctionFile(const std::string& body, const std::vector<std::string>& others = {})
        : ObjectFile(body, others), function(Function::Make(GetRef()))
    {}

    std::vector<double> Call(const std::vector<double>& in, std::size_t outCount) const
    {
        std::vector<double> out(outCount, -99);
        function->Call(out.data(), outCount, in.data(), in.size());
        return out;
    }

    Kernel::Counted<const Function> function;
};

/// A function of type 2.
inline std::string MakePower(const std::string& entries, const std::string& domain = "0 1")
{
    return "<< /FunctionType 2 /Domain [" + domain + "] " + entries + " >>";
}

/// A function of type 3; `parts` are references.
inline std::string MakeStitched(const std::string& parts, const std::string& entries)
{
    return "<< /FunctionType 3 /Domain [0 1] /Functions [" + parts + "] " + entries + " >>";
}

} // namespace Quillet
