-- start: new
-- A TEXT column made numeric by COLLATE numeric: values keep their
-- spelling, compare and index as numbers.

CREATE TABLE t8(x TEXT COLLATE numeric);

INSERT INTO t8 VALUES(10);

INSERT INTO t8 VALUES('9');

INSERT INTO t8 VALUES('010');

INSERT INTO t8 VALUES('abc');

INSERT INTO t8 VALUES(1.5);

SELECT x FROM t8 ORDER BY x;

SELECT x FROM t8 WHERE x = 10 ORDER BY rowid;

SELECT x FROM t8 WHERE x > '9' ORDER BY rowid;

CREATE INDEX t8_x ON t8(x);

SELECT x FROM t8 WHERE x = '10.0' ORDER BY rowid;

SELECT x FROM t8 WHERE x < 10 ORDER BY x;

UPDATE t8 SET x = x || '' WHERE x = 9;

DELETE FROM t8 WHERE x = 10;

SELECT x FROM t8 ORDER BY x;
