# Turns the program's usage text into a small troff man page.
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE usage ERROR_QUIET)
string(REPLACE "\\" "\\\\" usage "${usage}")
string(REPLACE "-" "\\-" usage "${usage}")
string(REPLACE "USAGE:\n" "" usage "${usage}")
string(REGEX REPLACE "\n\n+" "\n" usage "${usage}")
string(STRIP "${usage}" usage)
set(usage "${usage}\n")
string(REGEX REPLACE "([^\t\n]*)\t+([^\n]*)\n" ".TP\n.B \\1\n\\2\n" usage "${usage}")
file(WRITE ${OUTPUT} ".TH ROWKEEPER 1 \"\" \"Rowkeeper 0.10\" \"User Commands\"
.SH NAME
rowkeeper \\- query, change and edit SQLite 2.x and 3.x database files
.SH SYNOPSIS
.B rowkeeper
\\fIoption\\fR \\fIfile\\fR [\\fIsql\\fR | \\fItable\\fR [\\fIwhere\\-part\\fR]]
.SH DESCRIPTION
One invocation runs one command on a database file of either SQLite generation.
SQL text is processed as a format text: write %% for one %.
The query commands \\-\\-query\\-one, \\-\\-query\\-tab and \\-\\-query\\-csv print only data.
.SH OPTIONS
${usage}.SH EXIT STATUS
0 success; 1 the dialogs could not start; 3 the database could not be opened;
4 the table definition could not be read or the name is not a table;
10 the SQL failed; 12 the query failed.
")
