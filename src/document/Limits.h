#pragma once

/// Every cap on what a file may ask for, in one place. None of them is met by files that people make; each keeps a
/// hostile file from taking the host's time or memory.
namespace Quillet::Limits {

/// Bytes that one stream may decode to. A Flate stream can grow a thousandfold, filters in a row a millionfold.
inline constexpr unsigned long long c_maxDecodedLength = 1ull << 30;

/// Bytes of decoded object streams that a document keeps, all together, since they stay until it closes.
inline constexpr unsigned long long c_maxObjectStreamBytes = 1ull << 30;

/// Bytes of fonts and encodings that a document keeps between uses. What is more is read again when it is asked for.
inline constexpr unsigned long long c_maxFontBytes = 1ull << 30;

/// Entries of the cross-reference table that are really kept. ISO 32000-2 Annex C names 8,388,607 objects as a limit.
inline constexpr unsigned long long c_maxTableEntries = 1ull << 23;

/// Bytes of one record of a cross-reference stream; three numbers of a few bytes in every real file.
inline constexpr unsigned long long c_maxRecordLength = 4096;

/// Nested steps that a file can cause: references to references, page tree levels, forms in forms, arrays in arrays.
/// Each takes some hundred bytes of stack, a few thousand under a sanitizer.
inline constexpr int c_maxDescent = 600;

/// Functions within functions. Each level of direct ones is read once more for the level above it.
inline constexpr int c_maxFunctionNesting = 64;

/// Elements of a calculator function, all its procedures together; real ones have some dozens.
inline constexpr unsigned long long c_maxProgramLength = 1ull << 20;

/// Colours of one gradient. Functions of functions share their parts, so a small file can ask for any number.
inline constexpr unsigned long long c_maxGradientStops = 1ull << 16;

/// Code space ranges of a font encoding; real ones have some dozens. Each code of a text is looked up among them.
inline constexpr unsigned long long c_maxCodeSpaceRanges = 4096;

/// Numbers or names of one list. Widths, dashes, domains and the like; page trees and contents are not held to it.
inline constexpr unsigned long long c_maxListLength = 1ull << 20;

/// Codes that one font has widths or glyph names for. None shows more than 65,536.
inline constexpr unsigned long long c_maxFontCodes = 1ull << 16;

/// Work of one page, in the units of `Guard::Page::Spend`: an operator is 1, a path segment 4, a character 8, an
/// object of the tree 25, a range of codes in a font 8, and 64 bytes that are parsed are 1. The largest maps stay below
/// a tenth of it; it bounds a page to a few gigabytes and a minute.
inline constexpr long long c_maxPageWork = 100'000'000;
inline constexpr long long c_parsedBytesPerWork = 64;
inline constexpr long long c_segmentWork = 4;
inline constexpr long long c_objectWork = 25;
inline constexpr long long c_charWork = 8;
inline constexpr long long c_rangeWork = 8;
/// A font keeps some ten thousand bytes until the document closes.
inline constexpr long long c_fontWork = 4000;

} // namespace Quillet::Limits
