#!/usr/bin/env python3
"""Share of header declarations that have a comment directly before them.

Counts over the .h files of include/zttl, include/ztlib, include/sqlite and
include/EnhGUI (or the folders given on the command line), run from the
repository root.

How it counts, line by line and without a C++ parser:
  * Comments are recognised first: a line that starts with // or lies inside
    a /* ... */ block is a comment line. Preprocessor lines, blank lines and
    access labels (public:, protected:, private:) are neither declarations
    nor comments.
  * Only lines at namespace or class scope are looked at: the body of an
    inline function or of an initialiser (brace depth beyond the enclosing
    class) is skipped, so its statements are not counted.
  * A declaration is a line at such a scope that starts a class, struct,
    union or enum (a definition, not a forward declaration like
    "class X;"), a typedef or using alias (not "using Base::Name;"), or a
    function or method (a name followed by "(" before any "=" or ";",
    including constructors, destructors and operators). Enumerators, data
    members and forward declarations are not counted.
  * A declaration counts as commented when the nearest preceding line that
    is not a template<...> line is a comment line, or when the declaration
    line itself ends in a trailing // comment. A comment shared by a group of
    declarations counts for the first of them only, so the share is a lower
    bound.

Prints one line per folder and a total: commented/declarations and the share.
"""

import os
import re
import sys

DEFAULT_FOLDERS = ["include/zttl", "include/ztlib", "include/sqlite", "include/EnhGUI"]

TYPE_RE = re.compile(r"^(template\s*<.*>\s*)?(class|struct|union|enum)(\s+class)?\s+\w+")
ALIAS_RE = re.compile(r"^(typedef\b|using\s+\w+\s*=)")
ACCESS_RE = re.compile(r"^((public|protected|private)(\s+slots)?|signals|Q_SIGNALS)\s*:")
CONTROL_WORDS = {"if", "for", "while", "switch", "return", "case", "do", "else", "delete", "new", "sizeof", "static_assert"}


def strip_strings(line):
    """Removes string and character literals so braces inside them are not counted."""
    return re.sub(r'"(\\.|[^"\\])*"|\'(\\.|[^\'\\])*\'', '""', line)


def is_function(code):
    if "(" not in code:
        return False
    head = code.split("(", 1)[0]
    for stop in ("=", ";", "return "):
        if stop in head and not head.rstrip().endswith("operator=") and "operator" not in head:
            return False
    words = re.findall(r"[~\w]+", head)
    if not words:
        return False
    if words[0] in CONTROL_WORDS or words[-1] in CONTROL_WORDS:
        return False
    if code.startswith(("#", ":", ",", ")", "}", "{")):
        return False
    return True


def classify(code):
    """'decl' for a counted declaration, None otherwise."""
    if ACCESS_RE.match(code):
        return None
    if TYPE_RE.match(code) and ("{" in code or not code.endswith(";")):
        return "decl"
    if ALIAS_RE.match(code) and not re.match(r"^using\s+[\w:<>]+::\w+\s*;", code):
        return "decl"
    if code.startswith("template") and code.endswith(">"):
        return None
    if is_function(code):
        return "decl"
    return None


def count_file(path):
    declarations = 0
    commented = 0
    in_block = False
    depth = 0
    # Brace depths at which declarations are looked for: file scope and the
    # body of each class, struct, union or enum that is open.
    scopes = [0]
    previous = "blank"  # kind of the nearest earlier line: blank, comment, decl, other
    pending_scope = False
    with open(path, encoding="utf-8", errors="replace") as handle:
        for raw in handle:
            line = raw.strip()
            if in_block:
                if "*/" in line:
                    in_block = False
                previous = "comment"
                continue
            if line.startswith("/*"):
                in_block = "*/" not in line
                previous = "comment"
                continue
            if line.startswith("//"):
                previous = "comment"
                continue
            if not line:
                previous = "blank"
                continue
            if line.startswith("#"):
                continue
            code = strip_strings(line)
            trailing = "//" in code
            code = code.split("//", 1)[0].strip()
            at_scope = depth == scopes[-1]
            kind = classify(code) if at_scope else None
            if kind == "decl":
                declarations += 1
                previous_before = previous
                if trailing or previous == "comment":
                    commented += 1
                previous = "decl"
                if TYPE_RE.match(code) and ("{" in code or not code.endswith(";")):
                    pending_scope = True
                if os.environ.get("SHOW_DECLARATIONS"):
                    print(f"{path}: {'+' if trailing or previous_before == 'comment' else '-'} {code}")
            elif at_scope and code.startswith("template") and code.endswith(">"):
                pass  # keeps the comment above a template<...> line attached
            elif at_scope and ACCESS_RE.match(code):
                previous = "blank"
            elif at_scope:
                previous = "other"
            for ch in code:
                if ch == "{":
                    depth += 1
                    if pending_scope:
                        scopes.append(depth)
                        pending_scope = False
                elif ch == "}":
                    if len(scopes) > 1 and depth == scopes[-1]:
                        scopes.pop()
                    depth -= 1
            if ";" in code and pending_scope and "{" not in code:
                pending_scope = False
    return declarations, commented


def main(argv):
    folders = argv[1:] or DEFAULT_FOLDERS
    total_declarations = 0
    total_commented = 0
    for folder in folders:
        folder_declarations = 0
        folder_commented = 0
        for name in sorted(os.listdir(folder)):
            if not name.endswith(".h"):
                continue
            declarations, commented = count_file(os.path.join(folder, name))
            folder_declarations += declarations
            folder_commented += commented
        share = 100.0 * folder_commented / folder_declarations if folder_declarations else 0.0
        print(f"{folder}: {folder_commented}/{folder_declarations} = {share:.1f}%")
        total_declarations += folder_declarations
        total_commented += folder_commented
    share = 100.0 * total_commented / total_declarations if total_declarations else 0.0
    print(f"total: {total_commented}/{total_declarations} = {share:.1f}%")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
