-- start: new
-- UPDATE and DELETE chosen by WHERE on numeric and text columns, numbers
-- spelled differently, expressions over the old values, and LIMIT-free
-- whole-table forms.

CREATE TABLE t(a INTEGER, b TEXT, c);

INSERT INTO t VALUES(1, '1', 1);

INSERT INTO t VALUES(2, '2', 2.0);

INSERT INTO t VALUES(3, '3', '3');

INSERT INTO t VALUES('3.0', '3.0', 3e0);

INSERT INTO t VALUES(' 3', ' 3', ' 3');

INSERT INTO t VALUES(4, '04', 'four');

INSERT INTO t VALUES(NULL, NULL, NULL);

INSERT INTO t VALUES(10, '10', 10);

DELETE FROM t WHERE a = 3;

SELECT a FROM t ORDER BY rowid;

DELETE FROM t WHERE b = 3;

SELECT b FROM t ORDER BY rowid;

DELETE FROM t WHERE b = '04';

SELECT b FROM t ORDER BY rowid;

UPDATE t SET c = c * 10 WHERE a < 3;

SELECT a, c FROM t ORDER BY rowid;

UPDATE t SET b = b || 'x' WHERE b > '1';

SELECT b FROM t ORDER BY rowid;

UPDATE t SET a = a + 1, b = a, c = b WHERE a IN (1, 2);

SELECT * FROM t ORDER BY rowid;

UPDATE t SET a = NULL WHERE a = 10;

UPDATE t SET a = 0 WHERE a IS NULL;

SELECT a FROM t ORDER BY rowid;

UPDATE t SET c = 'same' WHERE 1;

UPDATE t SET c = 'none' WHERE 0;

SELECT c FROM t ORDER BY rowid;

UPDATE t SET nosuch = 1;

UPDATE nosuch SET a = 1;

UPDATE t SET a = 1 WHERE nosuch = 2;

DELETE FROM nosuch;

DELETE FROM t WHERE nosuch = 1;

CREATE TABLE u(id INTEGER PRIMARY KEY, v NUMERIC, w TEXT);

INSERT INTO u VALUES(1, '4221.0', '4221.0');

INSERT INTO u VALUES(2, 1.50, 1.50);

INSERT INTO u VALUES(3, -0, -0);

INSERT INTO u VALUES(4, 'abc', 'abc');

UPDATE u SET v = -v, w = 'x' || -w;

SELECT * FROM u ORDER BY id;

UPDATE u SET v = v * 2, w = w || w;

SELECT * FROM u ORDER BY id;

UPDATE u SET v = v WHERE id = 1;

SELECT v FROM u WHERE id = 1;

UPDATE u SET w = v + 0 WHERE id < 3;

SELECT w FROM u ORDER BY id;

UPDATE u SET id = id + 10;

SELECT id FROM u ORDER BY id;

UPDATE u SET id = -id WHERE id > 12;

SELECT id FROM u ORDER BY id;

DELETE FROM u WHERE id < 0;

SELECT id, v FROM u ORDER BY id;

DELETE FROM u WHERE v = -8442;

SELECT count(*) FROM u;

DELETE FROM t;

SELECT count(*) FROM t;

INSERT INTO t VALUES(1, 2, 3);

DELETE FROM t WHERE rowid = (SELECT max(rowid) FROM t);

SELECT count(*) FROM t;

CREATE TABLE many(n INTEGER);

INSERT INTO many VALUES(1);

INSERT INTO many SELECT n + 1 FROM many;

INSERT INTO many SELECT n + 2 FROM many;

INSERT INTO many SELECT n + 4 FROM many;

INSERT INTO many SELECT n + 8 FROM many;

INSERT INTO many SELECT n + 16 FROM many;

DELETE FROM many WHERE n % 2 = 0;

SELECT count(*), sum(n) FROM many;

UPDATE many SET n = n * n WHERE n > 20;

SELECT n FROM many ORDER BY n DESC LIMIT 4;

DELETE FROM many WHERE n > 100 OR n < 3;

SELECT n FROM many ORDER BY n;
