-- start: new
-- An UPDATE changes only the columns its SET list names: the others keep
-- their stored text, an INTEGER PRIMARY KEY keeps the row's number, and an
-- UPDATE OF trigger fires when its column is named, even with the same value.

CREATE TABLE t(id INTEGER PRIMARY KEY, a, b NUMERIC, c TEXT);

CREATE TABLE log(what, x, y);

CREATE TRIGGER t_a AFTER UPDATE OF a ON t BEGIN INSERT INTO log VALUES('a', old.a, new.a); END;

CREATE TRIGGER t_bc AFTER UPDATE OF b, c ON t BEGIN INSERT INTO log VALUES('bc', old.id, new.id); END;

INSERT INTO t VALUES(5, '007', '1.50', 'x');

INSERT INTO t VALUES(9, 'abc', '-0', NULL);

UPDATE t SET a = a WHERE id = 5;

UPDATE t SET c = 'y';

UPDATE t SET b = b + 0 WHERE id = 9;

UPDATE t SET id = 7, a = '08' WHERE id = 5;

UPDATE t SET a = NULL WHERE a = 'nothing';

SELECT * FROM t ORDER BY id;

SELECT * FROM log;

SELECT rowid, * FROM t WHERE id = 7;
