#include "ztlib/zt_outline.h"

#include <sstream>

struct ZT_OutlineReader::Element {
    std::string name;
    std::string text;
    std::vector<std::unique_ptr<Element>> children;
};

namespace {
std::string Indent(size_t depth)
{
    return std::string(2 * depth, ' ');
}

int HexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

// The inside of a quoted value back to its bytes: the escapes of WriteString.
std::string Unescaped(const std::string& inner)
{
    std::string plain;
    for (size_t i = 0; i < inner.size(); ++i) {
        if (inner[i] != '\\' || i + 1 == inner.size()) {
            plain += inner[i];
            continue;
        }
        char c = inner[++i];
        if (c == 'n') {
            plain += '\n';
        } else if (c == 'r') {
            plain += '\r';
        } else if (c == 't') {
            plain += '\t';
        } else if (c == 'x' && i + 2 < inner.size() && HexDigit(inner[i + 1]) >= 0 && HexDigit(inner[i + 2]) >= 0) {
            plain += char(HexDigit(inner[i + 1]) * 16 + HexDigit(inner[i + 2]));
            i += 2;
        } else {
            plain += c;
        }
    }
    return plain;
}

// "name = value"; with the indentation gone, an empty name leaves "= value".
bool SplitValueLine(const std::string& line, std::string& name, std::string& value)
{
    if (line.compare(0, 2, "= ") == 0) {
        name.clear();
        value = line.substr(2);
        return true;
    }
    size_t equals = line.find(" = ");
    if (equals == std::string::npos)
        return false;
    name = line.substr(0, equals);
    value = line.substr(equals + 3);
    return true;
}
} // namespace

void ZT_OutlineWriter::BeginElement(const char* name)
{
    // The parent becomes a block once it gets a child.
    if (!open.empty() && !hasChildren.back()) {
        text += Indent(open.size() - 1) + open.back() + " {\n";
        hasChildren.back() = true;
    }
    open.push_back(name ? name : "");
    hasChildren.push_back(false);
    hasValue.push_back(false);
}

void ZT_OutlineWriter::EndElement(int)
{
    if (open.empty())
        return;
    if (hasChildren.back())
        text += Indent(open.size() - 1) + "}\n";
    else if (!hasValue.back())
        text += Indent(open.size() - 1) + open.back() + " {\n" + Indent(open.size() - 1) + "}\n";
    open.pop_back();
    hasChildren.pop_back();
    hasValue.pop_back();
}

void ZT_OutlineWriter::WriteRaw(const char* value)
{
    if (open.empty() || hasValue.back() || hasChildren.back())
        return;
    text += Indent(open.size() - 1) + open.back() + " = " + (value ? value : "") + "\n";
    hasValue.back() = true;
}

void ZT_OutlineWriter::WriteString(const char* value)
{
    // Every element is one line, so no control byte may stay raw in it; the
    // quote and the backslash are escaped so the reader can undo all of it.
    std::string quoted = "\"";
    for (const char* p = value ? value : ""; *p; ++p) {
        unsigned char c = static_cast<unsigned char>(*p);
        switch (c) {
        case '"':
        case '\\':
            quoted += '\\';
            quoted += char(c);
            break;
        case '\n':
            quoted += "\\n";
            break;
        case '\r':
            quoted += "\\r";
            break;
        case '\t':
            quoted += "\\t";
            break;
        default:
            if (c < 0x20 || c == 0x7F) {
                quoted += "\\x";
                quoted += "0123456789ABCDEF"[c >> 4];
                quoted += "0123456789ABCDEF"[c & 0xF];
            } else {
                quoted += char(c);
            }
        }
    }
    WriteRaw((quoted + "\"").c_str());
}

ZT_OutlineReader::ZT_OutlineReader(const std::string& text) : root(new Element)
{
    std::vector<Element*> stack{root.get()};
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        size_t start = line.find_first_not_of(' ');
        if (start == std::string::npos)
            continue;
        line = line.substr(start);
        if (line == "}") {
            if (stack.size() > 1)
                stack.pop_back();
            continue;
        }
        auto element = std::make_unique<Element>();
        Element* raw = element.get();
        std::string value;
        if (SplitValueLine(line, raw->name, value)) {
            // Keep the quotes (they mark a text value) and undo the escapes.
            if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
                value = '"' + Unescaped(value.substr(1, value.size() - 2)) + '"';
            raw->text = value;
            stack.back()->children.push_back(std::move(element));
        } else if (line == "{" || (line.size() > 2 && line.compare(line.size() - 2, 2, " {") == 0)) {
            // "{" alone opens an element with an empty name.
            raw->name = line == "{" ? "" : line.substr(0, line.size() - 2);
            stack.back()->children.push_back(std::move(element));
            stack.push_back(raw);
        }
    }
    frames.push_back({root.get(), 0});
    if (!root->children.empty())
        frames.push_back({root->children[0].get(), 0});
}

ZT_OutlineReader::~ZT_OutlineReader() = default;

const char* ZT_OutlineReader::GetElementName() const
{
    return frames.back().element->name.c_str();
}

const char* ZT_OutlineReader::GetElementText() const
{
    return frames.back().element->text.c_str();
}

bool ZT_OutlineReader::NextElement(const char* name)
{
    std::string wanted = name ? name : "";
    while (frames.size() > 1 && frames.back().element->name != wanted)
        frames.pop_back();
    Frame& frame = frames.back();
    if (frame.next >= frame.element->children.size())
        return false;
    Element* child = frame.element->children[frame.next++].get();
    frames.push_back({child, 0});
    return true;
}
