#pragma once

/// What the command's own work costs, in the units of `Quillet::Budget`: a byte that is kept or written, or some seven
/// nanoseconds. The prices are measured, on the high side. What is written is paid for by `LongText` on top of them.
namespace Host::Costs {

/// A page, with its name, its turn and, for some formats, its file.
inline constexpr unsigned long long c_page = 10'000;
/// A node of the tree as JSON: some dozen values.
inline constexpr unsigned long long c_jsonNode = 300;
/// A run of text as JSON has as many values, and up to three colours.
inline constexpr unsigned long long c_jsonRun = 500;
/// An entry of a list, a font say.
inline constexpr unsigned long long c_jsonEntry = 200;
/// A byte of a text that a file brings, in JSON: it is read, and a control character is written as six bytes.
inline constexpr unsigned long long c_jsonTextByte = 7;
/// A paragraph as JSON has so many values of its own.
inline constexpr unsigned long long c_jsonParagraph = 600;
/// A line that is asked for its styles.
inline constexpr unsigned long long c_styleLine = 20;

/// A line and a character of a story, which a host's text is read from.
inline constexpr unsigned long long c_storyLine = 300;
inline constexpr unsigned long long c_storyChar = 12;
/// A stop that a tab is held against.
inline constexpr unsigned long long c_tabStop = 1;
/// A paragraph, a line or a run as plain text.
inline constexpr unsigned long long c_text = 100;

/// A box or paragraph in HTML, with its style.
inline constexpr unsigned long long c_htmlBox = 1'500;
/// A run of text in HTML: its look is put together and compared.
inline constexpr unsigned long long c_htmlRun = 2'500;

/// An element of an SVG with its tags, which the XML tree keeps until the page is written.
inline constexpr unsigned long long c_svgElement = 200;
/// An attribute, likewise, without its value.
inline constexpr unsigned long long c_svgAttribute = 80;
/// A byte of a value: kept, and written.
inline constexpr unsigned long long c_svgValueByte = 2;
/// A byte of a text that a file brings, in SVG: a quotation mark is written as six bytes.
inline constexpr unsigned long long c_svgTextByte = 7;
/// A run of text: its placement, its look, and whether there is anything to see.
inline constexpr unsigned long long c_svgRun = 100;
/// A character of a run, which is measured against its neighbour.
inline constexpr unsigned long long c_svgChar = 20;

/// A segment of path data: six numbers, beside their bytes.
inline constexpr unsigned long long c_segment = 8;
/// A segment that is copied to be moved.
inline constexpr unsigned long long c_movedSegment = 128;

} // namespace Host::Costs
