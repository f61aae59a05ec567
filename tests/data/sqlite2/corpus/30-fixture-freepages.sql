-- start: freepages.db
-- A file with a long free list: new tables, indexes and rows take their
-- pages from it; deletes and drops give pages back.

SELECT count(*), min(id), max(id) FROM keep;

SELECT id FROM keep WHERE v = (SELECT v FROM keep WHERE id = (SELECT min(id) FROM keep));

CREATE TABLE fresh(a INTEGER PRIMARY KEY, b TEXT);

CREATE INDEX fresh_b ON fresh(b);

INSERT INTO fresh SELECT id, v FROM keep;

INSERT INTO fresh SELECT id + 100000, v || '-copy' FROM keep;

SELECT count(*) FROM (SELECT DISTINCT b FROM fresh);

SELECT count(*) FROM fresh WHERE b LIKE '%-copy';

DELETE FROM keep WHERE id % 2 = 0;

SELECT count(*) FROM keep;

DROP INDEX keep_v;

UPDATE fresh SET b = b || b WHERE a % 3 = 0;

SELECT count(*), max(length(b)) FROM fresh;

DROP TABLE fresh;

SELECT name FROM sqlite_master ORDER BY name;

SELECT count(*) FROM keep;
