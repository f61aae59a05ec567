-- start: new
-- NULL in expressions, logic, functions, aggregates, grouping, ordering,
-- uniqueness and joins.

CREATE TABLE n(a, b INTEGER, c TEXT);

INSERT INTO n VALUES(1, NULL, 'x');

INSERT INTO n VALUES(NULL, 2, NULL);

INSERT INTO n VALUES(NULL, NULL, NULL);

INSERT INTO n VALUES(3, 3, '');

SELECT a + 1, b * 2, c || 'y', -a, NOT a FROM n ORDER BY rowid;

SELECT a AND 1, a AND 0, a OR 1, a OR 0 FROM n ORDER BY rowid;

SELECT NULL AND 0, NULL AND 1, NULL OR 1, NULL OR 0, NOT NULL;

SELECT NULL + 1, NULL || 'a', 'a' || NULL, NULL / 0, 5 / NULL, NULL % 2;

SELECT 1 / 0, 1 % 0, 1.0 / 0, 0 / 0, 5 % 0.5;

SELECT a IS NULL, a ISNULL, a NOTNULL, a IS NOT NULL FROM n ORDER BY rowid;

SELECT count(*), count(a), count(b), count(c) FROM n;

SELECT sum(a), avg(a), min(a), max(a), sum(b), min(c), max(c) FROM n;

SELECT a, count(*) FROM n GROUP BY a ORDER BY a;

SELECT b, count(*) FROM n GROUP BY b ORDER BY b DESC;

SELECT DISTINCT a FROM n ORDER BY a;

SELECT * FROM n WHERE a = NULL;

SELECT * FROM n WHERE a <> NULL;

SELECT * FROM n WHERE NOT (a = 1) ORDER BY rowid;

SELECT * FROM n WHERE c = '' ORDER BY rowid;

SELECT * FROM n WHERE c IS NULL ORDER BY rowid;

SELECT coalesce(a, b, c, 'none') FROM n ORDER BY rowid;

SELECT ifnull(a, 'dflt'), ifnull(NULL, NULL), ifnull(c, b) FROM n ORDER BY rowid;

SELECT nullif(a, 1), nullif(3, 3), nullif(3, 4), nullif(NULL, 1) FROM n ORDER BY rowid;

SELECT length(NULL), upper(NULL), substr(NULL, 1, 1), abs(NULL), round(NULL), lower(NULL);

SELECT typeof(NULL), typeof(a), typeof(c) FROM n ORDER BY rowid;

SELECT CASE WHEN a IS NULL THEN 'null' ELSE 'value' END FROM n ORDER BY rowid;

SELECT CASE a WHEN 1 THEN 'one' WHEN NULL THEN 'null' ELSE 'other' END FROM n ORDER BY rowid;

SELECT CASE NULL WHEN NULL THEN 'matched' ELSE 'no match' END;

SELECT CASE WHEN NULL THEN 1 END, CASE WHEN 0 THEN 1 END;

CREATE TABLE m(k, v);

INSERT INTO m VALUES(NULL, 'null key');

INSERT INTO m VALUES(1, 'one');

SELECT n.a, m.v FROM n, m WHERE n.a = m.k ORDER BY n.rowid;

SELECT n.a, m.v FROM n LEFT JOIN m ON n.a = m.k ORDER BY n.rowid;

SELECT min(NULL), max(NULL), sum(NULL), avg(NULL), count(NULL);

SELECT NULL IN (SELECT k FROM m), 1 IN (SELECT k FROM m), 2 IN (SELECT k FROM m);

SELECT NULL BETWEEN 1 AND 2, 1 BETWEEN NULL AND 2, NULL LIKE NULL;

SELECT a FROM n WHERE a IN (NULL) ORDER BY rowid;

SELECT a FROM n WHERE a NOT IN (3, NULL) ORDER BY rowid;

UPDATE n SET c = 'was null' WHERE c ISNULL;

SELECT c FROM n ORDER BY rowid;

UPDATE n SET a = NULL WHERE a = 3;

DELETE FROM n WHERE a IS NULL AND b IS NULL;

SELECT * FROM n ORDER BY rowid;

SELECT NULL;

SELECT NULL, 'NULL', '';

SELECT max(a, NULL), min(NULL, NULL) FROM n;
