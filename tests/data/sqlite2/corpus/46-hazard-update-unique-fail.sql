-- start: new
-- UPDATE through a UNIQUE ON CONFLICT FAIL column: rows updated before the
-- conflicting row keep their change, the rest keep their old values.

CREATE TABLE t1(a,b,c, UNIQUE(a) ON CONFLICT FAIL);

INSERT INTO t1 VALUES(1,2,1);

INSERT INTO t1 VALUES(2,3,2);

INSERT INTO t1 VALUES(3,4,1);

INSERT INTO t1 VALUES(4,5,4);

UPDATE t1 SET a=c+5;

SELECT * FROM t1 ORDER BY rowid;

SELECT a FROM t1 WHERE a = 6;

UPDATE OR IGNORE t1 SET a = c + 10;

SELECT * FROM t1 ORDER BY rowid;

UPDATE OR REPLACE t1 SET a = 99 WHERE b > 3;

SELECT * FROM t1 ORDER BY rowid;
