-- start: new
-- INTEGER PRIMARY KEY as the rowid: spellings accepted and refused, NULL
-- picks the next rowid, ROWID/OID/_ROWID_ names, 32-bit limits, and keys
-- that are not rowid aliases.

CREATE TABLE p(id INTEGER PRIMARY KEY, v TEXT);

INSERT INTO p VALUES(1, 'plain');

INSERT INTO p VALUES('007', 'quoted with zeros');

INSERT INTO p VALUES(1e3, 'exponent');

INSERT INTO p VALUES(3.0, 'point zero');

INSERT INTO p VALUES(-0, 'minus zero');

INSERT INTO p VALUES(+5, 'plus');

INSERT INTO p VALUES(1.5, 'fraction');

INSERT INTO p VALUES(' 7', 'blank');

INSERT INTO p VALUES('abc', 'word');

INSERT INTO p VALUES(9999999999, 'too big');

INSERT INTO p VALUES('', 'empty');

INSERT INTO p VALUES('8', 'quoted');

INSERT INTO p VALUES('9.0', 'quoted point zero');

INSERT INTO p VALUES(NULL, 'null gets next');

INSERT INTO p(v) VALUES('missing gets next');

SELECT id, v FROM p ORDER BY id;

SELECT rowid, oid, _rowid_, id FROM p WHERE id < 5 ORDER BY id;

SELECT * FROM p WHERE id = '007';

SELECT * FROM p WHERE id = 1e3;

SELECT * FROM p WHERE rowid = 3.0;

SELECT * FROM p WHERE id > 7 AND id < 1000 ORDER BY id;

SELECT * FROM p WHERE id IN ('1', 5, 1000.0) ORDER BY id;

SELECT typeof(id), id + 0, id || '' FROM p WHERE id = 1000;

INSERT INTO p VALUES(2147483647, 'max');

INSERT INTO p VALUES(-2147483648, 'min');

INSERT INTO p VALUES(2147483648, 'over');

INSERT INTO p VALUES(-2147483649, 'under');

SELECT id, v FROM p WHERE id > 1000 OR id < 0 ORDER BY id;

SELECT max(id), min(id), count(*) FROM p;

UPDATE p SET id = 2 WHERE id = 1;

UPDATE p SET id = '010' WHERE id = 2;

UPDATE p SET id = 2.5 WHERE id = 10;

UPDATE p SET id = 5 WHERE id = 10;

UPDATE p SET id = id + 100 WHERE id < 10 AND id > 0;

SELECT id, v FROM p WHERE id BETWEEN 0 AND 1000 ORDER BY id;

UPDATE p SET rowid = 50 WHERE id = 105;

SELECT rowid, v FROM p WHERE v = 'plus';

INSERT INTO p(rowid, v) VALUES(60, 'by rowid');

INSERT INTO p(oid, id, v) VALUES(61, 62, 'both');

SELECT id, v FROM p WHERE id >= 60 AND id < 100 ORDER BY id;

DELETE FROM p WHERE id = 2147483647;

INSERT INTO p(v) VALUES('after max removed');

SELECT id FROM p WHERE v = 'after max removed';

CREATE TABLE q(id INT PRIMARY KEY, v);

INSERT INTO q VALUES(1, 'a');

INSERT INTO q VALUES('1', 'b');

INSERT INTO q VALUES(1.5, 'c');

INSERT INTO q VALUES('x', 'd');

INSERT INTO q VALUES(NULL, 'e');

INSERT INTO q VALUES(NULL, 'f');

SELECT rowid, id, v FROM q ORDER BY rowid;

CREATE TABLE r(id integer primary key, v);

INSERT INTO r VALUES('12', 'lower case is an alias too');

SELECT rowid, id FROM r;

CREATE TABLE s(a, id INTEGER, v, PRIMARY KEY(id));

INSERT INTO s VALUES('x', '5', 'table constraint');

INSERT INTO s VALUES('y', 'five', 'refused');

SELECT rowid, a, id FROM s;

CREATE TABLE w(id INTEGER PRIMARY KEY DESC, v);

INSERT INTO w VALUES(3, 'desc key');

SELECT rowid, id FROM w;

CREATE TABLE x(id INTEGER(10) PRIMARY KEY, v);

INSERT INTO x VALUES('abc', 'sized integer is no alias');

SELECT rowid, id FROM x;

CREATE TABLE y(a INTEGER PRIMARY KEY, b INTEGER PRIMARY KEY);

CREATE TABLE z(a, b, PRIMARY KEY(a, b));

INSERT INTO z VALUES(1, 2);

INSERT INTO z VALUES(1, 2);

INSERT INTO z VALUES(1, '2');

SELECT rowid, * FROM z;

SELECT last_insert_rowid();
