-- start: new
-- headers: on
-- With the shell's headers on: result column names, PRAGMA count_changes
-- (rows inserted/updated/deleted), PRAGMA empty_result_callbacks (a header
-- line for a query without rows), and the PRAGMAs that report the schema.

CREATE TABLE t(id INTEGER PRIMARY KEY, name TEXT NOT NULL DEFAULT 'x', n NUMERIC);

INSERT INTO t VALUES(1, 'a', 10);

INSERT INTO t VALUES(2, 'b', 20);

SELECT * FROM t ORDER BY id;

SELECT id, name AS label, n * 2, n*2, count(*) FROM t GROUP BY id ORDER BY id;

SELECT t.id, t.name FROM t WHERE id = 1;

SELECT x.id FROM t AS x WHERE x.id = 2;

SELECT 1, 'a', NULL, 1 + 1, upper('b');

SELECT * FROM t WHERE id > 100;

SELECT count(*) FROM t WHERE id > 100;

PRAGMA count_changes = ON;

INSERT INTO t VALUES(3, 'c', 30);

INSERT INTO t SELECT id + 10, name, n FROM t;

UPDATE t SET n = n + 1 WHERE id > 10;

UPDATE t SET n = 0 WHERE id > 1000;

DELETE FROM t WHERE id > 10;

DELETE FROM t WHERE id > 1000;

SELECT * FROM t ORDER BY id;

SELECT * FROM t WHERE 0;

PRAGMA count_changes = OFF;

INSERT INTO t VALUES(4, 'd', 40);

PRAGMA empty_result_callbacks = ON;

SELECT * FROM t WHERE id > 100;

SELECT id AS "the id", name FROM t WHERE 0;

SELECT count(*) FROM t WHERE id > 100;

SELECT * FROM t WHERE id = 4;

PRAGMA count_changes = 1;

DELETE FROM t WHERE id = 4;

DELETE FROM t WHERE id = 4;

PRAGMA count_changes = 0;

PRAGMA empty_result_callbacks = OFF;

SELECT * FROM t WHERE 0;

PRAGMA table_info(t);

PRAGMA table_info(nosuch);

CREATE INDEX t_name ON t(name);

CREATE UNIQUE INDEX t_n ON t(n, name);

PRAGMA index_list(t);

PRAGMA index_info(t_n);

PRAGMA count_changes;

PRAGMA empty_result_callbacks;

PRAGMA full_column_names = ON;

SELECT * FROM t WHERE id = 1;

SELECT a.id, b.name FROM t a, t b WHERE a.id = b.id AND a.id = 1;

PRAGMA full_column_names = OFF;

SELECT a.id, b.name FROM t a, t b WHERE a.id = b.id AND a.id = 1;

PRAGMA short_column_names = ON;

SELECT a.id, b.name FROM t a, t b WHERE a.id = b.id AND a.id = 1;

PRAGMA short_column_names = OFF;

SELECT * FROM t a, t b WHERE a.id = b.id AND a.id = 1;

SELECT a.*, b.id FROM t a, t b WHERE a.id = b.id AND a.id = 1;

PRAGMA integrity_check;

PRAGMA nosuch_pragma;

PRAGMA cache_size;

SELECT * FROM sqlite_master ORDER BY name;

