-- start: texts.db
-- The texts fixture (made by 2.8.13): texts with quotes, percent signs,
-- tabs, line breaks, pipes, UTF-8 letters and blanks, with an index on the
-- text column; lookups, ordering, LIKE/GLOB and edits.

SELECT k, val FROM texts ORDER BY val, k;

SELECT k FROM texts WHERE val = 'it''s';

SELECT k FROM texts WHERE val = '100%';

SELECT k FROM texts WHERE val LIKE '%\%' ORDER BY k;

SELECT k FROM texts WHERE val LIKE '%\%%' ORDER BY k;

SELECT k FROM texts WHERE val LIKE '%%%' ORDER BY k;

SELECT k FROM texts WHERE val GLOB '*[|]*' ORDER BY k;

SELECT k FROM texts WHERE val = 'Größe';

SELECT k FROM texts WHERE val LIKE 'gr%' ORDER BY k;

SELECT k, length(val) FROM texts ORDER BY k;

SELECT k FROM texts WHERE val > 'z' ORDER BY val;

SELECT k FROM texts WHERE val = '' ORDER BY k;

SELECT k FROM texts WHERE val IS NULL;

SELECT k FROM texts WHERE val = 'line1
line2';

SELECT k, upper(val) FROM texts WHERE k IN (11, 12, 15) ORDER BY k;

UPDATE texts SET val = val || '''' WHERE k < 4;

SELECT k, val FROM texts WHERE k < 4 ORDER BY k;

INSERT INTO texts(label, val) VALUES('new', 'ß and ñ');

INSERT INTO texts(label, val) VALUES('quote', '"''"');

SELECT k, label, val FROM texts WHERE k > 18 ORDER BY k;

SELECT k FROM texts WHERE val = '"''"';

DELETE FROM texts WHERE val LIKE '%;%' OR val LIKE '%,%';

SELECT k FROM texts ORDER BY val DESC, k;

UPDATE texts SET label = NULL WHERE label LIKE 't1%';

SELECT count(*), count(label) FROM texts;
