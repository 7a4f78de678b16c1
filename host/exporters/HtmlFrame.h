#pragma once

#include <Raster/ICCManager.h>

namespace Quillet {
class ColumnObject;
class TextLineObject;
} // namespace Quillet

namespace Host {

class LongText;

/// Appends a column as a placed box of paragraphs.
void AppendFrame(LongText& html, const Quillet::ColumnObject& column,
                 const Raster::ICCManager::ICCProfileSet& profiles);

/// Appends a line of a raw tree likewise.
void AppendFrame(LongText& html, const Quillet::TextLineObject& line,
                 const Raster::ICCManager::ICCProfileSet& profiles);

} // namespace Host
