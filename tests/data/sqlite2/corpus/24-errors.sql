-- start: new
-- Typical errors and their 2.8 wording: syntax errors, unknown tables,
-- columns and functions, constraint violations, datatype mismatch, misuse
-- of aggregates; and that a failed statement leaves the data as it was.

CREATE TABLE t(a INTEGER PRIMARY KEY, b UNIQUE, c NOT NULL, d);

INSERT INTO t VALUES(1, 'one', 'c1', NULL);

SELEC * FROM t;

SELECT * FORM t;

SELECT * FROM t WHERE;

SELECT (1;

SELECT 1 +;

INSERT INTO t VALUES(2, 'two', 'c2', NULL;

CREATE TABLE;

SELECT * FROM t t2 t3;

SELECT a b c FROM t;

SELECT 'a' 'b';

SELECT * FROM nosuch;

SELECT nosuch FROM t;

SELECT t.nosuch FROM t;

SELECT nosuch.a FROM t;

SELECT a FROM t, t;

SELECT a FROM t AS x, t AS y;

SELECT * FROM t WHERE nosuchfunc(a);

SELECT sum(a, b) FROM t;

SELECT count(a, b) FROM t;

SELECT * FROM t WHERE sum(a) > 0;

SELECT a FROM t GROUP BY sum(a);

SELECT max(sum(a)) FROM t;

SELECT a FROM t ORDER BY sum(a) + nosuch;

INSERT INTO t VALUES(1, 'dup key', 'c', NULL);

INSERT INTO t VALUES(2, 'one', 'c', NULL);

INSERT INTO t VALUES(3, 'three', NULL, NULL);

INSERT INTO t VALUES('x', 'word key', 'c', NULL);

INSERT INTO t VALUES(4, 'four', 'c');

INSERT INTO t(a, b, e) VALUES(5, 'five', 'e');

INSERT INTO nosuch VALUES(1);

INSERT INTO t SELECT * FROM nosuch;

INSERT INTO t SELECT 6, 'six';

UPDATE t SET b = 'one' WHERE a <> 1;

INSERT INTO t VALUES(2, 'two', 'c2', NULL);

UPDATE t SET b = 'one' WHERE a = 2;

UPDATE t SET c = NULL;

UPDATE t SET a = 'abc';

UPDATE t SET a = 1 WHERE a = 2;

SELECT * FROM t ORDER BY a;

CREATE TABLE t(x);

CREATE INDEX t ON t(b);

CREATE VIEW t AS SELECT 1;

CREATE TABLE u AS SELECT nosuch FROM t;

DROP INDEX nosuch;

DROP TRIGGER nosuch;

DROP VIEW nosuch;

VACUUM nosuch;

PRAGMA table_info;

SELECT * FROM t LIMIT 'a';

SELECT * FROM t LIMIT -1;

SELECT * FROM t LIMIT 1 OFFSET -1;

SELECT 1 UNION SELECT 1, 2;

SELECT a FROM t UNION SELECT nosuch FROM t;

SELECT * FROM (SELECT a FROM t) WHERE b = 1;

SELECT * FROM t ORDER BY 0;

SELECT DISTINCT ON (a) a FROM t;

SELECT * FROM t WHERE a = ?;

SELECT * FROM t WHERE a = :name;

SELECT * FROM t WHERE a = $1;

INSERT INTO t VALUES(10, 'ten', 'c', x'00');

SELECT 0x10;

SELECT 1e;

SELECT 'a' || ;

;

SELECT * FROM t ORDER BY a;
