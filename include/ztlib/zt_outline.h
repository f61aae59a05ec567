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
    void BeginElement(const char* name);
    void EndElement(int unused);
    // A value text of one line, written as it is (numbers, colours, ranges).
    void WriteRaw(const char* text);
    // Any text, between quotes: \" \\ \n \r \t and \xHH for the other control
    // bytes, so that the reader gives back every byte unchanged.
    void WriteString(const char* text);
    const std::string& GetText() const { return text; }

private:
    std::string text;
    std::vector<std::string> open;  // names of the open elements
    std::vector<bool> hasChildren; // whether "name {" was written for them
    std::vector<bool> hasValue;
};

class ZT_OutlineReader {
public:
    explicit ZT_OutlineReader(const std::string& text);
    ~ZT_OutlineReader();
    const char* GetElementName() const;
    // Advances to the next element inside the element of that name.
    bool NextElement(const char* name);
    // A text value keeps its surrounding quotes (they tell it from a number),
    // with the escapes undone inside them.
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
