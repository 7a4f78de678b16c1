#pragma once

#include <Kernel/Consolidated.h>
#include <Kernel/Export.h>
#include <Raster/ColourSpace.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Raster {

/// An ICC profile as its bytes (ICC.1:2010), interned: two streams with the same bytes share one object.
class QUILLET_API ICCProfile : public Kernel::Consolidatable
{
public:
    /// Takes the bytes as they are; whoever reads them has found out that they are a profile, and of which model.
    ICCProfile(std::vector<std::uint8_t> profileBytes, ColourSpace profileModel, std::string profileName = {});

    ColourSpace GetColourSpace() const { return model; }
    /// For messages; no part of the value. Of equal profiles, the first one's.
    const std::string& GetName() const { return name; }
    const std::vector<std::uint8_t>& GetBytes() const { return bytes; }

    std::size_t GetHash() const override { return hash; }
    bool IsEqual(const Kernel::Consolidatable& other) const override;

private:
    std::vector<std::uint8_t> bytes;
    ColourSpace model;
    std::string name;
    /// Profiles reach a megabyte, and the hash is asked for when one is released as well.
    std::size_t hash;
};

} // namespace Raster
