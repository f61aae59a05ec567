-- start: new
-- A UNIQUE column receives 4, then the computed 1+3 (the same number), then
-- 4.0 under OR IGNORE: uniqueness compares numbers by value.

CREATE TABLE t1(a UNIQUE, b);

INSERT INTO t1 VALUES(4,5);

INSERT INTO t1 SELECT 1+3, 7;

INSERT OR IGNORE INTO t1 VALUES(4.0, 8);

SELECT * FROM t1;

INSERT INTO t1 VALUES('4', 9);

INSERT INTO t1 VALUES(' 4', 10);

INSERT OR REPLACE INTO t1 VALUES(4e0, 11);

SELECT * FROM t1 ORDER BY rowid;

SELECT a, b FROM t1 WHERE a = 4;

UPDATE t1 SET a = 2 + 2 WHERE b = 10;

UPDATE OR REPLACE t1 SET a = 2 + 2 WHERE b = 10;

SELECT * FROM t1 ORDER BY rowid;
