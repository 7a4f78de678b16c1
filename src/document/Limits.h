#pragma once

/// Every cap on what a file may ask for, in one place. None of them is met by files that people make; each keeps a
/// hostile file from taking the host's time or memory.
///
/// What can be long is paid for (`Budget`); a cap stands here where a price cannot help: where the stack is at stake,
/// where one value would have to be held in one piece, or where reading more would not make sense.
namespace Quillet::Limits {

// The account of a document, in the units of `Budget`: a byte that is kept or written, or some nanoseconds of work.

/// What every document has: some hundred megabytes or two seconds. The files of readers' test collections need a tenth
/// of it at the most.
inline constexpr long long c_baseUnits = 480'000'000;
/// For each byte of the first megabyte. A small file that is packed a thousandfold still ends in seconds.
inline constexpr unsigned long long c_unitsPerNearByte = 100;
inline constexpr unsigned long long c_nearBytes = 1ull << 20;
/// For each byte beyond: more than any content costs that a byte of a file can stand for without tricks.
inline constexpr unsigned long long c_unitsPerByte = 3200;
/// A page gets fifteen sixteenths of what is left, and what builds its tree five eighths of that, so that the next page
/// can say something, and the tree be written.
inline constexpr long long c_shareParts = 16;
inline constexpr long long c_pageShare = 15;
inline constexpr long long c_innerShare = 10;

// Prices. What takes longer than its bytes say, or keeps more, is charged as that many units.

/// Going to a place of a file: a seek and a system call, beside the bytes that come.
inline constexpr unsigned long long c_lookUpUnits = 120;
/// Filling the tokeniser's buffer, likewise.
inline constexpr unsigned long long c_refillUnits = 16;
/// A byte that is taken apart into tokens.
inline constexpr unsigned long long c_tokenByteUnits = 2;
/// One call of a decoder, beside the bytes that it gives.
inline constexpr unsigned long long c_decodeUnits = 2;
/// Setting up a decoder: an inflater takes 40 KB while it lives.
inline constexpr unsigned long long c_decoderUnits = 400;
/// Making the key of an encrypted value, beside its bytes.
inline constexpr unsigned long long c_decryptUnits = 200;
inline constexpr unsigned long long c_operatorUnits = 16;
/// Making a paint of a colour, or taking up a font or a line style.
inline constexpr unsigned long long c_paintUnits = 64;
/// A segment of a path: three nodes in the tree.
inline constexpr unsigned long long c_segmentUnits = 72;
/// A node of a clip that another group has too: finding its box is a walk along it.
inline constexpr unsigned long long c_clipNodeUnits = 8;
/// An object of the tree with its boxes and attributes, or a graphics state.
inline constexpr unsigned long long c_objectUnits = 400;
/// A form, beside its groups: a parser and a table of operators.
inline constexpr unsigned long long c_formUnits = 200;
inline constexpr unsigned long long c_charUnits = 120;
/// Going over a character of a line once more, or moving it, when lines are put together, and measuring it.
inline constexpr unsigned long long c_walkedCharUnits = 2;
inline constexpr unsigned long long c_measuredCharUnits = 16;
/// Changing attributes of characters: a copy, which is interned.
inline constexpr unsigned long long c_attsUnits = 48;
/// Entries of a sorted list that are moved up in the time of a unit.
inline constexpr unsigned long long c_movedBucketsPerUnit = 4;
/// Looking at an entry of a list that lies anywhere, as while the cross-reference table is read, or sorting it.
inline constexpr unsigned long long c_touchUnits = 8;
/// A sample of a table that a function looks at, and an element of a program.
inline constexpr unsigned long long c_sampleUnits = 2;
inline constexpr unsigned long long c_elementUnits = 4;
/// An entry of a list that is kept, or a comparison of attributes.
inline constexpr unsigned long long c_entryUnits = 64;
/// Looking at a neighbour: its box, or an edge of it.
inline constexpr unsigned long long c_comparisonUnits = 2;
/// A cell of an index of boxes: found by its place, and met on the way through all of them.
inline constexpr unsigned long long c_cellUnits = 6;
inline constexpr unsigned long long c_walkedCellUnits = 12;
/// A range of codes of a font: a node of a map.
inline constexpr unsigned long long c_rangeUnits = 160;
/// A glyph name of a font, looked up in the tables of names.
inline constexpr unsigned long long c_glyphNameUnits = 256;
/// Taking up a colour profile, beside its bytes.
inline constexpr unsigned long long c_profileUnits = 20'000;
/// A font keeps some ten thousand bytes, and asks the machine for what stands in for it.
inline constexpr unsigned long long c_fontUnits = 10'000;

// Caps.

/// Bytes that one stream may decode to. A Flate stream can grow a thousandfold, filters in a row a millionfold.
inline constexpr unsigned long long c_maxDecodedLength = 1ull << 30;

/// Bytes that are held in one piece: a string, a row of samples, what is read of a stream at once for a table or a
/// profile. Nothing of that kind is longer than a few megabytes.
inline constexpr unsigned long long c_maxBlock = 1ull << 26;

/// Bytes of a name or a keyword; ISO 32000-1 Annex C allows 127. Each is copied to wherever it is used.
inline constexpr unsigned long long c_maxNameLength = 1ull << 16;

/// Bytes at the end of a font's name in which words for its style are looked for, one behind the other.
inline constexpr unsigned long long c_maxStyleLength = 256;

/// Filters of one stream. Each level of a chain takes stack while it is read; real streams have two at the most.
inline constexpr unsigned long long c_maxFilters = 16;

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

/// Inks of one colour. ISO 32000-2 Annex C allows 32; each is read at every colour that a page sets.
inline constexpr unsigned long long c_maxColourants = 1024;

/// Code space ranges of a font encoding; real ones have some dozens. Each code of a text is looked up among them.
inline constexpr unsigned long long c_maxCodeSpaceRanges = 4096;

/// Numbers or names of one list. Widths, dashes, domains and the like; page trees and contents are not held to it.
inline constexpr unsigned long long c_maxListLength = 1ull << 20;

/// Codes that one font has widths or glyph names for. None shows more than 65,536.
inline constexpr unsigned long long c_maxFontCodes = 1ull << 16;

/// Codes of one range that are asked one by one; a range may claim billions.
inline constexpr int c_maxSingleCodes = 1 << 17;

/// Spaces that a gap of a line may be, if it is as wide as so many. Nobody types more.
inline constexpr int c_maxSpacesOfGap = 1 << 16;

/// How often, on average, an object is asked whether it stands in a clip above it when the boxes of all that the clip
/// holds do not tell. They tell unless a clip's edge runs within rounding of an outline's; only nests of such clips ask
/// the same objects again.
inline constexpr unsigned long long c_maxOutlineChecks = 64;

/// Pages in a row that a list of fonts does without; a page count may claim billions that are not there.
inline constexpr int c_maxPageGap = 100;

/// Fonts of a document that are told of, and kept in mind.
inline constexpr unsigned long long c_maxFonts = 1ull << 16;

} // namespace Quillet::Limits
