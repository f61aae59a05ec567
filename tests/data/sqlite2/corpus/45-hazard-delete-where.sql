-- start: new
-- DELETE with a WHERE on a numeric column must remove exactly the rows
-- equal by number, with and without an index, and keep the rest intact.

CREATE TABLE t(a, b TEXT);

INSERT INTO t VALUES(1, 'one');

INSERT INTO t VALUES(3, 'three');

INSERT INTO t VALUES('3', 'text three');

INSERT INTO t VALUES(3.0, 'three point zero');

INSERT INTO t VALUES('03', 'zero three');

INSERT INTO t VALUES(' 3', 'blank three');

INSERT INTO t VALUES(4, 'four');

DELETE FROM t WHERE a=3;

SELECT * FROM t ORDER BY rowid;

CREATE INDEX t_a ON t(a);

INSERT INTO t VALUES(3e0, 'exponent three');

INSERT INTO t VALUES(5, 'five');

DELETE FROM t WHERE a=3;

SELECT * FROM t ORDER BY rowid;

DELETE FROM t WHERE a=' 3';

DELETE FROM t WHERE b = 'four' AND a = 4.0;

SELECT * FROM t ORDER BY rowid;
