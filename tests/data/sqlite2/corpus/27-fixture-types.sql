-- start: types.db
-- The types fixture (made by 2.8.13): the same value spelled 15 ways in a
-- column of every common declared type, with indexes on an INTEGER, a REAL
-- and a TEXT column; how each declared type compares and sorts them.

SELECT id FROM types WHERE i = 1000 ORDER BY id;

SELECT id FROM types WHERE r = 1000 ORDER BY id;

SELECT id FROM types WHERE t = 1000 ORDER BY id;

SELECT id FROM types WHERE t = '1e3' ORDER BY id;

SELECT id FROM types WHERE v = 1000 ORDER BY id;

SELECT id FROM types WHERE d = 1000 ORDER BY id;

SELECT id FROM types WHERE bl = 1000 ORDER BY id;

SELECT id FROM types WHERE n = 7 ORDER BY id;

SELECT id FROM types WHERE x = 7 ORDER BY id;

SELECT id FROM types WHERE t = 7 ORDER BY id;

SELECT id FROM types WHERE i = 0 ORDER BY id;

SELECT id FROM types WHERE i = '' ORDER BY id;

SELECT id FROM types WHERE i IS NULL ORDER BY id;

SELECT id FROM types ORDER BY i, id;

SELECT id FROM types ORDER BY r DESC, id;

SELECT id FROM types ORDER BY t, id;

SELECT id FROM types ORDER BY v, id;

SELECT id FROM types ORDER BY b, id;

SELECT id FROM types ORDER BY bl, id;

SELECT id FROM types WHERE i > 100 ORDER BY id;

SELECT id FROM types WHERE t > '100' ORDER BY id;

SELECT id FROM types WHERE r < 0 ORDER BY id;

SELECT id FROM types WHERE i BETWEEN 0 AND 10 ORDER BY id;

SELECT count(*), count(i), count(t), sum(i), max(i), min(i), max(t), min(t) FROM types;

SELECT id, i + 0, t + 0, i * 2, t || '' FROM types ORDER BY id;

SELECT DISTINCT r FROM types ORDER BY r;

UPDATE types SET i = i + 1, t = t + 1 WHERE id < 6;

SELECT id, i, t FROM types WHERE id < 6 ORDER BY id;

SELECT id FROM types WHERE i = 8 ORDER BY id;

SELECT id FROM types WHERE t = '8' ORDER BY id;

INSERT INTO types(i, r, t) VALUES('0010', '0010', '0010');

SELECT id, i, r, t FROM types WHERE i = 10 ORDER BY id;

SELECT id, t FROM types WHERE t = '0010';

DELETE FROM types WHERE i < 5;

SELECT id, i FROM types ORDER BY i, id;

SELECT id, t FROM types ORDER BY t, id;
