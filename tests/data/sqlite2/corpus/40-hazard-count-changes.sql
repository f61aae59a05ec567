-- start: new
-- With PRAGMA count_changes on, every INSERT/UPDATE/DELETE answers with a
-- row count and queries must still answer with their own rows; the data
-- written meanwhile must reach the file unchanged.

CREATE TABLE t(a INTEGER PRIMARY KEY, b);

INSERT INTO t VALUES(1, 'one');

PRAGMA count_changes=on;

SELECT * FROM t;

INSERT INTO t VALUES(2, 'two');

SELECT * FROM t ORDER BY a;

SELECT count(*) FROM t;

UPDATE t SET b = upper(b);

SELECT b FROM t ORDER BY a;

INSERT INTO t SELECT a + 10, b FROM t;

DELETE FROM t WHERE a > 10;

DELETE FROM t;

INSERT INTO t VALUES(3, 'three');

SELECT * FROM t;

CREATE TABLE u(x);

INSERT INTO u VALUES(1);

DROP TABLE u;

PRAGMA count_changes=off;

INSERT INTO t VALUES(4, 'four');

SELECT * FROM t ORDER BY a;
