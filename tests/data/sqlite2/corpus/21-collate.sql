-- start: new
-- COLLATE NUMERIC and COLLATE TEXT on column definitions decide comparison,
-- sorting and index order; typeof follows them.

CREATE TABLE c(plain, num COLLATE NUMERIC, txt COLLATE TEXT, t2 TEXT COLLATE NUMERIC, n2 INTEGER COLLATE TEXT);

INSERT INTO c VALUES(10, 10, 10, 10, 10);

INSERT INTO c VALUES(9, 9, 9, 9, 9);

INSERT INTO c VALUES('010', '010', '010', '010', '010');

INSERT INTO c VALUES('abc', 'abc', 'abc', 'abc', 'abc');

INSERT INTO c VALUES(1.5, 1.5, 1.5, 1.5, 1.5);

SELECT typeof(plain), typeof(num), typeof(txt), typeof(t2), typeof(n2) FROM c LIMIT 1;

SELECT rowid FROM c ORDER BY num, rowid;

SELECT rowid FROM c ORDER BY txt, rowid;

SELECT rowid FROM c ORDER BY t2, rowid;

SELECT rowid FROM c ORDER BY n2, rowid;

SELECT rowid FROM c WHERE num = 10 ORDER BY rowid;

SELECT rowid FROM c WHERE txt = 10 ORDER BY rowid;

SELECT rowid FROM c WHERE txt = '10' ORDER BY rowid;

SELECT rowid FROM c WHERE t2 = '10' ORDER BY rowid;

SELECT rowid FROM c WHERE n2 = '10' ORDER BY rowid;

SELECT rowid FROM c WHERE n2 > '2' ORDER BY rowid;

SELECT rowid FROM c WHERE t2 > '2' ORDER BY rowid;

SELECT DISTINCT t2 FROM c ORDER BY t2;

SELECT max(txt), min(txt), max(t2), min(t2) FROM c;

CREATE INDEX c_t2 ON c(t2);

CREATE INDEX c_n2 ON c(n2);

SELECT rowid FROM c WHERE t2 = 10 ORDER BY rowid;

SELECT rowid FROM c WHERE n2 = 10 ORDER BY rowid;

SELECT rowid FROM c WHERE n2 BETWEEN '1' AND '2' ORDER BY rowid;

CREATE TABLE t8(x TEXT COLLATE numeric);

INSERT INTO t8 VALUES('10');

INSERT INTO t8 VALUES('9');

INSERT INTO t8 VALUES('09');

INSERT INTO t8 VALUES('x');

SELECT x FROM t8 ORDER BY x;

SELECT x FROM t8 WHERE x = 9 ORDER BY rowid;

SELECT x FROM t8 WHERE x < '10' ORDER BY rowid;

CREATE UNIQUE INDEX t8_x ON t8(x);

DELETE FROM t8 WHERE x = '09';

CREATE UNIQUE INDEX t8_x ON t8(x);

INSERT INTO t8 VALUES('9.0');

INSERT INTO t8 VALUES('10 ');

SELECT x FROM t8 ORDER BY x;

CREATE TABLE k(a COLLATE binary, b COLLATE nocase, c COLLATE whatever);

INSERT INTO k VALUES('B', 'B', 'B');

INSERT INTO k VALUES('a', 'a', 'a');

INSERT INTO k VALUES(2, 2, 2);

INSERT INTO k VALUES(10, 10, 10);

SELECT a FROM k ORDER BY a;

SELECT b FROM k ORDER BY b;

SELECT c FROM k ORDER BY c;

SELECT rowid FROM k WHERE b = 'b';

SELECT typeof(a), typeof(b), typeof(c) FROM k LIMIT 1;

SELECT x FROM t8 ORDER BY x COLLATE text;

SELECT 'a' COLLATE text;

CREATE TABLE u(x UNIQUE COLLATE TEXT, y UNIQUE);

INSERT INTO u VALUES('1', '1');

INSERT INTO u VALUES('1.0', '2');

INSERT INTO u VALUES('3', '1.0');

SELECT * FROM u ORDER BY rowid;
