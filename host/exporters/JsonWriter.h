#pragma once

#include "exporters/LongText.h"

#include <rapidjson/writer.h>

#include <cstddef>
#include <cstdlib>
#include <new>
#include <string_view>

namespace Host {

/// RapidJSON asks no answer of its allocator whether there was memory.
struct JsonAllocator
{
    static constexpr bool kNeedFree = true;

    static void* Malloc(std::size_t size) { return Realloc(nullptr, 0, size); }
    static void* Realloc(void* old, std::size_t, std::size_t size)
    {
        void* const memory = std::realloc(old, size);
        if (!memory) throw std::bad_alloc();
        return memory;
    }
    static void Free(void* memory) { std::free(memory); }
};

/// Where RapidJSON puts its characters.
struct JsonSink
{
    using Ch = char;

    void Put(char c)
    {
        text.Put(c);
        if (!isLineBroken) return;
        if (c == ',') text.Put('\n');
        isLineBroken = false;
    }
    /// At the end of the JSON: its last characters are paid for.
    void Flush() { text.Pay(); }

    LongText& text;
    bool isLineBroken = false;
};

/// Writes JSON at the end of a text as it comes: nothing is held but the levels that are open.
class JsonWriter : private rapidjson::Writer<JsonSink, rapidjson::UTF8<>, rapidjson::UTF8<>, JsonAllocator>
{
public:
    explicit JsonWriter(LongText& text) : Writer(sink), sink{text} {}

    void BeginObject() { StartObject(); }
    void EndObject() { Writer::EndObject(); }
    void BeginArray() { StartArray(); }
    void EndArray() { Writer::EndArray(); }

    /// The name of the next value of an object, one that needs no escapes.
    JsonWriter& Key(std::string_view name);
    void Null() { Writer::Null(); }
    void Flag(bool value) { Bool(value); }
    void Integer(long long value) { Int64(value); }
    /// As `Tidy` has it.
    void Number(double value);
    /// In UTF-8; U+FFFD stands for what is not.
    void Text(std::string_view value);
    /// Where a text that needs no escapes is appended, up to `EndText`.
    LongText& BeginText();
    /// A piece, which ends between two characters, of the text that was begun.
    void AddToText(std::string_view piece);
    void EndText();
    /// Takes a value that was written to a text of its own.
    void Take(LongText&& value);

    /// If a comma comes next, a line ends behind it.
    void BreakLine() { sink.isLineBroken = true; }

private:
    JsonSink sink;
};

} // namespace Host
