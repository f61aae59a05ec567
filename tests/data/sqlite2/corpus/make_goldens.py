#!/usr/bin/env python3
"""Makes the golden files of the 2.x differential corpus with real SQLite 2.8.17.

For every NAME.sql in this folder it replays the statements, one sqlite_exec
each, in the real 2.8 shell against a fresh file (or a copy of the fixture the
script names) and writes:

  NAME.expected   the transcript: "-- N" then the statement's rows, then
                  "error: MESSAGE" when it failed (see README.md)
  NAME.dump       the shell's .dump of the file afterwards
  NAME.integrity  PRAGMA integrity_check; of the file afterwards

Only a developer runs this, by hand, with the reference shell at hand; the
build and the tests only read the files it wrote.

  tests/data/sqlite2/corpus/make_goldens.py [NAME...]
  SQLITE2_REFERENCE=/path/to/sqlite2 tests/data/sqlite2/corpus/make_goldens.py
"""

import os
import shutil
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
FIXTURES = os.path.dirname(HERE)
REFERENCE = os.environ.get("SQLITE2_REFERENCE", "/work/shared/sqlite2/reference/sqlite2")


def parse_script(text):
    """Returns (settings, statements) by the rules in README.md.

    The header is the first paragraph, made only of "-- key: value" lines.
    Every later paragraph (blank-line separated) is one statement once its
    comment lines are dropped; its lines are joined with "\\n", as the shell
    joins the lines it reads before handing the statement to sqlite_exec.
    """
    paragraphs, current = [], []
    for line in text.split("\n"):
        if line.strip() == "":
            if current:
                paragraphs.append(current)
            current = []
        else:
            current.append(line)
    if current:
        paragraphs.append(current)
    if not paragraphs or not all(line.startswith("--") for line in paragraphs[0]):
        raise ValueError("the script must open with a header paragraph of '-- key: value' lines")
    settings = {}
    for line in paragraphs[0]:
        key, sep, value = line[2:].partition(":")
        if sep:
            settings[key.strip()] = value.strip()
    statements = []
    for paragraph in paragraphs[1:]:
        lines = [line for line in paragraph if not line.lstrip().startswith("--")]
        if not lines:
            continue
        statement = "\n".join(lines)
        if not statement.rstrip().endswith(";") or statement.startswith("."):
            raise ValueError("statement must end with ';' and not start with '.': " + statement)
        statements.append(statement)
    return settings, statements


def run(args, stdin=b""):
    # RAISE() outside a trigger sends 2.8.17 into an endless loop; a script
    # that hangs fails here instead of waiting forever.
    done = subprocess.run(args, input=stdin, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False,
                          timeout=60)
    return done.stdout, done.stderr


def show_block(workdir, headers):
    # The shell's ".show" prints its settings; with nothing changing between
    # statements the block is constant and serves as the marker that tells
    # which statement an error message on stdout belongs to.
    out, _ = run([REFERENCE, os.path.join(workdir, "show.db")],
                 (".nullvalue NULL\n.headers %s\n.show\n" % headers).encode())
    return out


def transcript(name, settings, statements, workdir):
    database = os.path.join(workdir, name + ".db")
    start = settings.get("start", "")
    if start == "new":
        pass
    elif start.endswith(".db") and os.path.exists(os.path.join(FIXTURES, start)):
        shutil.copyfile(os.path.join(FIXTURES, start), database)
    else:
        raise ValueError(name + ": '-- start:' must be 'new' or a fixture file in tests/data/sqlite2")
    headers = settings.get("headers", "off")
    marker = show_block(workdir, headers)

    feed = [".nullvalue NULL", ".headers " + headers]
    for number, statement in enumerate(statements, 1):
        feed += [".output stdout", ".show", ".output " + os.path.join(workdir, "%d.out" % number), statement]
    feed += [".output stdout", ".show", ""]
    out, err = run([REFERENCE, database], "\n".join(feed).encode())
    if err:
        raise RuntimeError(name + ": the shell wrote to stderr: " + err.decode(errors="replace"))
    segments = out.split(marker)
    if len(segments) != len(statements) + 2 or segments[0] or segments[-1]:
        raise RuntimeError(name + ": the shell did not run every statement on its own")

    text = b""
    for number, statement in enumerate(statements, 1):
        with open(os.path.join(workdir, "%d.out" % number), "rb") as rows:
            text += b"-- %d\n" % number + rows.read()
        failure = segments[number]
        if failure:
            # Reading from a pipe, the shell repeats the failed statement, then
            # prints "SQL error: MESSAGE".
            echoed = statement.encode() + b"\nSQL error: "
            if not failure.startswith(echoed) or not failure.endswith(b"\n"):
                raise RuntimeError(name + " statement %d: unexpected shell output %r" % (number, failure))
            text += b"error: " + failure[len(echoed):]
    dump, _ = run([REFERENCE, database, ".dump"])
    integrity, _ = run([REFERENCE, database, "PRAGMA integrity_check;"])
    return text, dump, integrity


def main(names):
    if not os.access(REFERENCE, os.X_OK):
        sys.exit("the real SQLite 2.8.17 shell is not at " + REFERENCE + " (set SQLITE2_REFERENCE)")
    version, _ = run([REFERENCE, "-version"])
    if version.strip() != b"2.8.17":
        sys.exit("expected SQLite 2.8.17, the shell says " + version.decode(errors="replace"))
    scripts = sorted(f[:-4] for f in os.listdir(HERE) if f.endswith(".sql"))
    for name in names or scripts:
        with open(os.path.join(HERE, name + ".sql"), encoding="utf-8") as script:
            settings, statements = parse_script(script.read())
        with tempfile.TemporaryDirectory() as workdir:
            text, dump, integrity = transcript(name, settings, statements, workdir)
        for suffix, content in ((".expected", text), (".dump", dump), (".integrity", integrity)):
            with open(os.path.join(HERE, name + suffix), "wb") as golden:
                golden.write(content)
        errors = sum(1 for line in text.split(b"\n") if line.startswith(b"error: "))
        print("%-24s %4d statements, %3d errors" % (name, len(statements), errors))


if __name__ == "__main__":
    main(sys.argv[1:])
