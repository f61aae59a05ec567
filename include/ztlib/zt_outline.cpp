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
    std::string quoted = "\"";
    for (const char* p = value ? value : ""; *p; ++p) {
        if (*p == '"' || *p == '\\')
            quoted.push_back('\\');
        quoted.push_back(*p == '\n' ? 'n' : *p);
        if (*p == '\n')
            quoted[quoted.size() - 2] = '\\';
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
        size_t equals = line.find(" = ");
        if (equals != std::string::npos) {
            raw->name = line.substr(0, equals);
            std::string value = line.substr(equals + 3);
            if (value.size() >= 2 && value.front() == '"' && value.back() == '"') {
                // Keep the quotes (they mark a text value) and undo the escapes.
                std::string plain = "\"";
                for (size_t i = 1; i + 1 < value.size(); ++i) {
                    if (value[i] == '\\' && i + 2 < value.size()) {
                        ++i;
                        plain.push_back(value[i] == 'n' ? '\n' : value[i]);
                    } else {
                        plain.push_back(value[i]);
                    }
                }
                value = plain + "\"";
            }
            raw->text = value;
            stack.back()->children.push_back(std::move(element));
        } else if (line.size() > 2 && line.compare(line.size() - 2, 2, " {") == 0) {
            raw->name = line.substr(0, line.size() - 2);
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
