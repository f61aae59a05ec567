#pragma once

#include <memory>
#include <string>
#include <vector>

// The nested document that parameters are saved to and loaded from: named
// elements holding a value text or further elements. Text form, one element
// a line, indented by two blanks a level: "name = value", "name = \"text\""
// or "name {" ... "}". Names may be empty but must not hold a line break,
// start with a blank, contain " = " or end in " {" (the cleaned names of
// parameters never do).
class ZT_OutlineWriter {
public:
    // Opens an element (null is the empty name) inside the open one, which turns
    // into a "name {" block at its first child.
    void BeginElement(const char* name);
    // Closes the innermost element; one with neither value nor children is
    // written as an empty block. Without an open element nothing happens.
    void EndElement(int unused);
    // A value text of one line, written as it is (numbers, colours, ranges).
    // Only the first value of an element without children is written.
    void WriteRaw(const char* text);
    // Any text, between quotes: \" \\ \n \r \t and \xHH for the other control
    // bytes, so that the reader gives back every byte unchanged.
    void WriteString(const char* text);
    // The text written so far.
    const std::string& GetText() const { return text; }

private:
    std::string text;
    std::vector<std::string> open;  // names of the open elements
    std::vector<bool> hasChildren; // whether "name {" was written for them
    std::vector<bool> hasValue;
};

// Reads the whole text at once into a tree and walks it; lines it does not
// understand are skipped and a stray "}" closes nothing.
class ZT_OutlineReader {
public:
    // Positions the reader on the first top-level element, if any.
    explicit ZT_OutlineReader(const std::string& text);
    ~ZT_OutlineReader();
    // Name of the current element ("" at the root). Never null; valid until the
    // reader goes.
    const char* GetElementName() const;
    // First leaves the elements entered since the one of that name (a name not on
    // the way leads back to the root), then enters its next child. False when it
    // has none left.
    bool NextElement(const char* name);
    // The value text of the current element, "" for a block. A text value
    // keeps its surrounding quotes (they tell it from a number), with the
    // escapes undone inside them.
    const char* GetElementText() const;

private:
    struct Element;
    struct Frame {
        Element* element;
        size_t next;
    };
    std::unique_ptr<Element> root;
    std::vector<Frame> frames;
};
