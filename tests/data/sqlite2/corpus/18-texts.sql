-- start: new
-- Texts with quotes, percent signs, backslashes, pipes, tabs, newlines and
-- UTF-8 letters: stored, shown, compared, measured and dumped.

CREATE TABLE t(id INTEGER PRIMARY KEY, s TEXT, u);

INSERT INTO t VALUES(1, 'it''s', 'it''s');

INSERT INTO t VALUES(2, '''quoted''', '''''');

INSERT INTO t VALUES(3, '100%', '%d %s %%');

INSERT INTO t VALUES(4, 'back\slash', 'C:\dir\');

INSERT INTO t VALUES(5, 'a|b', '|');

INSERT INTO t VALUES(6, 'tab	here', 'ends with tab	');

INSERT INTO t VALUES(7, 'two
lines', 'x
');

INSERT INTO t VALUES(8, 'Größe', 'ä');

INSERT INTO t VALUES(9, '日本語', '€');

INSERT INTO t VALUES(10, '  padded  ', ' ');

INSERT INTO t VALUES(11, 'say "hi"', '"');

INSERT INTO t VALUES(12, 'semi;colon', ';');

INSERT INTO t VALUES(13, '<b>&amp;</b>', 'NULL');

INSERT INTO t VALUES(14, '', '');

INSERT INTO t VALUES(15, "double quoted", "id");

INSERT INTO t VALUES(16, '--not a comment', '/* nor this */');

SELECT * FROM t ORDER BY id;

SELECT id, length(s), length(u) FROM t ORDER BY id;

SELECT id, upper(s), lower(s) FROM t WHERE id IN (1, 8, 9, 13) ORDER BY id;

SELECT id, substr(s, 1, 3), substr(s, 2, 2), substr(s, -2, 2) FROM t WHERE id IN (3, 8, 9, 10) ORDER BY id;

SELECT id FROM t WHERE s LIKE '%\%' ORDER BY id;

SELECT id FROM t WHERE s LIKE '%''%' ORDER BY id;

SELECT id FROM t WHERE s LIKE '%\%%' ORDER BY id;

SELECT id FROM t WHERE s GLOB '*|*' ORDER BY id;

SELECT id FROM t WHERE u = '' ORDER BY id;

SELECT id FROM t WHERE u = ' ' ORDER BY id;

SELECT id FROM t WHERE u = 'NULL' ORDER BY id;

SELECT id FROM t WHERE u IS NULL;

SELECT id, s FROM t ORDER BY s, id;

SELECT id FROM t WHERE s > 'Z' ORDER BY s;

SELECT s || u FROM t WHERE id < 6 ORDER BY id;

SELECT 'it''s', 'a' || '''' || 'b', '%', '\', '\n', '\t', 'x\''y';

SELECT '日本' || '語', length('日本語'), substr('日本語', 2, 1), upper('straße'), lower('ÄÖÜ');

SELECT 'a' = 'A', 'a' < 'b', 'B' < 'a', 'é' > 'z', 'abc' = 'abc ', '' = ' ';

SELECT max(s), min(s) FROM t;

SELECT count(*) FROM t WHERE s = 'Größe';

SELECT id FROM t WHERE s = 'gröSSe' OR s = 'Größe';

SELECT quote('it''s');

UPDATE t SET s = s || '!' WHERE id IN (1, 4, 8);

SELECT s FROM t WHERE id IN (1, 4, 8) ORDER BY id;

UPDATE t SET u = replace(u, 'a', 'b');

CREATE INDEX t_s ON t(s);

SELECT id FROM t WHERE s = 'back\slash!';

SELECT id FROM t WHERE s = 'two
lines';

SELECT id FROM t WHERE s >= '日' ORDER BY id;

DELETE FROM t WHERE s LIKE '%!';

SELECT id FROM t ORDER BY id;

CREATE TABLE "odd name"("col one" TEXT, [col two], 'col three');

CREATE TABLE `backticks`(x);

INSERT INTO "odd name" VALUES('a', 'b', 'c');

SELECT "col one", [col two] FROM "odd name";

SELECT * FROM [odd name];

CREATE TABLE 'quoted'(x);

INSERT INTO quoted VALUES('from a single-quoted name');

SELECT * FROM quoted;

SELECT x FROM 'quoted';

-- The tests' .dump helper writes table names without the quotes 2.8 puts
-- around names like this one; dropping it keeps the dump comparison about
-- the engine.
DROP TABLE "odd name";
