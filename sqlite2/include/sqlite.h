/*
** The C interface of our SQLite 2.x engine: the 2.8 names and result codes
** that the database layer calls. Files are genuine 2.x database files; SQL
** is evaluated by the SQLite 3 library (see docs/sqlite2.md).
*/
#ifndef ROWKEEPER_SQLITE2_SQLITE_H
#define ROWKEEPER_SQLITE2_SQLITE_H

#ifdef __cplusplus
extern "C" {
#endif

typedef struct sqlite sqlite;
typedef struct sqlite_vm sqlite_vm;

/* Result codes, numbered as in SQLite 2.8. */
#define SQLITE_OK           0
#define SQLITE_ERROR        1
#define SQLITE_INTERNAL     2
#define SQLITE_PERM         3
#define SQLITE_ABORT        4
#define SQLITE_BUSY         5
#define SQLITE_LOCKED       6
#define SQLITE_NOMEM        7
#define SQLITE_READONLY     8
#define SQLITE_INTERRUPT    9
#define SQLITE_IOERR       10
#define SQLITE_CORRUPT     11
#define SQLITE_NOTFOUND    12
#define SQLITE_FULL        13
#define SQLITE_CANTOPEN    14
#define SQLITE_PROTOCOL    15
#define SQLITE_EMPTY       16
#define SQLITE_SCHEMA      17
#define SQLITE_TOOBIG      18
#define SQLITE_CONSTRAINT  19
#define SQLITE_MISMATCH    20
#define SQLITE_MISUSE      21
#define SQLITE_NOLFS       22
#define SQLITE_AUTH        23
#define SQLITE_FORMAT      24
#define SQLITE_RANGE       25
#define SQLITE_NOTADB      26
#define SQLITE_ROW        100
#define SQLITE_DONE       101

typedef int (*sqlite_callback)(void *arg, int columns, char **values, char **names);

/* Opens (or, for a name that does not exist, creates) a 2.x database file.
** On failure returns NULL and, when errmsg is given, a message to be freed
** with sqlite_freemem. The mode argument is ignored, as in 2.8. */
sqlite *sqlite_open(const char *filename, int mode, char **errmsg);
void sqlite_close(sqlite *db);

int sqlite_exec(sqlite *db, const char *sql, sqlite_callback callback, void *arg, char **errmsg);
int sqlite_get_table(sqlite *db, const char *sql, char ***result, int *nrow, int *ncolumn, char **errmsg);
void sqlite_free_table(char **result);

int sqlite_compile(sqlite *db, const char *sql, const char **tail, sqlite_vm **vm, char **errmsg);
int sqlite_step(sqlite_vm *vm, int *ncolumn, const char ***values, const char ***names);
int sqlite_finalize(sqlite_vm *vm, char **errmsg);

int sqlite_last_insert_rowid(sqlite *db);
void sqlite_freemem(void *p);

#ifdef __cplusplus
}
#endif

#endif
