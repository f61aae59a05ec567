-- start: keys.db
-- The keys fixture (made by 2.8.13): extreme rowids, a UNIQUE column, a
-- UNIQUE index, a two-column primary key and a text primary key, written to
-- and queried through their automatic indexes.

SELECT count(*), min(id), max(id) FROM keys;

SELECT id, name FROM keys WHERE id < 0 ORDER BY id;

SELECT id FROM keys WHERE id > 2147483600 ORDER BY id;

SELECT id FROM keys WHERE name = 'name-5';

SELECT id FROM keys WHERE email = 'u0@example.org';

INSERT INTO keys VALUES(150, 'name-5', 'fresh@example.org');

INSERT INTO keys VALUES(150, 'fresh', 'u0@example.org');

INSERT INTO keys VALUES(-2147483647, 'fresh', 'fresh@example.org');

INSERT INTO keys VALUES(150, 'fresh', 'fresh@example.org');

INSERT OR REPLACE INTO keys VALUES(101, 'name0', 'replaced@example.org');

SELECT id, name, email FROM keys WHERE id IN (0, 100, 101, 150) ORDER BY id;

UPDATE keys SET id = id - 1 WHERE id = -2147483647;

UPDATE keys SET id = -2147483648 WHERE id = -2147483647;

SELECT min(id) FROM keys;

SELECT count(*) FROM pair;

SELECT a, b, c FROM pair WHERE a = 3 ORDER BY b;

SELECT a, b FROM pair WHERE c = 1.0 OR c = '1' ORDER BY a;

SELECT b FROM pair WHERE c > 9 ORDER BY c, b;

INSERT INTO pair VALUES(0, 'b0', 99);

INSERT INTO pair VALUES(0, 'B0', 99);

INSERT INTO pair VALUES('0', 'b7', 99);

INSERT INTO pair VALUES(0.0, 'b14', 99);

SELECT a, b, c FROM pair WHERE c = 99 ORDER BY b;

SELECT * FROM uniq ORDER BY code;

INSERT INTO uniq VALUES('new', 'fresh label');

SELECT code, label FROM uniq WHERE code = 'new' OR label = 'fresh label';

INSERT INTO uniq SELECT code || 'x', label FROM uniq WHERE rowid = 1;

INSERT INTO uniq SELECT code, label || 'x' FROM uniq WHERE rowid = 1;

UPDATE uniq SET label = upper(label);

SELECT code, label FROM uniq ORDER BY label;

DELETE FROM keys WHERE id > 0 AND id < 1000;

SELECT count(*) FROM keys;

SELECT id FROM keys WHERE name LIKE 'name2%' ORDER BY id;

CREATE INDEX keys_name_email ON keys(name, email);

SELECT id FROM keys WHERE name = 'name0' AND email = 'u0@example.org';

DROP INDEX keys_email;

INSERT INTO keys VALUES(5, 'five', 'u0@example.org');

SELECT id, name FROM keys WHERE email = 'u0@example.org' ORDER BY id;
