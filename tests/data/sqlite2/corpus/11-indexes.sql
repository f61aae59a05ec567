-- start: new
-- Indexes: CREATE INDEX on numeric and text columns, UNIQUE indexes,
-- automatic indexes from UNIQUE and PRIMARY KEY, queries that use them, and
-- the order of index entries for numbers spelled differently.

CREATE TABLE r(id INTEGER PRIMARY KEY, n INTEGER, t TEXT, x);

INSERT INTO r VALUES(1, 10, '10', 10);

INSERT INTO r VALUES(2, 9, '9', 9);

INSERT INTO r VALUES(3, '010', '010', '010');

INSERT INTO r VALUES(4, 1e1, '1e1', 1e1);

INSERT INTO r VALUES(5, -1, '-1', -1);

INSERT INTO r VALUES(6, 'abc', 'abc', 'abc');

INSERT INTO r VALUES(7, NULL, NULL, NULL);

INSERT INTO r VALUES(8, 2.5, '2.5', 2.5);

CREATE INDEX r_n ON r(n);

CREATE INDEX r_t ON r(t);

CREATE INDEX r_x ON r(x DESC);

CREATE INDEX r_nt ON r(n, t);

SELECT id FROM r WHERE n = 10 ORDER BY id;

SELECT id FROM r WHERE t = '10' ORDER BY id;

SELECT id FROM r WHERE t = 10 ORDER BY id;

SELECT id FROM r WHERE x = 10 ORDER BY id;

SELECT id FROM r WHERE n > 5 ORDER BY id;

SELECT id FROM r WHERE n > 5 AND n < 100 ORDER BY id;

SELECT id FROM r WHERE t > '5' ORDER BY id;

SELECT id FROM r WHERE n IN (9, 10, 'abc') ORDER BY id;

SELECT id FROM r WHERE n = 10 AND t = '1e1';

SELECT id, n FROM r WHERE n >= -1 ORDER BY n, id;

SELECT id FROM r WHERE n IS NULL;

SELECT id FROM r WHERE x BETWEEN 2 AND 10 ORDER BY id;

SELECT id FROM r WHERE n < 'a' ORDER BY id;

SELECT min(n), max(n), min(t), max(t) FROM r;

UPDATE r SET n = n + 1 WHERE n < 10;

SELECT id, n FROM r ORDER BY id;

DELETE FROM r WHERE n = 10;

SELECT id FROM r WHERE n = 11 ORDER BY id;

SELECT id FROM r ORDER BY id;

PRAGMA index_list(r);

PRAGMA index_info(r_nt);

CREATE UNIQUE INDEX r_u ON r(t);

INSERT INTO r VALUES(9, 100, '2.5', 100);

INSERT INTO r VALUES(10, 100, '2.50', 100);

SELECT id, t FROM r WHERE t LIKE '2.5%' ORDER BY id;

CREATE TABLE u(a UNIQUE, b PRIMARY KEY, c INTEGER UNIQUE, d TEXT, UNIQUE(c, d));

SELECT name, tbl_name, sql FROM sqlite_master WHERE tbl_name = 'u' ORDER BY name;

PRAGMA index_list(u);

INSERT INTO u VALUES(1, 'k1', 1, 'x');

INSERT INTO u VALUES(1.0, 'k2', 2, 'x');

INSERT INTO u VALUES('1', 'k3', 3, 'x');

INSERT INTO u VALUES(2, 'k1', 4, 'x');

INSERT INTO u VALUES(3, 'K1', '01', 'x');

INSERT INTO u VALUES(NULL, NULL, NULL, NULL);

INSERT INTO u VALUES(NULL, NULL, NULL, NULL);

SELECT * FROM u ORDER BY rowid;

SELECT * FROM u WHERE a = 1;

SELECT * FROM u WHERE b = 'k1';

CREATE UNIQUE INDEX u_d ON u(d);

DELETE FROM u WHERE d NOTNULL AND rowid > 1;

CREATE UNIQUE INDEX u_d ON u(d);

CREATE INDEX u_d ON u(a);

CREATE INDEX r_n ON u(a);

CREATE INDEX nowhere ON nosuch(a);

CREATE INDEX badcol ON r(nosuch);

CREATE INDEX sqlite_autoindex_mine ON r(n);

DROP INDEX r_t;

DROP INDEX r_t;

DROP INDEX "(u autoindex 1)";

SELECT name FROM sqlite_master WHERE type = 'index' ORDER BY name;

DROP TABLE r;

SELECT name FROM sqlite_master WHERE type = 'index' ORDER BY name;

CREATE TABLE big(k INTEGER, v TEXT);

CREATE INDEX big_k ON big(k);

INSERT INTO big VALUES(1, 'a');

INSERT INTO big SELECT k + 1, v || 'b' FROM big;

INSERT INTO big SELECT k + 2, v || 'c' FROM big;

INSERT INTO big SELECT k + 4, v || 'd' FROM big;

INSERT INTO big SELECT k + 8, v || 'e' FROM big;

INSERT INTO big SELECT k + 16, v || 'f' FROM big;

INSERT INTO big SELECT k + 32, v || 'g' FROM big;

INSERT INTO big SELECT k + 64, v || 'h' FROM big;

SELECT count(*), sum(k), max(length(v)) FROM big;

SELECT v FROM big WHERE k = 77;

SELECT count(*) FROM big WHERE k BETWEEN 10 AND 20;

DELETE FROM big WHERE k % 3 = 0;

SELECT count(*), min(k), max(k) FROM big;

UPDATE big SET k = -k WHERE k > 100;

SELECT k FROM big WHERE k < 0 ORDER BY k LIMIT 3;
