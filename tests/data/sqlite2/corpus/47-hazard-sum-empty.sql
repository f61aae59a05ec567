-- start: new
-- An aggregate over an empty table still yields one row, and that row is
-- inserted: sum() gives 0, max() gives NULL.

CREATE TABLE t(a INTEGER);

CREATE TABLE log(total);

INSERT INTO log SELECT sum(a) FROM t;

INSERT INTO log SELECT max(a) FROM t;

INSERT INTO log SELECT count(*) FROM t;

INSERT INTO log SELECT avg(a) FROM t;

SELECT rowid, total FROM log ORDER BY rowid;

INSERT INTO log SELECT a FROM t;

INSERT INTO log SELECT sum(a) FROM t GROUP BY a;

SELECT count(*) FROM log;

INSERT INTO t VALUES(2147483647);

INSERT INTO t VALUES(1);

INSERT INTO log SELECT sum(a) FROM t;

INSERT INTO log SELECT sum(a) / 2 FROM t;

SELECT rowid, total FROM log ORDER BY rowid;
