-- start: swapped.db
-- The person content in a big-endian file: queries, then writes of every
-- kind (the file keeps its byte order), the trigger firing, and a new table
-- and index.

SELECT count(*), sum(weight), max(name) FROM person;

SELECT id, name FROM person_active ORDER BY name LIMIT 4;

SELECT id FROM person WHERE name = 'Dan8';

INSERT INTO person VALUES(100, 'Big', '1999-09-09', 80.5, 1, 'endian');

UPDATE person SET name = 'Renamed' WHERE id = 5;

SELECT * FROM person_log ORDER BY rowid;

DELETE FROM person WHERE id BETWEEN 10 AND 20;

SELECT count(*) FROM person;

CREATE TABLE extra(k INTEGER PRIMARY KEY, v TEXT);

CREATE INDEX extra_v ON extra(v);

INSERT INTO extra SELECT id, name FROM person;

SELECT count(*), min(v), max(v) FROM extra;

SELECT k FROM extra WHERE v = 'Renamed';

UPDATE extra SET v = v || v || v || v || v || v || v || v || v || v;

SELECT length(v) FROM extra WHERE k = 100;

DROP TABLE extra;

SELECT name FROM sqlite_master ORDER BY name;
