-- start: new
-- count, sum, avg, min, max on empty tables, on mixed values, with GROUP BY
-- and HAVING.

CREATE TABLE e(a INTEGER, b TEXT);

SELECT count(*), count(a), sum(a), avg(a), min(a), max(a) FROM e;

SELECT count(*) FROM e WHERE a > 0;

SELECT sum(a) FROM e;

SELECT min(b), max(b) FROM e;

SELECT a, count(*) FROM e GROUP BY a;

SELECT count(*) FROM e HAVING count(*) > 0;

CREATE TABLE g(k TEXT, v, w INTEGER);

INSERT INTO g VALUES('a', 1, 10);

INSERT INTO g VALUES('a', 2, 20);

INSERT INTO g VALUES('b', 2.5, NULL);

INSERT INTO g VALUES('b', 'x', 5);

INSERT INTO g VALUES('c', NULL, NULL);

INSERT INTO g VALUES('a', '007', -3);

INSERT INTO g VALUES(NULL, 4, 4);

INSERT INTO g VALUES('B', 1e3, 0);

SELECT count(*), count(v), count(w), count(k) FROM g;

SELECT sum(v), sum(w), avg(v), avg(w) FROM g;

SELECT min(v), max(v), min(w), max(w) FROM g;

SELECT min(k), max(k) FROM g;

SELECT k, count(*), sum(v), min(v), max(v) FROM g GROUP BY k ORDER BY k;

SELECT k, avg(w) FROM g GROUP BY k ORDER BY k;

SELECT k, sum(w) FROM g GROUP BY k HAVING sum(w) > 5 ORDER BY k;

SELECT k, count(*) FROM g GROUP BY k HAVING count(*) >= 2 ORDER BY k;

SELECT k FROM g GROUP BY k HAVING max(v) = 'x';

SELECT upper(k), count(*) FROM g GROUP BY upper(k) ORDER BY 1;

SELECT count(DISTINCT k) FROM g;

SELECT sum(v) + 1, max(w) * 2, min(v) || '!' FROM g;

SELECT sum(1), sum(0.5), sum('3'), sum('abc'), sum(NULL) FROM g;

SELECT avg(1), avg('2'), avg(v + 0) FROM g;

SELECT max(1, 2, 3), min(3, '2', 10), max('a', 'b'), min(NULL, 1), max(1, NULL);

SELECT count(*) FROM g WHERE v IS NULL OR w IS NULL;

SELECT k, count(v), count(w) FROM g GROUP BY k ORDER BY 2 DESC, k;

SELECT w, count(*) FROM g GROUP BY w ORDER BY w;

SELECT v FROM g GROUP BY v ORDER BY v;

SELECT k, max(w) FROM g WHERE w > 0 GROUP BY k ORDER BY max(w);

SELECT sum(w) FROM g WHERE k = 'a';

SELECT sum(w) FROM g WHERE k = 'z';

SELECT avg(w) FROM g WHERE k = 'z';

SELECT max(w) FROM g WHERE k = 'z';

SELECT count(*) FROM (SELECT k FROM g GROUP BY k);

SELECT k FROM g GROUP BY k HAVING k > 'a' ORDER BY k;

SELECT k, sum(w) AS total FROM g GROUP BY k ORDER BY total;

CREATE TABLE big(n INTEGER);

INSERT INTO big VALUES(2147483647);

INSERT INTO big VALUES(1);

INSERT INTO big VALUES(2147483647);

SELECT sum(n), avg(n), max(n) + 1, count(*) * 2147483647 FROM big;

INSERT INTO big VALUES(1e308);

INSERT INTO big VALUES(1e308);

SELECT sum(n), max(n), min(n) FROM big;

SELECT count(*) FROM g, big;

SELECT sum(a) FROM e GROUP BY a;

SELECT count(nosuch) FROM g;

SELECT sum(*) FROM g;

SELECT k, v FROM g GROUP BY k HAVING v > 1 ORDER BY k;

SELECT count() FROM g;
