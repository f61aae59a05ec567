-- start: new
-- Negating a number stored as the text '4221.0', into a numeric column and
-- into a concatenation.

CREATE TABLE t(a, b, c);

INSERT INTO t VALUES('4221.0', NULL, NULL);

INSERT INTO t VALUES('-0.50', NULL, NULL);

INSERT INTO t VALUES('1e3', NULL, NULL);

INSERT INTO t VALUES('007', NULL, NULL);

INSERT INTO t VALUES('abc', NULL, NULL);

UPDATE t SET b = -a, c = 'x' || -a;

SELECT * FROM t ORDER BY rowid;

UPDATE t SET b = -b, c = c || +a;

SELECT * FROM t ORDER BY rowid;

SELECT -a, - -a, -(-a), 0 - a, a * -1 FROM t ORDER BY rowid;
