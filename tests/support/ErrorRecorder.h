#pragma once

#include <Quillet/ErrorForwarder.h>

#include <vector>

namespace Quillet {

/// Writes down every kind that is raised, in order; a fatal one is thrown as well.
class ErrorRecorder : public ErrorForwarder
{
public:
    void OnError(Error::Type type) const override
    {
        kinds.push_back(type);
        ErrorForwarder::OnError(type);
    }

    mutable std::vector<int> kinds;
};

} // namespace Quillet
